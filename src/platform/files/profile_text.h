#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/files/profile_content.h"

/// The grammar of profile files. These functions touch no file.
///
/// Lines end at LF or CR LF. Names match without regard to the case of ASCII letters. A section that stands more than
/// once is one section, and the first of equal keys counts. Blanks (spaces, tabs, stray carriage returns) around names
/// and values are dropped, then one pair of quotes, double or single, around a value. A line that begins with ";" or "#"
/// is a comment.
namespace platform::files {

/// The value of a key in UTF-8, cut to `limit` characters; empty where there is none.
[[nodiscard]] std::string FindProfileValue(const ProfileContent& content, std::string_view section,
                                           std::string_view key, std::size_t limit);

/// Gives the entry's key its value. A key that has the value already stays to the byte. A new key goes behind the last
/// key of its section, a new section to the end, with the line ends of the lines before.
///
/// Every value reads back as it was given, but for what no line of text can hold: a line break in it becomes a blank, and
/// a byte that is no UTF-8 becomes U+FFFD.
void SetProfileEntry(ProfileContent& content, const ProfileEntry& entry);

}  // namespace platform::files
