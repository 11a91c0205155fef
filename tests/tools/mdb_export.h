#pragma once

#include <string>
#include <vector>

using Texts = std::vector<std::string>;

/// Whether Debian's mdbtools are installed: a second opinion on what a file holds.
bool HasMdbExport();

/// The rows of the table `trans` as mdb-export prints them, each with its values as texts, null as "NULL" and
/// dates as "2021-05-14 15:07:09". It prints an empty memo like a null one.
std::vector<Texts> MdbExport(const std::string& database);
