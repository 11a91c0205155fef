#pragma once

#include "support/test_loop.h"

/// The event loop of the program in its window.
class QtLoop final : public TestLoop {
protected:
    void RunPass(std::chrono::milliseconds longest) override;
    bool RunDuePass() override;
};

/// The one that tests wait with; it has no state.
inline QtLoop qtLoop;
