#include <gtest/gtest.h>

#include "platform/ansi_code_page.h"
#include "record/read_recording.h"
#include "support/player.h"

/// From a feed to a recording, to a database, and to the same feed.
namespace {

/// Receipts with line breaks of every kind, quotes and every byte, each with the end text.
const Texts kReceipts = {"Total\r\n\"1\"\n;;", EveryByte() + ";;", "\r;;", "\"\";;", ";;"};

Texts AsUtf8(Texts texts)
{
    for (std::string& text : texts)
        text = platform::FromAnsi(text);
    return texts;
}

TEST(Circle, WhatIsPlayedRecordedAndMadeADatabasePlaysTheSameBytes)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"--ends-with ';;' --role Listen", "on port", "--role Connect"},
        {"--ends-with ';;' --role Connect --address 127.0.0.1", "tried again", "--role Listen"},
        {"--protocol UDP", "on port", "--protocol UDP"},
        {"--protocol MCAST --address 239.1.2.3", "joined", "--protocol MCAST --address 239.1.2.3"},
    };
    for (const auto& [recorder, isReady, arguments] : cases) {
        Player player(AsUtf8(kReceipts));
        for (const char* turn : {"first.csv", "second.csv"}) {
            SCOPED_TRACE(std::string(arguments) + ' ' + turn);
            const std::string recording = player.Path(turn);
            RunningCommand recorded(std::string("exec " RECORD_FEED " --port 5015 --records ") +
                                    std::to_string(kReceipts.size()) + ' ' + recorder + ' ' + recording);
            ASSERT_TRUE(recorded.Says(isReady));
            EXPECT_EQ(player.Play("--database feed.mdb --interval 1 " + std::string(arguments)).status, 0);
            EXPECT_EQ(recorded.End(), 0);
            EXPECT_TRUE(recorded.Says(std::to_string(kReceipts.size()) + " records, "));
            EXPECT_EQ(PlayedTexts(recording), kReceipts);
            EXPECT_EQ(RunCommand(MAKE_DATABASE " " + recording + ' ' + player.Path("feed.mdb")).exitCode, 0);
        }
    }
}

}  // namespace
