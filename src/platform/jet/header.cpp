#include "platform/jet/header.h"

#include <array>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ansi_code_page.h"
#include "platform/jet/text.h"

/// Page 0, the header
///
///   OFFSET      SIZE      DESCRIPTION
///   0x00        20        00 01 00 00 "Standard Jet DB" 00
///   0x14        1         version: 0 Jet 3, 1 Jet 4; newer files have higher numbers
///   0x18        126|128   masked: XOR with the RC4 stream of the key C7 DA 39 6B; in it
///     0x3E      4         key of encoded pages; 0: pages are stored plainly
///     0x42      20|40     password, filled up with zeros: code page 1252 | UTF-16
///     0x72      8         Jet 4: creation date, a double of days since 30 December 1899
///
/// In Jet 4 the password is masked once more, with the creation date cut to whole days: its four bytes, over
/// and over. So no password is zeros only after both masks.
namespace platform::jet {
namespace {

constexpr std::string_view kSignature("\0\1\0\0Standard Jet DB\0", 20);
constexpr std::size_t kVersion = 0x14;
constexpr std::size_t kMaskedFrom = 0x18;
constexpr std::size_t kMaskedSizeJet3 = 126;
constexpr std::size_t kMaskedSizeJet4 = 128;
constexpr std::size_t kPageKey = 0x3E;
constexpr std::size_t kPassword = 0x42;
constexpr std::size_t kCreationDate = 0x72;
constexpr std::array<std::uint8_t, 4> kMaskKey = {0xC7, 0xDA, 0x39, 0x6B};

std::vector<std::uint8_t> Unmasked(ByteView start, Format format)
{
    const std::span<const std::uint8_t> masked = start.Slice(0, kHeaderSize).Bytes();
    std::vector<std::uint8_t> plain(masked.begin(), masked.end());
    const std::size_t size = format == Format::kJet3 ? kMaskedSizeJet3 : kMaskedSizeJet4;
    ApplyRc4(kMaskKey, std::span(plain).subspan(kMaskedFrom, size));
    return plain;
}

/// Removes the second mask of a Jet 4 password: the day of the file's creation, its four bytes over and over.
void UnmaskByDate(std::span<std::uint8_t> password, double creationDate)
{
    if (!(creationDate > std::numeric_limits<std::int32_t>::min() &&
          creationDate < std::numeric_limits<std::int32_t>::max()))
        throw Damage("its creation date is no date");
    const auto day = static_cast<std::uint32_t>(static_cast<std::int32_t>(creationDate));
    for (std::size_t i = 0; i < password.size(); ++i)
        password[i] ^= static_cast<std::uint8_t>(day >> 8 * (i % 4));
}

std::string UpToZero(const std::string& text)
{
    return text.substr(0, text.find('\0'));
}

}  // namespace

std::optional<Format> FormatOf(ByteView start)
{
    if (start.Size() <= kVersion || !start.AsText().starts_with(kSignature))
        return std::nullopt;
    switch (start.U8(kVersion)) {
        case 0:
            return Format::kJet3;
        case 1:
            return Format::kJet4;
        default:
            return std::nullopt;
    }
}

Header ReadHeader(ByteView start, Format format)
{
    std::vector<std::uint8_t> plain = Unmasked(start, format);
    const ByteView header{plain};
    const ByteView password = header.Slice(kPassword, LayoutOf(format).passwordSize);
    if (format == Format::kJet3)
        return {UpToZero(FromAnsi(password.AsText())), header.U32(kPageKey)};
    UnmaskByDate(std::span(plain).subspan(kPassword, password.Size()), header.F64(kCreationDate));
    return {UpToZero(FromUtf16(password)), header.U32(kPageKey)};
}

void ApplyRc4(std::span<const std::uint8_t> key, std::span<std::uint8_t> bytes)
{
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + key[i % key.size()]);
        std::swap(state[i], state[j]);
    }
    std::uint8_t i = 0;
    j = 0;
    for (std::uint8_t& byte : bytes) {
        i = static_cast<std::uint8_t>(i + 1);
        j = static_cast<std::uint8_t>(j + state[i]);
        std::swap(state[i], state[j]);
        byte ^= state[static_cast<std::uint8_t>(state[i] + state[j])];
    }
}

}  // namespace platform::jet
