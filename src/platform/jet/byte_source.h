#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform::jet {

/// Where the bytes of a database come from. They may change, and the source may shrink, at any moment.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Fills the buffer from an offset. Returns how many bytes there were: fewer than asked for only at the
    /// end. Throws Damage where the bytes cannot be read.
    [[nodiscard]] virtual std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const = 0;

    /// In bytes, at this moment.
    [[nodiscard]] virtual std::uint64_t Size() const = 0;
};

}  // namespace platform::jet
