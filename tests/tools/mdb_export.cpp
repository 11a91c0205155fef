#include "tools/mdb_export.h"

#include <sstream>

#include "make_database/csv_reader.h"
#include "support/files.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"

bool HasMdbExport()
{
    return RunCommand("mdb-export --version").exitCode == 0;
}

std::vector<Texts> MdbExport(const std::string& database)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("t.mdb");
    WriteFile(path, database);
    std::istringstream printed(
        RunCommand("mdb-export -H -0 NULL -T '%Y-%m-%d %H:%M:%S' " + path + " trans").output);
    tools::CsvReader csv(printed);
    std::vector<Texts> rows;
    for (tools::CsvRecord record; csv.Next(record);) {
        rows.emplace_back();
        for (const tools::CsvField& field : record.fields)
            rows.back().push_back(field.text);
    }
    return rows;
}
