#include <gtest/gtest.h>

#include <set>

#include "fakes/clock_and_formats.h"
#include "fakes/files.h"
#include "play/checked_settings.h"
#include "play/options.h"
#include "play/roster.h"
#include "play/usage_error.h"

namespace {

using player::CheckedSettings;
using player::Options;
using player::Override;

namespace keys = player::keys;

class Settings : public testing::Test {
protected:
    Settings()
    {
        files.contents["/shop/Config.ini"] = "";
        profile.values[{keys::kDatabase, keys::kFilePath}] = "day.mdb";
    }

    [[nodiscard]] player::TillSettings With(const std::vector<Override>& overrides) const
    {
        return {std::make_shared<player::SettingsFile>(profile, "/shop/Config.ini"), overrides};
    }

    [[nodiscard]] std::vector<player::TillPlan> Plans(const Options& options) const
    {
        return PlansOf(options, {files, profile, formats, "/shop", [](const std::string&) { return true; }},
                       {});
    }

    platform::fakes::Journal journal;
    platform::fakes::FileSystem files{journal, "files"};
    platform::fakes::ProfileFile profile{journal, "profile"};
    platform::fakes::PlainFormats formats;
};

TEST_F(Settings, OverridesAreNeitherCutNorWritten)
{
    const std::string path(1000, 'p');
    auto settings = With({{keys::kDatabase, keys::kFilePath, path}});
    EXPECT_EQ(settings.GetPrivateProfileStringA("database file", "Filepath", 256, ""), path);
    settings.WritePrivateProfileStringA({{keys::kDatabase, keys::kFilePath, "other"}}, "/shop/Config.ini");
    EXPECT_EQ(profile.values.at({keys::kDatabase, keys::kFilePath}), "day.mdb");
}

TEST_F(Settings, WithoutAValueTheBuiltInOneCounts)
{
    const CheckedSettings checked = Check(With({}), formats);
    EXPECT_EQ(checked.interval, std::chrono::milliseconds(25));
    EXPECT_EQ(checked.port, 5015);
    EXPECT_FALSE(checked.reconnect);
    EXPECT_EQ(Target(checked), "127.0.0.1 port 5015 over TCP");
}

TEST_F(Settings, RefusesWhatTheWindowWouldPassOverInSilence)
{
    const char* const connection = keys::kConnection;
    struct Case {
        std::vector<Override> overrides;
        bool isPlayable;
    };
    const std::vector<Case> cases = {
        {{{keys::kTimer, keys::kInterval, "32000"}}, true},
        {{{keys::kTimer, keys::kInterval, "32000.6"}}, false},
        {{{keys::kTimer, keys::kInterval, "0.4"}}, false},
        {{{keys::kTimer, keys::kInterval, "-5"}}, false},
        {{{keys::kTimer, keys::kInterval, "fast"}}, false},
        {{{connection, keys::kPort, "65535"}}, true},
        {{{connection, keys::kPort, "65536"}}, false},
        {{{connection, keys::kPort, "0"}}, false},
        {{{connection, keys::kPort, "http"}}, false},
        {{{connection, keys::kProtocol, "udp"}}, true},
        {{{connection, keys::kProtocol, "SCTP"}}, false},
        {{{connection, keys::kRole, "LISTEN"}}, true},
        {{{connection, keys::kRole, "Both"}}, false},
        {{{connection, keys::kReconnect, "Yes"}}, true},
        {{{connection, keys::kReconnect, "1"}}, false},
        {{{connection, keys::kProtocol, "MCAST"}, {connection, keys::kAddress, "239.1.2.3"}}, true},
        {{{connection, keys::kProtocol, "MCAST"}, {connection, keys::kAddress, "127.0.0.1"}}, false},
    };
    for (const Case& c : cases) {
        const auto settings = With(c.overrides);
        if (c.isPlayable)
            EXPECT_NO_THROW(static_cast<void>(Check(settings, formats))) << c.overrides.back().value;
        else
            EXPECT_THROW(static_cast<void>(Check(settings, formats)), player::UsageError)
                << c.overrides.back().value;
    }
    profile.values.clear();
    EXPECT_THROW(static_cast<void>(Check(With({}), formats)), player::UsageError) << "no database";
}

TEST_F(Settings, EachTillOfAShopHasItsNamePortAndPhase)
{
    Options options;
    options.settings = {"/shop/Config.ini", "/shop/Config.ini"};
    options.tills = 2;
    options.portStep = 10;
    const auto plans = Plans(options);
    ASSERT_EQ(plans.size(), 4U);
    EXPECT_EQ(plans[3].name, "/shop/Config.ini#2");
    EXPECT_EQ(plans[3].folder, "/shop");
    EXPECT_EQ(Check(plans[2].settings, formats).port, 5035);
    EXPECT_EQ(Check(plans[3].settings, formats).port, 5045);
    EXPECT_DOUBLE_EQ(plans[3].phase.share, 0.75);
    options.together = true;
    EXPECT_DOUBLE_EQ(Plans(options)[3].phase.share, 0);
}

TEST_F(Settings, APortThatIsSteppedTooHighIsRefusedWhereverItCameFrom)
{
    Options options;
    options.settings = {"/shop/Config.ini"};
    options.tills = 2;
    options.portStep = 1;
    options.overrides = {{keys::kConnection, keys::kPort, "65535"}};
    const auto plans = Plans(options);
    EXPECT_EQ(Check(plans[0].settings, formats).port, 65535);
    EXPECT_THROW(static_cast<void>(Check(plans[1].settings, formats)), player::UsageError);
}

TEST_F(Settings, TheShardsTogetherAreTheShop)
{
    Options options;
    options.settings = {"/shop/Config.ini"};
    options.tills = 10;
    options.portStep = 1;
    for (const std::int64_t parts : {1, 3, 7, 10}) {
        std::multiset<std::string> names;
        std::set<double> phases;
        for (std::int64_t part = 1; part <= parts; ++part) {
            options.shard = {part, parts};
            for (const auto& plan : Plans(options)) {
                names.insert(plan.name + " " + std::to_string(Check(plan.settings, formats).port));
                phases.insert(plan.phase.share);
            }
        }
        EXPECT_EQ(names.size(), 10U) << parts;
        EXPECT_EQ(std::set(names.begin(), names.end()).size(), 10U) << parts;
        EXPECT_EQ(phases.size(), 10U) << parts;
    }
    options.shard = {11, 11};
    EXPECT_EQ(Plans(options).size(), 1U);
    options.shard = {1, 11};
    EXPECT_THROW(Plans(options), player::UsageError) << "a part with no till";
}

TEST_F(Settings, ComeFromFilesOrAreBuiltInOrLieBesideTheProgram)
{
    Options options;
    EXPECT_EQ(Plans(options).front().settings.Path(), "/shop/Config.ini");
    options.namesDatabase = true;
    EXPECT_EQ(Plans(options).front().name, "built-in");
    options.settings = {"/shop/Nothing.ini"};
    EXPECT_THROW(Plans(options), player::UsageError);
}

Options Parsed(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "play_feed");
    return std::get<Options>(player::ParseOptions(static_cast<int>(arguments.size()), arguments.data()));
}

