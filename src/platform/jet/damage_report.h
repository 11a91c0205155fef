#pragma once

#include <cstdint>
#include <string>

#include "platform/failure.h"
#include "platform/jet/byte_view.h"

namespace platform::jet {

/// Damage whose page is known and stands in front of its description.
class DamageOnPage : public Damage {
public:
    using Damage::Damage;
};

/// Runs a step that reads a page; Damage that it meets names the page, the innermost where steps nest.
template <class Step>
auto OnPage(std::uint32_t number, const Step& step)
{
    try {
        return step();
    } catch (const DamageOnPage&) {
        throw;
    } catch (const Damage& damage) {
        throw DamageOnPage("page " + std::to_string(number) + ": " + damage.what());
    }
}

/// Runs a step that reads a table; Damage that it meets names the table and stays Damage.
template <class Step>
auto InTable(const std::string& name, const Step& step)
{
    try {
        return step();
    } catch (const DamageOnPage& damage) {
        throw DamageOnPage("table " + name + ", " + damage.what());
    } catch (const Damage& damage) {
        throw Damage("table " + name + ": " + damage.what());
    }
}

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
