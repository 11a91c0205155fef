#pragma once

#include <exception>
#include <string>

namespace platform {

/// What every call across the platform seam throws when it cannot do its work.
///
/// The number is one that people know from this kind of program (see docs/failures.md); the description is
/// one short English sentence, in UTF-8, that names what failed: the path, the column, the address.
class Failure : public std::exception {
public:
    Failure(int number, std::string description);

    [[nodiscard]] int Number() const { return number_; }
    [[nodiscard]] const std::string& Description() const { return description_; }
    [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

private:
    int number_;
    std::string description_;
};

/// The exception being handled, as a Failure: itself if it is one, 7 for exhausted memory, 5 for any other.
/// Call it only inside a catch block.
[[nodiscard]] Failure CurrentFailure();

}  // namespace platform
