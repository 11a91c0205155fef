#include "play/files_to_read.h"

#include "platform/failure.h"

namespace player {
namespace {

[[noreturn]] void Refuse(const std::string& path)
{
    throw platform::Failure(platform::failure::kPermissionDenied, path + " is not written");
}

}  // namespace

void FilesToRead::Append(const std::string& path, const std::string& /*bytes*/)
{
    Refuse(path);
}

std::unique_ptr<platform::LockedTextFile> FilesToRead::OpenLocked(const std::string& path)
{
    Refuse(path);
}

}  // namespace player
