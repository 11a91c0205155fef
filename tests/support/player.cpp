#include "support/player.h"

#include "support/files.h"

std::string PlayerOutcome::Brief() const
{
    return std::to_string(status) + " " + report.value("outcome", "without a report") + ", " +
           std::to_string(report.value("records", 0)) + " records, " +
           std::to_string(report.value("records_refused", 0)) + " refused, " +
           std::to_string(report.value("records_in_doubt", 0)) + " in doubt";
}

void Player::Start(const std::string& arguments, const std::string& before)
{
    running_.emplace("cd " + Path("") + "; HOME=" + Path("") + "; " + before +
                     " exec " PLAY_FEED " --report report.json " + arguments);
}

PlayerOutcome Player::Outcome()
{
    const int status = running_->End();
    const std::string report = ReadFile(Path("report.json"));
    return {.status = status,
            .errors = running_->Said(),
            .report = nlohmann::json::accept(report) ? nlohmann::json::parse(report) : nlohmann::json()};
}
