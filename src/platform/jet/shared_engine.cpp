#include "platform/jet/shared_engine.h"

#include <chrono>
#include <utility>

#include "platform/jet/database_file.h"
#include "platform/jet/engine.h"

namespace platform::jet {
namespace {

/// Since 1970.
std::int64_t Nanoseconds()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

}  // namespace

/// One open file and, as long as someone uses them, the rows of the queries that were run on it.
class SharedFile : public std::enable_shared_from_this<SharedFile> {
public:
    SharedFile(std::shared_ptr<const FileSource> source, const std::string& path)
        : source_(std::move(source)), opened_(source_->State()), file_(OpenPageFile(source_, path))
    {}

    /// Whether a file in this state is this one, unchanged since it was opened.
    [[nodiscard]] bool Is(const FileState& state) const { return state == opened_.state && opened_.isSure; }

    [[nodiscard]] const PageFile& Pages() const { return *file_; }

    /// The rows of a query as they are now. They keep this file.
    [[nodiscard]] std::shared_ptr<const OrderedRows> Rows(const std::string& query)
    {
        const Moment now(source_->State());
        Found& found = found_[query];
        std::shared_ptr<const Kept> kept = found.kept.lock();
        if (!kept || !found.at.isSure || found.at.state != now.state) {
            kept = std::make_shared<const Kept>(Kept{shared_from_this(), RunQuery(file_, query)});
            found = {now, kept};
        }
        return {kept, kept->rows.get()};
    }

private:
    /// What the file was like, and whether a later change of it would show in its state.
    struct Moment {
        Moment() = default;
        explicit Moment(const FileState& now) : state(now), isSure(now.ShowsChangesAfter(Nanoseconds())) {}

        FileState state;
        bool isSure = false;
    };

    struct Kept {
        std::shared_ptr<SharedFile> file;
        std::shared_ptr<const OrderedRows> rows;
    };

    struct Found {
        Moment at;
        std::weak_ptr<const Kept> kept;
    };

    std::shared_ptr<const FileSource> source_;
    Moment opened_;
    std::shared_ptr<const PageFile> file_;
    std::map<std::string, Found> found_;  // by query
};

namespace {

class SharedDatabase : public Database {
public:
    explicit SharedDatabase(std::shared_ptr<SharedFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::unique_ptr<RecordSet> OpenRecordset(const std::string& query) override
    {
        return std::make_unique<JetRecordSet>(file_->Rows(query));
    }

private:
    std::shared_ptr<SharedFile> file_;
};

}  // namespace

std::unique_ptr<Database> SharedEngine::OpenDatabase(const std::string& path, const std::string& connect)
{
    std::erase_if(files_, [](const auto& entry) { return entry.second.expired(); });
    // Opened in any case: what keeps a file from being opened shows, and the path may name another one by
    // now.
    auto source = std::make_shared<const FileSource>(path);
    std::shared_ptr<SharedFile> file = files_[path].lock();
    if (!file || !file->Is(source->State())) {
        file = std::make_shared<SharedFile>(std::move(source), path);
        files_[path] = file;
    }
    CheckPassword(file->Pages(), PasswordIn(connect));
    return std::make_unique<SharedDatabase>(std::move(file));
}

}  // namespace platform::jet
