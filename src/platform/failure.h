#pragma once

#include <exception>
#include <string>

namespace platform {

/// What a call of the platform throws when it cannot do its work.
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

/// The numbers that failures carry. They are the ones that operators of this kind of program have always seen
/// in its error log.
namespace platform::failure {

inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kTextNotInList = 383;

// The database engine.
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kDatabaseNotFound = 3024;
inline constexpr int kInvalidPassword = 3031;
inline constexpr int kInvalidDatabasePath = 3044;
inline constexpr int kDatabaseDamaged = 3049;
inline constexpr int kDatabaseCannotBeOpened = 3051;
inline constexpr int kNoSuchQueryColumn = 3061;
inline constexpr int kTableNotFound = 3078;
inline constexpr int kNoSuchColumn = 3265;
inline constexpr int kUnrecognisedFormat = 3343;

// The socket controls: the numbers of the socket interface, and two of the control's own.
inline constexpr int kSocketPermissionDenied = 10013;
inline constexpr int kSocketInvalidArgument = 10022;
inline constexpr int kSocketWouldBlock = 10035;
inline constexpr int kMessageTooLong = 10040;
inline constexpr int kAddressInUse = 10048;
inline constexpr int kAddressNotAvailable = 10049;
inline constexpr int kNetworkDown = 10050;
inline constexpr int kNetworkUnreachable = 10051;
inline constexpr int kConnectionAborted = 10053;
inline constexpr int kConnectionReset = 10054;
inline constexpr int kNoBufferSpace = 10055;
inline constexpr int kNotConnected = 10057;
inline constexpr int kConnectionTimedOut = 10060;
inline constexpr int kConnectionRefused = 10061;
inline constexpr int kHostUnreachable = 10065;
inline constexpr int kHostNotFound = 11001;
inline constexpr int kWrongProtocolOrState = 40006;
inline constexpr int kInvalidOperationAtCurrentState = 40020;

inline constexpr int kDialogCancelled = 32755;

}  // namespace platform::failure
