#pragma once

#include <QLocale>
#include <chrono>
#include <functional>

#include "platform/event_gate.h"
#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "platform/jet/engine.h"
#include "platform/posix/clock.h"
#include "platform/posix/epoll_loop.h"
#include "platform/posix/event_queue.h"
#include "platform/posix/timer.h"
#include "platform/regional/regional_formats.h"
#include "platform/sockets/multicast.h"
#include "platform/sockets/winsock.h"

/// What all tills of a process share: event loop, clock, formats, files and database engine.
struct Machine {
    explicit Machine(const QLocale& locale) : formats(locale) {}

    platform::posix::EpollLoop loop;
    platform::posix::Clock clock;
    platform::regional::RegionalFormats formats;
    platform::files::DiskFileSystem files;
    platform::files::DiskProfileFile profile;
    platform::jet::Engine engine;
};

/// What one till has for itself: its gate, and what raises events through it.
struct TillMachine {
    /// All are borrowed and outlive the till. `runPass` is the pass that a tick's pause lets in. `errorsApart` is as
    /// of Winsock: tills that lose their receivers in one moment better not all call again in one.
    TillMachine(Machine& machine, platform::Schedule& schedule, std::function<void()> runPass,
                std::chrono::milliseconds errorsApart = platform::sockets::Winsock::kErrorsApart);

    platform::EventGate gate;
    platform::posix::Timer timer;
    platform::posix::EventQueue events;
    platform::sockets::Winsock winsock;
    platform::sockets::Multicast multicast;
};
