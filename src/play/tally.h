#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "play/in_flight.h"

namespace player {

/// What became of the records of one till.
///
/// For each record it is told, in this order: that its text cannot be read, if so; that bytes were handed over, if they
/// were; that the feed has moved on.
class Tally {
public:
    /// As InFlight.
    explicit Tally(std::function<std::uint64_t()> unacknowledged) : inFlight_(std::move(unacknowledged)) {}

    void RecordUnreadable() { unreadable_ = true; }
    void HandedOver(std::size_t bytes, bool acknowledged);
    void MovedOn();

    /// The network has dropped the record handed over last, if one was.
    void Dropped();

    void Connected();

    /// The connection broke, or ended, before its peer had acknowledged the last so many bytes.
    void Lost(std::uint64_t unacknowledged);

    [[nodiscard]] std::int64_t Records() const { return records_; }
    [[nodiscard]] std::int64_t Bytes() const { return bytes_; }
    /// Records that were not handed over.
    [[nodiscard]] std::int64_t Refused() const { return refused_; }
    /// Records that were handed to a connection that broke before its peer had acknowledged them.
    [[nodiscard]] std::int64_t InDoubt() const { return inDoubt_; }
    [[nodiscard]] std::int64_t Connections() const { return connections_; }

private:
    InFlight inFlight_;
    bool unreadable_ = false;           // the record on its way
    bool handedOver_ = false;           // the record on its way
    std::optional<std::int64_t> last_;  // bytes of the record handed over last
    std::int64_t records_ = 0;
    std::int64_t bytes_ = 0;
    std::int64_t refused_ = 0;
    std::int64_t inDoubt_ = 0;
    std::int64_t connections_ = 0;
};

}  // namespace player
