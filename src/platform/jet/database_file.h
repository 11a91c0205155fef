#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/jet/byte_source.h"

namespace platform::jet {

/// Opens a database whose bytes come from any source. `name` stands for it in descriptions, `password` is in
/// UTF-8 and ignored where the file has none. Failure: kInvalidPassword, kUnrecognisedFormat,
/// kDatabaseDamaged.
[[nodiscard]] std::unique_ptr<Database> OpenDatabaseFile(std::unique_ptr<ByteSource> source,
                                                         const std::string& name,
                                                         const std::string& password);

}  // namespace platform::jet
