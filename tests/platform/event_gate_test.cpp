#include "platform/event_gate.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using platform::EventGate;

class EventGateTest : public testing::Test {
protected:
    /// Enters an event that notes its name in lower case when it begins and in upper case when it ends.
    void Enter(
        char name, const std::function<void()>& body = [] {})
    {
        gate.Enter([this, name, body] {
            trace.push_back(name);
            body();
            trace.push_back(static_cast<char>(name - 'a' + 'A'));
        });
    }

    EventGate gate;
    std::string trace;
};

TEST_F(EventGateTest, EventsWaitForTheEndOfTheRunningOneInTheirOrder)
{
    Enter('a', [&] {
        Enter('b', [&] { Enter('d'); });
        Enter('c');
    });
    Enter('e');
    EXPECT_EQ(trace, "aAbBcCdDeE");
}

TEST_F(EventGateTest, APauseLetsInWhatWaitsAndWhatComesMeanwhile)
{
    Enter('a', [&] {
        Enter('b');
        gate.Pause([&] { Enter('c', [&] { Enter('d'); }); });
        Enter('e');
    });
    EXPECT_EQ(trace, "abBcCdDAeE");
}

TEST_F(EventGateTest, AFailureEndsItsHandlerAndNothingElse)
{
    Enter('a', [&] {
        Enter('b');
        throw std::runtime_error("failed");
    });
    Enter('c');
    EXPECT_EQ(trace, "abBcC");
}

}  // namespace
