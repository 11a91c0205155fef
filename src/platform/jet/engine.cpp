#include "platform/jet/engine.h"

#include <algorithm>

#include "platform/conversions.h"
#include "platform/jet/database_file.h"

namespace platform::jet {
namespace {

constexpr std::string_view kPasswordKey = "pwd=";

}  // namespace

std::unique_ptr<Database> Engine::OpenDatabase(const std::string& path, const std::string& connect)
{
    return OpenDatabaseFile(std::make_unique<FileSource>(path), path, PasswordIn(connect));
}

std::string PasswordIn(std::string_view connect)
{
    while (!connect.empty()) {
        std::string_view part = connect.substr(0, connect.find(';'));
        connect.remove_prefix(std::min(part.size() + 1, connect.size()));
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        if (LowerCase(part.substr(0, kPasswordKey.size())) == kPasswordKey)
            return std::string(part.substr(kPasswordKey.size()));
    }
    return {};
}

}  // namespace platform::jet
