#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/database.h"
#include "play/record_span.h"

namespace player {

/// What a till learns of its record set while it is played.
struct RecordEvents {
    /// A record set is open and stands on its first record.
    std::function<void(const platform::RecordSet& records)> opened;
    /// The cursor has moved to the next record, or past the last one; `beginsAgain` when that is the first one.
    std::function<void(const platform::RecordSet& records, bool beginsAgain)> movedOn;
    /// The text of the current record cannot be read.
    std::function<void()> unreadable;
    /// Whether the current record is to be played once more instead of the next one.
    std::function<bool()> playsAgain;
};

/// A record set that begins elsewhere, ends elsewhere, or begins again.
class PlayedRecords final : public platform::RecordSet {
public:
    /// Plays the span so many times, without `loops` for ever. The span is not empty.
    PlayedRecords(std::unique_ptr<platform::RecordSet> all, const RecordSpan& span,
                  std::optional<std::int64_t> loops, const RecordEvents& events);

    /// That of the span.
    [[nodiscard]] std::int64_t RecordCount() const override { return span_.count; }
    [[nodiscard]] bool AtEOF() const override;
    [[nodiscard]] platform::Value Field(const std::string& column) const override;
    void MoveNext() override;
    /// Begins from the very start.
    void MoveFirst() override;

private:
    void GoToFirst();

    std::unique_ptr<platform::RecordSet> all_;
    RecordSpan span_;
    std::optional<std::int64_t> loops_;
    const RecordEvents& events_;
    std::int64_t position_ = 0;  // in the span
    std::int64_t loop_ = 0;      // times it was played to its end
};

}  // namespace player
