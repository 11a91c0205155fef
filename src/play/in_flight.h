#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>

namespace player {

/// The records that were handed to a connection and that its peer may not have acknowledged yet.
class InFlight {
public:
    /// `unacknowledged` gives the bytes handed over that the peer has not acknowledged. It is asked now and then, to
    /// forget records that have arrived.
    explicit InFlight(std::function<std::uint64_t()> unacknowledged);

    void Add(std::size_t bytes);

    /// How many records have bytes among the last so many.
    [[nodiscard]] std::int64_t RecordsIn(std::uint64_t lastBytes) const;

    /// For a new connection.
    void Clear();

private:
    void ForgetArrived();

    static constexpr std::size_t kFewest = 256;

    std::function<std::uint64_t()> unacknowledged_;
    std::deque<std::size_t> sizes_;  // of records, oldest first
    std::size_t bytes_ = 0;          // their sum
    std::size_t askAt_ = kFewest;    // records
};

}  // namespace player
