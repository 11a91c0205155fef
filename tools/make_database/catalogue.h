#pragma once

#include <cstdint>

#include "make_database/page_writer.h"
#include "make_database/usage_map.h"

namespace tools {

/// Writes the table of all tables, MSysObjects, with a row for itself and one for the table `trans`, whose definition
/// stands on `transPage`. It has the columns that readers ask for; Access has ten more.
void WriteCatalogue(PageOutput& output, UsageMapPage& maps, std::uint32_t transPage, double created);

}  // namespace tools
