#include "machine.h"

#include <utility>

TillMachine::TillMachine(Machine& machine, platform::Schedule& schedule, std::function<void()> runPass,
                         std::chrono::milliseconds errorsApart)
    : timer(gate, machine.loop, schedule),
      events(gate, timer, std::move(runPass)),
      winsock(gate, machine.loop, machine.formats, errorsApart),
      multicast(gate, machine.loop)
{}
