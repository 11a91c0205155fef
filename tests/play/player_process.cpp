#include "play/player_process.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

#include "make_database/database_writer.h"
#include "support/files.h"

namespace {

constexpr double kNoon = 38423.5;
constexpr double kSecond = 1.0 / 86400;

}  // namespace

Player::Player(const Texts& records)
{
    MakeDatabase("feed.mdb", records);
}

Player::~Player()
{
    if (process_ == 0)
        return;
    ADD_FAILURE() << "play_feed still runs";
    Signal(SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

void Player::MakeDatabase(const std::string& name, const Texts& records) const
{
    std::vector<tools::Receipt> receipts;
    for (const std::string& text : records) {
        const auto number = static_cast<std::int32_t>(receipts.size());
        const double time = kNoon + number * kSecond;
        receipts.push_back(
            {.ref = 10 * (number + 1), .rawtransaction = text, .timestamp = time, .datetimestamp = time});
    }
    const tools::Bytes bytes = tools::DatabaseBytes(receipts);
    WriteFile(Path(name), {bytes.begin(), bytes.end()});
}

void Player::Start(const std::string& arguments)
{
    const std::string command = "cd " + folder_.Path() + " && HOME=" + folder_.Path() +
                                " exec " PLAY_FEED " --report report.json " + arguments;
    WriteFile(Path("errors"), "");
    process_ = ::fork();
    if (process_ > 0)
        return;
    const std::string redirected = before_ + "exec 2>" + Path("errors") + "; " + command;
    ::execl("/bin/sh", "sh", "-c", redirected.c_str(), nullptr);
    ::_exit(127);
}

void Player::Signal(int signal) const
{
    ::kill(process_, signal);
}

PlayerOutcome Player::Outcome()
{
    int status = 0;
    ::waitpid(std::exchange(process_, 0), &status, 0);
    const std::string report = ReadFile(Path("report.json"));
    return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            .errors = Errors(),
            .report = nlohmann::json::accept(report) ? nlohmann::json::parse(report) : nlohmann::json()};
}

std::string Player::Errors() const
{
    return ReadFile(Path("errors"));
}
