#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/jet/byte_source.h"

namespace platform::jet {

/// More reads than a reader that comes to an end can need.
class TooManyReads : public std::logic_error {
public:
    TooManyReads() : std::logic_error("the reader does not come to an end") {}
};

/// A database held in memory, which stops a reader after so many pages (of 2,048 bytes, a part counts as
/// one).
class MemorySource : public ByteSource {
public:
    MemorySource(std::string bytes, std::uint64_t mostPages) : bytes_(std::move(bytes)), pagesLeft_(mostPages)
    {}

    [[nodiscard]] std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const override
    {
        constexpr std::size_t kPageSize = 2048;
        const std::uint64_t pages = (buffer.size() + kPageSize - 1) / kPageSize;
        if (pages > pagesLeft_)
            throw TooManyReads();
        pagesLeft_ -= pages;
        const std::uint64_t begin = std::min<std::uint64_t>(offset, bytes_.size());
        const std::size_t count = std::min<std::uint64_t>(buffer.size(), bytes_.size() - begin);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(begin), count, buffer.begin());
        return count;
    }

    [[nodiscard]] std::uint64_t Size() const override { return bytes_.size(); }

private:
    std::string bytes_;
    mutable std::uint64_t pagesLeft_;
};

}  // namespace platform::jet
