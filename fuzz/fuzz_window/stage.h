#pragma once

#include <string>
#include <vector>

#include "fuzz_window/random.h"

/// Where the program acts: on a small disk, all else being read only, and without a way into any network. So it
/// does no harm, whatever is clicked and typed.
namespace stage {

inline const std::string kFolder = "/mnt/program";  ///< the executable's directory
inline const std::string kDatabase = kFolder + "/receipts.mdb";
inline const std::string kSettings = kFolder + "/Config.ini";
inline const std::string kLog = kFolder + "/Trellivan Error.log";
inline constexpr int kPort = 5015;

/// Once, before any thread runs. Throws std::system_error where the process has no namespaces of its own.
void Build();

/// Leaves nothing on the disk but the folder with settings and database.
void Furnish();

/// Does to the program's files what other programs, people or a full disk may do. Faults add up until Furnish.
void CauseFault(Random& random);

/// The records of the database, in order.
[[nodiscard]] std::vector<std::string> Feed();

}  // namespace stage