TEST(CommandLine, IsRead)
{
    const Options plain = Parsed({});
    EXPECT_EQ(plain.loops, 1);
    EXPECT_FALSE(plain.recorded);
    EXPECT_EQ(plain.wait, std::chrono::seconds(10));
    const Options full =
        Parsed({"a.ini", "b.ini", "--port", "6000", "--from", "-3", "--loop", "0", "--recorded", "--speed",
                "2.5", "--longest-gap", "1.5", "--wait", "0.25", "--shard", "2/3"});
    EXPECT_EQ(full.settings.size(), 2U);
    EXPECT_EQ(full.overrides.front().value, "6000");
    EXPECT_EQ(full.range.from, "-3");
    EXPECT_EQ(full.loops, std::nullopt);
    EXPECT_DOUBLE_EQ(full.recorded->speed, 2.5);
    EXPECT_EQ(full.recorded->longestGap, std::chrono::milliseconds(1500));
    EXPECT_EQ(full.wait, std::chrono::milliseconds(250));
    EXPECT_EQ(full.shard.number, 2);
    EXPECT_TRUE(Parsed({"--database", "x.mdb"}).overrides.front().value.starts_with('/'));
}

TEST(CommandLine, IsRefusedWhereItMakesNoSense)
{
    const std::vector<std::vector<const char*>> wrong = {
        {"--fast"},
        {"--speed", "2"},
        {"--longest-gap", "2"},
        {"--recorded", "--unpaced"},
        {"--recorded", "--speed", "0"},
        {"--recorded", "--speed", "nan"},
        {"--loop", "-1"},
        {"--loop", "1.5"},
        {"--wait", "-1"},
        {"--tills", "0"},
        {"--port-step", "-1"},
        {"--shard", "0/3"},
        {"--shard", "4/3"},
        {"--shard", "2"},
        {"--shard", "1/3x"},
        {"--address", ""},
        {"--port"},
    };
    for (auto arguments : wrong) {
        arguments.insert(arguments.begin(), "play_feed");
        try {
            const auto parsed = player::ParseOptions(static_cast<int>(arguments.size()), arguments.data());
            EXPECT_EQ(std::get<int>(parsed), 2) << testing::PrintToString(arguments);
        } catch (const player::UsageError&) {
            continue;
        }
    }
}

}  // namespace
