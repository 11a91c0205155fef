#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/database.h"
#include "platform/regional_formats.h"
#include "play/played_records.h"
#include "play/record_span.h"

namespace player {

/// The spans of the databases of a shop. Tills that play the same one search it once.
class Spans {
public:
    /// The formats outlive this object.
    Spans(RefRange range, const platform::RegionalFormats& formats)
        : range_(std::move(range)), formats_(formats)
    {}

    /// Failure: as FindSpan.
    [[nodiscard]] RecordSpan Of(const std::string& path, platform::RecordSet& records);

private:
    RefRange range_;
    const platform::RegionalFormats& formats_;
    std::map<std::string, RecordSpan> found_;
};

/// A database engine whose record sets play a span of their records, and which tells what was wrong with a database.
class PlayedEngine final : public platform::DatabaseEngine {
public:
    struct Course {
        platform::DatabaseEngine& engine;
        Spans& spans;
        std::optional<std::int64_t> loops;
        const RecordEvents& events;
    };

    /// What is borrowed outlives the engine and its record sets.
    explicit PlayedEngine(const Course& course) : course_(course) {}

    [[nodiscard]] std::unique_ptr<platform::Database> OpenDatabase(const std::string& path,
                                                                   const std::string& connect) override;

    /// Why the database cannot be played, in one line; nothing while none was opened in vain.
    [[nodiscard]] const std::optional<std::string>& Problem() const { return problem_; }

    /// True once a record set is open.
    [[nodiscard]] bool IsOpen() const { return isOpen_; }

    /// Number of records that will be played; nothing before a record set is open, and where they have no end.
    [[nodiscard]] std::optional<std::int64_t> Total() const { return total_; }

private:
    class PlayedDatabase;

    [[nodiscard]] std::unique_ptr<platform::RecordSet> Played(const std::string& path,
                                                              std::unique_ptr<platform::RecordSet> all);
    template <class Open>
    [[nodiscard]] auto NotingProblem(const Open& open);

    Course course_;
    std::optional<std::string> problem_;
    bool isOpen_ = false;
    std::optional<std::int64_t> total_;
};

}  // namespace player
