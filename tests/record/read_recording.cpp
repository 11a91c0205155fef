#include "record/read_recording.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "make_database/receipt_reader.h"
#include "platform/ansi_code_page.h"
#include "platform/jet/engine.h"
#include "support/files.h"
#include "support/temporary_folder.h"

std::vector<PlayedRow> PlayedRows(const std::string& csvPath, tools::Format format)
{
    std::ifstream csv(csvPath, std::ios::binary);
    tools::ReceiptReader reader(csv);
    std::vector<tools::Receipt> receipts;
    for (tools::Receipt receipt; reader.Next(receipt);)
        receipts.push_back(receipt);
    const TemporaryFolder folder;
    WriteFile(folder.Path("made.mdb"), tools::DatabaseBytes(receipts, {.format = format, .password = ""}));

    platform::jet::Engine engine;
    const auto rows =
        engine.OpenDatabase(folder.Path("made.mdb"), "")->OpenRecordset("SELECT * FROM trans ORDER BY ref");
    std::vector<PlayedRow> played;
    for (; !rows->AtEOF(); rows->MoveNext())
        played.push_back({std::get<std::int32_t>(rows->Field("ref")),
                          platform::ToAnsi(std::get<std::string>(rows->Field("rawtransaction"))),
                          std::get<platform::DateTime>(rows->Field("datetimestamp"))});
    return played;
}

Texts PlayedTexts(const std::string& csvPath)
{
    Texts texts;
    std::ranges::transform(PlayedRows(csvPath), std::back_inserter(texts), &PlayedRow::bytes);
    return texts;
}
