#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "record/source.h"

namespace record {

/// One sender's stream on its way into the recording: cuts it, and sees to the pauses that end a record.
class StreamIntake {
public:
    enum class Outcome {
        kRead,     ///< bytes were added
        kNothing,  ///< none are there now
        kEnded,    ///< the stream has ended, and with it perhaps this object
    };

    /// Reads what has come and adds it.
    using ReadOn = std::function<Outcome()>;

    StreamIntake(const Surroundings& surroundings, ReadOn readOn);

    /// Adds bytes that have just been read. Returns where in them the first record begins, as
    /// RecordCutter::Add. The records are in the file after the next Flush.
    std::optional<std::size_t> Add(std::string_view bytes);

    void Flush();

    /// The stream has ended: the record under way is in the file afterwards.
    void Finish();

private:
    void PauseIsLongEnough();
    void SetAlarm();

    Surroundings around_;
    ReadOn readOn_;
    RecordCutter cutter_;
    std::unique_ptr<platform::Alarm> alarm_;
    std::optional<std::chrono::steady_clock::time_point> cameBefore_;
};

}  // namespace record
