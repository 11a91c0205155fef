#include "make_database/header.h"

#include <array>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

#include "make_database/text_encoding.h"
#include "platform/failure.h"

namespace tools {
namespace {

// Places in the header, from headers of Access 97 and Access 2000 files with their mask taken off.
constexpr std::size_t kVersionOffset = 0x14;
constexpr std::size_t kMaskedOffset = 0x18;
constexpr std::size_t kJet3MaskedSize = 126;
constexpr std::size_t kJet4MaskedSize = 128;
constexpr std::size_t kCatalogueOffset = 0x20;
constexpr std::size_t kJet3SortOrderOffset = 0x3A;
constexpr std::size_t kCodePageOffset = 0x3C;
constexpr std::size_t kPasswordOffset = 0x42;
constexpr std::size_t kJet4SortOrderOffset = 0x6E;
constexpr std::size_t kCreatedOffset = 0x72;

constexpr std::size_t kLongestPassword = 20;
constexpr std::array<std::uint8_t, 4> kMaskKey = {0xC7, 0xDA, 0x39, 0x6B};

/// XORs a part of the bytes with the RC4 stream of the header's fixed key.
void Mask(Bytes& bytes, std::size_t offset, std::size_t size)
{
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + kMaskKey[i % kMaskKey.size()]);
        std::swap(state[i], state[j]);
    }
    j = 0;
    for (std::size_t i = 1; i <= size; ++i) {
        j = static_cast<std::uint8_t>(j + state[i]);
        std::swap(state[i], state[j]);
        const auto key = state[static_cast<std::uint8_t>(state[i] + state[j])];
        bytes[offset + i - 1] = static_cast<char>(bytes[offset + i - 1] ^ key);
    }
}

/// The password padded with zeros to its field; in Jet 4 XORed with the whole days of the creation date, four
/// bytes over and over.
Bytes PasswordField(const Layout& layout, std::string_view password, double created)
{
    const std::size_t size = layout.IsJet4() ? 2 * kLongestPassword : kLongestPassword;
    Bytes field = EncodeText(password, layout.format, false);
    if (field.size() > size)
        throw platform::Failure(platform::failure::kTypeMismatch, "A password has at most 20 characters");
    field.resize(size);
    if (layout.IsJet4()) {
        const Bytes days = NumberBytes(static_cast<std::int32_t>(created));
        for (std::size_t i = 0; i < size; ++i)
            field[i] = static_cast<char>(field[i] ^ days[i % days.size()]);
    }
    return field;
}

}  // namespace

Bytes BuildHeader(const Layout& layout, std::string_view password, double created)
{
    Bytes page(layout.pageSize, '\0');
    page.replace(0, 4, std::string_view("\0\1\0\0", 4));
    page.replace(4, 15, "Standard Jet DB");
    page[kVersionOffset] = layout.IsJet4() ? 1 : 0;
    Store(page, kCatalogueOffset, kCataloguePage);
    Store(page, kCodePageOffset, kCodePage1252);
    Store(page, layout.IsJet4() ? kJet4SortOrderOffset : kJet3SortOrderOffset, kGeneralSortOrder);
    const Bytes field = PasswordField(layout, password, created);
    page.replace(kPasswordOffset, field.size(), field);
    if (layout.IsJet4())
        Store(page, kCreatedOffset, std::bit_cast<std::uint64_t>(created));
    Mask(page, kMaskedOffset, layout.IsJet4() ? kJet4MaskedSize : kJet3MaskedSize);
    return page;
}

}  // namespace tools
