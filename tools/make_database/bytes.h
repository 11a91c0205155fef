#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

namespace tools {

/// Raw bytes: a page, a row, an encoded value.
using Bytes = std::string;

/// Stores a whole number at an offset that lies inside the bytes, least significant byte first.
template <class Integer>
void Store(Bytes& bytes, std::size_t offset, Integer number)
{
    auto bits = static_cast<std::make_unsigned_t<Integer>>(number);
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        bytes[offset + i] = static_cast<char>(static_cast<std::uint64_t>(bits) >> (8 * i));
}

/// Appends a whole number, least significant byte first.
template <class Integer>
void Append(Bytes& bytes, Integer number)
{
    bytes.resize(bytes.size() + sizeof(Integer));
    Store(bytes, bytes.size() - sizeof(Integer), number);
}

/// Appends a whole number, most significant byte first: the order in which index entries compare.
template <class Integer>
void AppendBigEndian(Bytes& bytes, Integer number)
{
    for (std::size_t i = sizeof(Integer); i-- > 0;)
        bytes.push_back(static_cast<char>(number >> (8 * i)));
}

/// Sets a bit of a bitmap that begins at an offset; bit 0 is the lowest of the first byte.
inline void SetBit(Bytes& bytes, std::size_t offset, std::size_t bit)
{
    char& byte = bytes[offset + bit / 8];
    byte = static_cast<char>(byte | 1 << bit % 8);
}

/// A whole number as the bytes of a column's value.
template <class Integer>
[[nodiscard]] Bytes NumberBytes(Integer number)
{
    Bytes bytes;
    Append(bytes, number);
    return bytes;
}

}  // namespace tools
