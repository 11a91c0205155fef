#pragma once

#include <string>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
#include "platform/jet/byte_view.h"

namespace platform::jet {

/// Runs a step that reads a file; Damage that it meets becomes a Failure (kDatabaseDamaged) naming the file.
template <class Step>
auto ReportingDamage(const std::string& fileName, const Step& step)
{
    try {
        return step();
    } catch (const Damage& damage) {
        throw Failure(failure::kDatabaseDamaged,
                      "The database " + fileName + " is damaged: " + damage.what());
    }
}

}  // namespace platform::jet
