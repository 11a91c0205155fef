#pragma once

#include <string>
#include <vector>

/// Where the program acts: a small disk of its own, all else being read only, so that whatever is clicked in the
/// file dialog changes nothing of this machine.
namespace stage {

inline const std::string kDisk = "/mnt";
inline const std::string kFolder = kDisk + "/program";  ///< the executable's directory
inline const std::string kDatabase = kFolder + "/receipts.mdb";
inline const std::string kSettings = kFolder + "/Config.ini";
inline const std::string kLog = kFolder + "/Trellivan Error.log";
inline constexpr int kPort = 5015;

/// Makes the disk. Only in a user namespace of its own; throws std::system_error elsewhere. Once, before any
/// thread runs.
void Build();

/// Lets the disk be written, or not.
void SetReadOnly(bool readOnly);

/// The folder as it is when all is well, without a log; nothing else is left on the disk.
void Furnish();

/// The records of the database, in order, as they go onto the wire.
[[nodiscard]] std::vector<std::string> Feed();

[[nodiscard]] std::string DatabaseContent();

}  // namespace stage
