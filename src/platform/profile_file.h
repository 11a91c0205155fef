#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace platform {

/// One key of one section with its value, in UTF-8. The names hold no "=", "]" or line break.
struct ProfileEntry {
    std::string section;
    std::string key;
    std::string value;
};

/// Profile (INI) files: named sections, each with keys that hold text. Names match without regard to case.
/// Texts are UTF-8. Neither call fails.
class ProfileFile {
public:
    virtual ~ProfileFile() = default;

    /// The value of a key, cut to `length` - 1 characters. Empty for a file that cannot be read, a missing
    /// section, a missing key and an empty value alike.
    [[nodiscard]] virtual std::string GetPrivateProfileStringA(const std::string& section,
                                                               const std::string& key, std::size_t length,
                                                               const std::string& path) const = 0;

    /// Gives keys their values, one after the other, creating a key or its section where it is missing; all other bytes
    /// of the file stay as they are. In one step: a file that does not exist or cannot be written (a full disk) keeps
    /// every old value.
    virtual void WritePrivateProfileStringA(const std::vector<ProfileEntry>& entries,
                                            const std::string& path) = 0;
};

}  // namespace platform
