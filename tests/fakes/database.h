#pragma once

#include <map>
#include <memory>
#include <string>
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
    RecordSet(Journal& journal, const std::string& name, std::vector<Row> rows);

    [[nodiscard]] std::int64_t RecordCount() const override;
    [[nodiscard]] bool AtEOF() const override;
    [[nodiscard]] Value Field(const std::string& column) const override;
    void MoveNext() override;
    void MoveFirst() override;

private:
    std::vector<Row> rows_;
    std::size_t position_ = 0;
};

/// Opens every path as a database with these rows.
class DatabaseEngine : public platform::DatabaseEngine, private Journaled {
public:
    DatabaseEngine(Journal& journal, const std::string& name) : Journaled(journal, name), journal_(journal) {}

    [[nodiscard]] std::unique_ptr<platform::Database> OpenDatabase(const std::string& path,
                                                                   const std::string& connect) override;

    std::vector<Row> rows;

private:
    Journal& journal_;
};

}  // namespace platform::fakes
