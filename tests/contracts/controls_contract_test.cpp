#include <gtest/gtest.h>

#include "fakes/controls.h"
#include "platform/failure.h"
#include "platform/posix/epoll_loop.h"
#include "platform/posix/tick_schedule.h"
#include "platform/posix/timer.h"
#include "platform/window/controls.h"
#include "platform/window/list_box.h"
#include "support/failure_of.h"

namespace platform {
namespace {

struct FakeControls {
    fakes::Journal journal;
    fakes::ListBox list{journal, "list"};
    fakes::CheckBox box{journal, "box"};
    fakes::DropDownList choice{journal, "choice"};
    fakes::Timer timer{journal, "timer"};

    [[nodiscard]] int SelectedLine() const { return list.selected; }
};

struct RealControls {
    window::ListBox list{nullptr};
    window::CheckBox box;
    window::DropDownList choice{nullptr};
    EventGate gate;
    posix::EpollLoop loop;
    posix::TickSchedule schedule;
    posix::Timer timer{gate, loop, schedule};

    [[nodiscard]] int SelectedLine() const { return list.SelectedLine(); }
};

template <class Controls>
class ControlsContract : public testing::Test {
protected:
    Controls its;
};

using Kinds = testing::Types<FakeControls, RealControls>;
TYPED_TEST_SUITE(ControlsContract, Kinds);

TYPED_TEST(ControlsContract, AListSelectsItsOwnLinesOnly)
{
    auto& list = this->its.list;
    list.AddItem("first");
    list.AddItem("second\nof two lines");
    EXPECT_EQ(this->its.SelectedLine(), -1);
    list.SetListIndex(1);
    for (const int index : {2, 3, 32767, -2})
        EXPECT_EQ(FailureOf([&] { list.SetListIndex(index); }), failure::kInvalidPropertyValue) << index;
    EXPECT_EQ(FailureOf([&] { list.SetListIndex(32768); }), failure::kOverflow);
    list.AddItem("third");
    EXPECT_EQ(this->its.SelectedLine(), 1);
    list.SetListIndex(-1);
    EXPECT_EQ(this->its.SelectedLine(), -1);
    list.SetListIndex(2);
    list.Clear();
    EXPECT_EQ(this->its.SelectedLine(), -1);
    EXPECT_EQ(FailureOf([&] { list.SetListIndex(0); }), failure::kInvalidPropertyValue);
}

TYPED_TEST(ControlsContract, ACheckBoxHasThreeValues)
{
    auto& box = this->its.box;
    EXPECT_EQ(box.Value(), CheckBox::kUnticked);
    for (const int value : {CheckBox::kTicked, CheckBox::kNeither, CheckBox::kUnticked, CheckBox::kTicked}) {
        box.SetValue(value);
        EXPECT_EQ(box.Value(), value);
    }
    for (const int value : {9, 3, -1})
        EXPECT_EQ(FailureOf([&] { box.SetValue(value); }), failure::kInvalidPropertyValue) << value;
    EXPECT_EQ(box.Value(), CheckBox::kTicked);
}

TYPED_TEST(ControlsContract, ADropDownListTakesItsOwnItemsInAnyLetterCase)
{
    auto& choice = this->its.choice;
    choice.AddItem("TCP");
    EXPECT_EQ(choice.Text(), "");
    choice.AddItem("Mcast");
    choice.SetText("mcAST");
    EXPECT_EQ(choice.Text(), "Mcast");
    choice.AddItem("UDP");
    for (const char* text : {"", "UD", "UDP ", "*"})
        EXPECT_EQ(FailureOf([&] { choice.SetText(text); }), failure::kTextNotInList) << text;
    EXPECT_EQ(choice.Text(), "Mcast");
}

TYPED_TEST(ControlsContract, ATimerRefusesANegativeInterval)
{
    for (const int interval : {25, 0, 32000})
        EXPECT_EQ(FailureOf([&] { this->its.timer.SetInterval(interval); }), 0) << interval;
    EXPECT_EQ(FailureOf([&] { this->its.timer.SetInterval(-1); }), failure::kInvalidPropertyValue);
}

}  // namespace
}  // namespace platform
