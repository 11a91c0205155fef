#include "play/played_engine.h"

#include <utility>

#include "play/usage_error.h"

namespace player {

RecordSpan Spans::Of(const std::string& path, platform::RecordSet& records)
{
    if (!range_.from && !range_.to)
        return FindSpan(records, range_, formats_);
    const auto found = found_.find(path);
    return found != found_.end() ? found->second
                                 : found_.emplace(path, FindSpan(records, range_, formats_)).first->second;
}

template <class Open>
auto PlayedEngine::NotingProblem(const Open& open)
{
    try {
        return open();
    } catch (const std::exception& failure) {
        problem_ = failure.what();
        throw;
    }
}

class PlayedEngine::PlayedDatabase final : public platform::Database {
public:
    PlayedDatabase(PlayedEngine& engine, std::unique_ptr<platform::Database> database, std::string path)
        : engine_(engine), database_(std::move(database)), path_(std::move(path))
    {}

    [[nodiscard]] std::unique_ptr<platform::RecordSet> OpenRecordset(const std::string& query) override
    {
        return engine_.NotingProblem([&] { return engine_.Played(path_, database_->OpenRecordset(query)); });
    }

private:
    PlayedEngine& engine_;
    std::unique_ptr<platform::Database> database_;
    std::string path_;
};

std::unique_ptr<platform::Database> PlayedEngine::OpenDatabase(const std::string& path,
                                                               const std::string& connect)
{
    return NotingProblem([&] {
        return std::make_unique<PlayedDatabase>(*this, course_.engine.OpenDatabase(path, connect), path);
    });
}

std::unique_ptr<platform::RecordSet> PlayedEngine::Played(const std::string& path,
                                                          std::unique_ptr<platform::RecordSet> all)
{
    const RecordSpan span = course_.spans.Of(path, *all);
    if (span.count == 0)
        throw UsageError("The table trans of " + path + " is empty");
    if (course_.loops)
        total_ = span.count * *course_.loops;
    auto played = std::make_unique<PlayedRecords>(std::move(all), span, course_.loops, course_.events);
    isOpen_ = true;
    course_.events.opened(*played);
    return played;
}

}  // namespace player
