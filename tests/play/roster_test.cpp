#include "play/roster.h"

#include <gtest/gtest.h>

#include <set>

#include "fakes/clock_and_formats.h"
#include "fakes/files.h"
#include "play/checked_settings.h"
#include "play/usage_error.h"

namespace {

using player::Options;
using player::UsageError;

class Roster : public testing::Test {
protected:
    Roster()
    {
        files.contents["/shop/Config.ini"] = "";
        profile.values[{player::keys::kDatabase, player::keys::kFilePath}] = "day.mdb";
        options.settings = {"/shop/Config.ini"};
    }

    [[nodiscard]] std::vector<player::TillPlan> Plans() const
    {
        return PlansOf(options,
                       {files, profile, formats, "/shop", [this](const std::string&) { return isReadable; }},
                       {});
    }

    [[nodiscard]] player::CheckedSettings Checked(const player::TillPlan& plan) const
    {
        return Check(plan.settings, formats);
    }

    Options options;
    bool isReadable = true;

private:
    platform::fakes::Journal journal;
    platform::fakes::FileSystem files{journal, "files"};
    platform::fakes::ProfileFile profile{journal, "profile"};
    platform::fakes::PlainFormats formats;
};

TEST_F(Roster, GivesEachTillOfAShopItsNamePortAndPhase)
{
    options.settings.push_back("/shop/Config.ini");
    options.tills = 2;
    options.portStep = 10;
    const auto plans = Plans();
    ASSERT_EQ(plans.size(), 4U);
    EXPECT_EQ(plans[3].name, "/shop/Config.ini#2");
    EXPECT_EQ(Target(Checked(plans[2])), "127.0.0.1 port 5035 over TCP");
    EXPECT_EQ(Target(Checked(plans[3])), "127.0.0.1 port 5045 over TCP");
    EXPECT_DOUBLE_EQ(plans[3].phase.share, 0.75);
    options.together = true;
    options.portStep = 20'174;
    EXPECT_DOUBLE_EQ(Plans()[3].phase.share, 0);
    EXPECT_THROW(static_cast<void>(Checked(Plans()[3])), UsageError) << "a port above 65535";
}

TEST_F(Roster, IsTheSameShopInHoweverManyParts)
{
    options.tills = 10;
    options.portStep = 1;
    for (const std::int64_t parts : {1, 3, 7, 10}) {
        std::multiset<std::pair<std::int32_t, double>> portsAndPhases;
        for (std::int64_t part = 1; part <= parts; ++part) {
            options.shard = {part, parts};
            for (const auto& plan : Plans())
                portsAndPhases.emplace(Checked(plan).port, plan.phase.share);
        }
        std::multiset<std::pair<std::int32_t, double>> expected;
        for (int till = 0; till < 10; ++till)
            expected.emplace(5015 + till, till / 10.0);
        EXPECT_EQ(portsAndPhases, expected) << parts;
    }
}

TEST_F(Roster, TakesSettingsFromFilesOrBuiltInOrBesideTheProgram)
{
    options.settings = {"/shop/Nothing.ini"};
    EXPECT_THROW(static_cast<void>(Plans()), UsageError);
    options.settings.clear();
    EXPECT_EQ(Plans().front().settings.Path(), "/shop/Config.ini");
    options.namesDatabase = true;
    EXPECT_EQ(Plans().front().name, "built-in");
    options.namesDatabase = false;
    isReadable = false;
    EXPECT_THROW(static_cast<void>(Plans()), UsageError);
}

}  // namespace
