#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/database.h"

namespace platform::jet {

class SharedFile;

/// Reads the same files as Engine does, for many readers of few files: what has the same file open shares the
/// open file, its pages and the order of its rows. A further record set costs a cursor and the row it stands
/// on.
///
/// To its readers all is as with Engine. A file that was replaced or changed since it was opened is opened
/// anew, and so are rows read anew; earlier record sets go on with what they have. What nobody uses any more
/// is closed. Databases and record sets may outlive the engine.
class SharedEngine : public DatabaseEngine {
public:
    [[nodiscard]] std::unique_ptr<Database> OpenDatabase(const std::string& path,
                                                         const std::string& connect) override;

private:
    std::map<std::string, std::weak_ptr<SharedFile>> files_;  // by path
};

}  // namespace platform::jet
