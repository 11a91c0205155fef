#pragma once

#include <string>
#include <vector>

#include "make_database/database_writer.h"
#include "platform/date_time.h"
#include "support/texts.h"

/// A row of a recording after the way through a database.
struct PlayedRow {
    std::int32_t ref = 0;
    std::string bytes;  // as they go onto the wire
    platform::DateTime datetimestamp;

    bool operator==(const PlayedRow&) const = default;
};

/// Makes a database of a recording as make_database does, and reads it as the programs that play it do.
[[nodiscard]] std::vector<PlayedRow> PlayedRows(const std::string& csvPath,
                                                tools::Format format = tools::Format::kJet4);

/// Only the bytes of each row.
[[nodiscard]] Texts PlayedTexts(const std::string& csvPath);
