#pragma once

#include <gtest/gtest.h>

#include "platform/failure.h"

/// The Failure that a call throws, which must say what failed; one with the number 0 where it throws none.
template <class Call>
[[nodiscard]] platform::Failure ThrownBy(const Call& call)
{
    try {
        static_cast<void>(call());
    } catch (const platform::Failure& failure) {
        EXPECT_FALSE(failure.Description().empty());
        return failure;
    }
    return {0, ""};
}

/// The number of the Failure that a call throws; 0 where it throws none.
template <class Call>
[[nodiscard]] int FailureOf(const Call& call)
{
    return ThrownBy(call).Number();
}
