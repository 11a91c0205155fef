#pragma once

#include <cstddef>
#include <string>

namespace platform {

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

    /// Gives a key a value, creating the key or its section where it is missing; all other bytes of the file
    /// stay as they are. Does nothing where the file does not exist or cannot be written.
    virtual void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                            const std::string& value, const std::string& path) = 0;
};

}  // namespace platform
