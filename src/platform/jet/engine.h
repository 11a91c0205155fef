#pragma once

#include "platform/database.h"

namespace platform::jet {

/// Reads Jet 3 and Jet 4 database files (Access 97 to 2003).
class Engine : public DatabaseEngine {
public:
    [[nodiscard]] std::unique_ptr<Database> OpenDatabase(const std::string& path,
                                                         const std::string& connect) override;
};

}  // namespace platform::jet
