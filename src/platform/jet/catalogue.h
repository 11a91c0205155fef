#pragma once

#include <string>

#include "platform/jet/page_file.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// Finds a table in the catalogue and reads its definition; the name matches without regard to case. Failure:
/// kTableNotFound, also for a table that is only linked from another database. Throws Damage.
[[nodiscard]] TableDefinition FindTable(const PageFile& file, const std::string& name);

/// Reads the definition of the catalogue itself, which every database has. Throws Damage.
[[nodiscard]] TableDefinition ReadCatalogueDefinition(const PageFile& file);

}  // namespace platform::jet
