#pragma once

namespace platform::window {

/// Makes the thread in which Qt paints large gradients, and keeps it for good.
///
/// Left alone, Qt makes that thread when it first paints such an area, a scroll bar in the middle of a replay, and anew
/// after half a minute without one. Where the system has no thread left at that moment the painting waits for ever, and
/// where it has no descriptor left GLib ends the program.
///
/// Failure: kOutOfMemory where the system gives no thread.
void StartPaintingThread();

}  // namespace platform::window
