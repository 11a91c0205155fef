#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/regional_formats.h"
#include "record/background_sync.h"
#include "record/console.h"
#include "record/record_cutter.h"
#include "record/recording_file.h"
#include "record/tally.h"

namespace record {

/// Takes the records of a source, stamps them and keeps them. A file that cannot take them is a Failure of
/// whatever call meets it.
class Recorder {
public:
    struct Settings {
        bool transferTime = false;
        std::optional<std::uint64_t> mostRecords;
    };

    /// All but the settings are borrowed and outlive the recorder.
    Recorder(platform::EventLoop& loop, RecordingFile& file, const platform::RegionalFormats& formats,
             Console& console, const Settings& settings);

    /// Adds a record; it is in the file after the next Flush. What comes after the last that was wanted is
    /// dropped.
    void Keep(const CutRecord& record);

    /// Writes the added records.
    void Flush();

    /// Who sends now, as the progress shows it.
    void SetSender(const std::string& sender) { sender_ = sender; }

    /// Nothing more shall be recorded.
    void End() { hasEnded_ = true; }
    [[nodiscard]] bool HasEnded() const { return hasEnded_; }

    /// Ends in order: all that was written is on the disk afterwards.
    void Finish();

    [[nodiscard]] Tally& Counts() { return tally_; }

private:
    [[nodiscard]] std::optional<platform::DateTime> TimestampOf(const CutRecord& record);
    void CountWhatIsOdd(const CutRecord& record);
    void ProgressIsDue();

    RecordingFile& file_;
    const platform::RegionalFormats& formats_;
    Console& console_;
    Settings settings_;
    Tally tally_;
    std::string sender_;
    std::uint64_t added_ = 0;
    bool hasEnded_ = false;
    BackgroundSync sync_;
    std::unique_ptr<platform::Alarm> progress_;
    bool progressIsSet_ = false;
};

}  // namespace record
