#pragma once

#include <memory>
#include <string>

#include "platform/date_time.h"
#include "platform/event_gate.h"
#include "platform/event_loop.h"
#include "record/command_line.h"
#include "record/console.h"
#include "record/recorder.h"

namespace record {

/// What a source stands on. All of it is borrowed and outlives the source.
struct Surroundings {
    platform::EventLoop& loop;
    platform::EventGate& gate;
    const platform::Clock& clock;
    Recorder& recorder;
    Console& console;
    const Options& options;
};

/// Where a feed comes from. It hands what comes to the recorder, from the event loop, and ends the recording
/// when nothing more can come.
class Source {
public:
    virtual ~Source() = default;

    /// The recording ends: hands the record under way to the recorder.
    virtual void Finish() = 0;
};

/// Opens what the options name. Failure: a port in use, no such group and the like.
[[nodiscard]] std::unique_ptr<Source> OpenSource(const Surroundings& surroundings);

}  // namespace record
