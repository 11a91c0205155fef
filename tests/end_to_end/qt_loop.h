#pragma once

#include "sockets/loop_helpers.h"

/// The event loop of the program in its window.
class QtLoop final : public platform::sockets::TestLoop {
protected:
    void RunPass(std::chrono::milliseconds longest) override;
    bool RunDuePass() override;
};

/// The one that tests wait with; it has no state.
inline QtLoop qtLoop;
