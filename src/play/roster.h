#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/regional_formats.h"
#include "play/options.h"
#include "play/station.h"

namespace player {

/// From what the tills of a shop are made. All of it outlives them.
struct Sources {
    const platform::FileSystem& files;
    const platform::ProfileFile& profile;
    const platform::RegionalFormats& formats;
    std::string programFolder;
    std::function<bool(const std::string& path)> isReadable;
};

/// The tills of this part of the shop. Their names, ports and phases are those that they have in the whole shop.
/// `origin` is the moment from which all phases count. Failure: UsageError for a settings file that is not there or cannot
/// be read.
[[nodiscard]] std::vector<TillPlan> PlansOf(const Options& options, const Sources& sources, Time origin);

}  // namespace player
