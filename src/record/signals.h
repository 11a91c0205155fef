#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"

namespace record {

/// The signals that end a recording, as events: SIGINT and SIGTERM, and SIGHUP where it is not ignored. Make it
/// before any thread. SIGPIPE and SIGXFSZ are ignored from then on, so that the write fails instead.
class EndSignals {
public:
    /// The loop is borrowed and outlives this object.
    EndSignals(platform::EventLoop& loop, std::function<void()> react);

private:
    platform::FileDescriptor descriptor_;
    std::function<void()> react_;
    std::unique_ptr<platform::Watch> readable_;
};

/// Opens /dev/null for each of the three standard descriptors that is closed. Otherwise the recording could get
/// the number of standard error, and with it every message. Call it before anything is opened.
void OpenStandardDescriptors();

}  // namespace record
