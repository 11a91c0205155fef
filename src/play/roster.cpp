#include "play/roster.h"

#include <filesystem>
#include <map>
#include <memory>
#include <utility>

#include "platform/conversions.h"
#include "play/checked_settings.h"
#include "play/files_to_read.h"
#include "play/usage_error.h"

namespace player {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBuiltInName = "built-in";

/// Settings for some tills.
struct Group {
    std::string name;
    std::string path;
    std::string folder;
};

std::vector<Group> GroupsOf(const Options& options, const Sources& sources)
{
    if (options.settings.empty() && options.namesDatabase)
        return {{kBuiltInName, FilesToRead::kBuiltIn, fs::current_path().string()}};
    std::vector<std::string> files = options.settings;
    if (files.empty())
        files.push_back((fs::path(sources.programFolder) / "Config.ini").string());
    std::vector<Group> groups;
    for (const std::string& file : files) {
        const fs::path path = fs::absolute(file);
        if (!sources.files.FileExists(path.string()))
            throw UsageError("There are no settings " + file);
        // The logic would pass over them in silence.
        if (!sources.isReadable(path.string()))
            throw UsageError("The settings " + file + " cannot be read");
        groups.push_back({file, path.string(), path.parent_path().string()});
    }
    return groups;
}

/// Gives each further till with the same port a higher one.
class PortSteps {
public:
    PortSteps(std::int64_t step, const platform::RegionalFormats& formats) : step_(step), formats_(formats) {}

    /// A port that is no number stays: it is refused with the other settings.
    void Take(TillSettings& settings)
    {
        if (step_ == 0)
            return;
        const std::string text = settings.Value(keys::kConnection, keys::kPort);
        const auto first = formats_.Number(text.empty() ? built_in::kPort : text);
        if (!first)
            return;
        const double port = platform::RoundHalfToEven(*first);
        const auto stepped = static_cast<std::int64_t>(port) + step_ * taken_[port]++;
        settings.Put({keys::kConnection, keys::kPort, std::to_string(stepped)});
    }

private:
    std::int64_t step_;
    const platform::RegionalFormats& formats_;
    std::map<double, std::int64_t> taken_;  // tills, by the port of the first
};

bool IsIn(const Shard& shard, std::int64_t till, std::int64_t tills)
{
    return till >= tills * (shard.number - 1) / shard.of && till < tills * shard.number / shard.of;
}

}  // namespace

std::vector<TillPlan> PlansOf(const Options& options, const Sources& sources, Time origin)
{
    const std::vector<Group> groups = GroupsOf(options, sources);
    const std::int64_t tills = static_cast<std::int64_t>(groups.size()) * options.tills;
    std::vector<TillPlan> plans;
    PortSteps ports(options.portStep, sources.formats);
    std::int64_t till = 0;
    for (const Group& group : groups) {
        const auto file = std::make_shared<SettingsFile>(sources.profile, group.path);
        for (std::int64_t number = 0; number < options.tills; ++number, ++till) {
            TillPlan plan{.name = group.name,
                          .settings = TillSettings(file, options.overrides),
                          .folder = group.folder,
                          .phase = {}};
            ports.Take(plan.settings);
            if (!IsIn(options.shard, till, tills))
                continue;
            // The window has an interval before any settings; the logic misses it in a file that says none.
            if (plan.settings.Value(keys::kTimer, keys::kInterval).empty())
                plan.settings.Put({keys::kTimer, keys::kInterval, std::to_string(built_in::kInterval)});
            if (options.tills > 1)
                plan.name += "#" + std::to_string(number + 1);
            if (tills > 1)
                plan.phase = {origin,
                              options.together ? 0 : static_cast<double>(till) / static_cast<double>(tills)};
            plans.push_back(std::move(plan));
        }
    }
    if (plans.empty())
        throw UsageError("Part " + std::to_string(options.shard.number) + " of " +
                         std::to_string(options.shard.of) + " has none of the " + std::to_string(tills) +
                         " tills");
    return plans;
}

}  // namespace player
