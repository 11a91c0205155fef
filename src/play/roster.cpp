#include "play/roster.h"

#include <filesystem>
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
        groups.push_back({file, path.string(), path.parent_path().string()});
    }
    return groups;
}

/// The port of the till that is so many steps behind the first one of its settings. One that is no number stays: it is
/// refused with the other settings.
void StepPort(TillSettings& settings, std::int64_t ports, const platform::RegionalFormats& formats)
{
    const std::string text = settings.Value(keys::kConnection, keys::kPort);
    const auto first = formats.Number(text.empty() ? built_in::kPort : text);
    if (!first)
        return;
    const double port = platform::RoundHalfToEven(*first) + static_cast<double>(ports);
    settings.Put({keys::kConnection, keys::kPort, std::to_string(static_cast<std::int64_t>(port))});
}

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
    std::int64_t till = 0;
    for (const Group& group : groups) {
        const auto file = std::make_shared<SettingsFile>(sources.profile, group.path);
        for (std::int64_t number = 0; number < options.tills; ++number, ++till) {
            if (!IsIn(options.shard, till, tills))
                continue;
            TillPlan plan{.name = group.name,
                          .settings = TillSettings(file, options.overrides),
                          .folder = group.folder,
                          .phase = {}};
            // The window has an interval before any settings; the logic misses it in a file that says none.
            if (group.path == FilesToRead::kBuiltIn)
                plan.settings.PutBelow({keys::kTimer, keys::kInterval, built_in::kInterval});
            if (options.tills > 1)
                plan.name += "#" + std::to_string(number + 1);
            if (number > 0 && options.portStep > 0)
                StepPort(plan.settings, number * options.portStep, sources.formats);
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
