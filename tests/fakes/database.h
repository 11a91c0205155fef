#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/journal.h"
#include "fakes/name_order.h"
#include "platform/database.h"

/// Databases held in memory: tables of rows in the order in which a query is to give them.
namespace platform::fakes {

/// One row: its values by column name. A column that is not there is a missing one.
using Row = std::map<std::string, Value, NameOrder>;

class RecordSet : public platform::RecordSet, private Journaled {
public:
    RecordSet(Journal& journal, const std::string& name, std::vector<Row> rows)
        : Journaled(journal, name), rows_(std::move(rows))
    {}

    [[nodiscard]] std::int64_t RecordCount() const override
    {
        return Read("RecordCount", static_cast<std::int64_t>(rows_.size()));
    }
    [[nodiscard]] bool AtEOF() const override { return Read("AtEOF", position_ == rows_.size()); }
    [[nodiscard]] Value Field(const std::string& column) const override
    {
        Call("Field", column);
        RequireRow(position_ < rows_.size());
        const auto found = rows_[position_].find(column);
        if (found == rows_[position_].end())
            throw Failure(failure::kNoSuchColumn, "There is no column \"" + column + "\"");
        return found->second;
    }
    void MoveNext() override
    {
        Call("MoveNext");
        RequireRow(position_ < rows_.size());
        ++position_;
    }
    void MoveFirst() override
    {
        Call("MoveFirst");
        RequireRow(!rows_.empty());
        position_ = 0;
    }

private:
    static void RequireRow(bool isThere)
    {
        if (!isThere)
            throw Failure(failure::kNoCurrentRecord, "No current record");
    }

    std::vector<Row> rows_;
    std::size_t position_ = 0;
};

class Database : public platform::Database, private Journaled {
public:
    Database(Journal& journal, std::vector<Row> rows)
        : Journaled(journal, "TransactionDB"), rows_(std::move(rows))
    {}

    [[nodiscard]] std::unique_ptr<platform::RecordSet> OpenRecordset(const std::string& query) override
    {
        Call("OpenRecordset", query);
        return std::make_unique<RecordSet>(Notes(), "TransactionSet", rows_);
    }

private:
    std::vector<Row> rows_;
};

/// Opens every path as a database with these rows.
class DatabaseEngine : public platform::DatabaseEngine, private Journaled {
public:
    DatabaseEngine(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    [[nodiscard]] std::unique_ptr<platform::Database> OpenDatabase(const std::string& path,
                                                                   const std::string& connect) override
    {
        Call("OpenDatabase", connect.empty() ? path : path + " " + connect);
        return std::make_unique<Database>(Notes(), rows);
    }

    std::vector<Row> rows;
};

}  // namespace platform::fakes
