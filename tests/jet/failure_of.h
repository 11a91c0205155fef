#pragma once

#include <gtest/gtest.h>

#include "platform/failure.h"

namespace platform::jet {

/// The number of the Failure that a step throws; 0 where it throws none.
template <class Step>
int FailureOf(const Step& step)
{
    try {
        step();
    } catch (const Failure& failure) {
        EXPECT_FALSE(failure.Description().empty());
        return failure.Number();
    }
    return 0;
}

}  // namespace platform::jet
