#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string_view>

namespace platform::jet {

/// What the engine's readers throw when the bytes of a file make no sense. It stays inside the engine: at its
/// doors it becomes a Failure that names the file.
class Damage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Bytes that belong to someone else, read with bounds checked. Numbers are little-endian; offsets and
/// lengths are in bytes. A read past the end throws Damage.
class ByteView {
public:
    ByteView() = default;
    explicit ByteView(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] std::size_t Size() const { return bytes_.size(); }
    [[nodiscard]] std::span<const std::uint8_t> Bytes() const { return bytes_; }
    [[nodiscard]] std::string_view AsText() const
    {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }

    [[nodiscard]] std::uint8_t U8(std::size_t at) const
    {
        Require(at, 1);
        return bytes_[at];
    }
    [[nodiscard]] std::uint16_t U16(std::size_t at) const { return Number<std::uint16_t>(at); }
    [[nodiscard]] std::uint32_t U32(std::size_t at) const { return Number<std::uint32_t>(at); }
    [[nodiscard]] std::uint64_t U64(std::size_t at) const { return Number<std::uint64_t>(at); }
    [[nodiscard]] std::int16_t I16(std::size_t at) const { return std::bit_cast<std::int16_t>(U16(at)); }
    [[nodiscard]] std::int32_t I32(std::size_t at) const { return std::bit_cast<std::int32_t>(U32(at)); }
    [[nodiscard]] std::int64_t I64(std::size_t at) const { return std::bit_cast<std::int64_t>(U64(at)); }
    [[nodiscard]] float F32(std::size_t at) const { return std::bit_cast<float>(U32(at)); }
    [[nodiscard]] double F64(std::size_t at) const { return std::bit_cast<double>(U64(at)); }

    [[nodiscard]] ByteView Slice(std::size_t at, std::size_t length) const
    {
        Require(at, length);
        return ByteView(bytes_.subspan(at, length));
    }
    [[nodiscard]] ByteView From(std::size_t at) const
    {
        Require(at, 0);
        return ByteView(bytes_.subspan(at));
    }

private:
    void Require(std::size_t at, std::size_t length) const
    {
        if (at > bytes_.size() || length > bytes_.size() - at)
            throw Damage("a structure reaches past its end");
    }

    template <class Unsigned>
    [[nodiscard]] Unsigned Number(std::size_t at) const
    {
        Require(at, sizeof(Unsigned));
        static_assert(std::endian::native == std::endian::little);
        Unsigned number = 0;
        std::memcpy(&number, bytes_.data() + at, sizeof number);
        return number;
    }

    std::span<const std::uint8_t> bytes_;
};

}  // namespace platform::jet
