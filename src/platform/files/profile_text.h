#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform::files {

/// One key of one section with its value, in UTF-8. Names hold no "=", "]" or line break.
struct ProfileEntry {
    std::string section;
    std::string key;
    std::string value;
};

/// The functions below take the content of a profile file as bytes and touch no file.
///
/// Lines end at LF or CR LF. Names match without regard to the case of ASCII letters; where a section stands
/// more than once, they are one section, and the first of equal keys counts. Blanks (spaces, tabs, stray
/// carriage returns) around names and values are dropped, then one pair of quotes, double or single, around a
/// value. A name or value that is valid UTF-8 is taken as that, any other as code page 1252.

/// The value of a key in UTF-8, cut to `limit` characters; empty where there is none.
[[nodiscard]] std::string FindProfileValue(std::string_view text, std::string_view section,
                                           std::string_view key, std::size_t limit);

/// The text with the entry's key given its value. All other bytes stay; a key that has the value already stays
/// to the byte. A new key goes behind the last key of its section, a new section to
/// the end, with the line ends of the lines before.
///
/// Every value reads back as it was given, with two exceptions that no line of text can hold: a line break in
/// it becomes a blank, and a byte that is no UTF-8 becomes U+FFFD. A text in UTF-16 is returned as it is.
[[nodiscard]] std::string WithProfileEntry(std::string_view text, const ProfileEntry& entry);

}  // namespace platform::files
