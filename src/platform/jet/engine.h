#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"

namespace platform::jet {

/// Reads Jet 3 and Jet 4 database files (Access 97 to 2003). Each database that it opens has a file, pages
/// and positions of its own.
class Engine : public DatabaseEngine {
public:
    [[nodiscard]] std::unique_ptr<Database> OpenDatabase(const std::string& path,
                                                         const std::string& connect) override;
};

/// The password in a connect string, whose parts are separated by ";"; empty where it has none.
[[nodiscard]] std::string PasswordIn(std::string_view connect);

}  // namespace platform::jet
