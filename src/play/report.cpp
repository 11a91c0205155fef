#include "play/report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>

namespace player {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostNamed = 10;

double Rounded(double value)
{
    return std::round(value * 1000) / 1000;
}

Json ErrorsOf(const std::vector<CountedError>& errors)
{
    Json list = Json::array();
    for (const CountedError& error : errors)
        list.push_back({{"number", error.number},
                        {"procedure", error.procedure},
                        {"description", error.description},
                        {"count", error.count}});
    return list;
}

void AddFigures(Json& report, const Figures& figures)
{
    report["outcome"] = Name(figures.outcome);
    report["records"] = figures.records;
    report["bytes"] = figures.bytes;
    report["seconds"] = Rounded(figures.seconds);
    report["records_refused"] = figures.recordsRefused;
    report["records_in_doubt"] = figures.recordsInDoubt;
    report["connections"] = figures.connections;
    const auto milliseconds = [&](double lateness) {
        return figures.lateness.IsEmpty() ? Json() : Json(lateness);
    };
    report["lateness_ms"] = {{"p50", milliseconds(figures.lateness.Percentile(0.5))},
                             {"p99", milliseconds(figures.lateness.Percentile(0.99))},
                             {"max", milliseconds(figures.lateness.Greatest())}};
    report["late"] = figures.late;
    report["errors"] = ErrorsOf(figures.errors);
}

template <class... Arguments>
std::string Text(const char* format, Arguments... arguments)
{
    std::array<char, 256> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, arguments...);
    return buffer.data();
}

std::string AndMore(std::size_t count, const std::string& one)
{
    return count <= kMostNamed
               ? ""
               : "  and " + Counted(static_cast<std::int64_t>(count - kMostNamed), "further " + one) + "\n";
}

/// The first ones: a thousand tills may have as many.
std::string ErrorLines(const std::vector<CountedError>& errors)
{
    std::string text;
    for (const CountedError& error : std::span(errors).first(std::min(errors.size(), kMostNamed)))
        text += "  " + std::to_string(error.number) + " " + error.procedure + ": " + error.description +
                (error.count == 1 ? "" : " (" + Grouped(error.count) + " times)") + "\n";
    return text + AndMore(errors.size(), "error");
}

std::string Outcomes(const std::vector<Figures>& tills)
{
    std::string text;
    for (const Outcome outcome :
         {Outcome::kComplete, Outcome::kLost, Outcome::kFailed, Outcome::kInterrupted}) {
        const auto count = std::ranges::count(tills, outcome, &Figures::outcome);
        if (count > 0)
            text += (text.empty() ? "" : ", ") + Grouped(count) + " " + Name(outcome);
    }
    return text;
}

/// The first of the tills that did not play everything.
std::string Incomplete(const std::vector<Figures>& tills)
{
    std::string text;
    std::size_t count = 0;
    for (const Figures& till : tills) {
        if (till.outcome != Outcome::kComplete && count++ < kMostNamed)
            text += "  " + till.name + ": " + Name(till.outcome) + " after " +
                    Counted(till.records, "record") + "\n";
    }
    return text + AndMore(count, "till");
}

}  // namespace

std::string ReportOf(const std::vector<Figures>& tills, bool isShop)
{
    Json report;
    AddFigures(report, tills.size() == 1 ? tills.front() : Together(tills));
    if (isShop) {
        Json list = Json::array();
        for (const Figures& till : tills) {
            Json one = {{"name", till.name}};
            AddFigures(one, till);
            list.push_back(std::move(one));
        }
        report["tills"] = std::move(list);
    }
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string SummaryOf(const std::vector<Figures>& tills)
{
    const bool isShop = tills.size() > 1;
    const Figures all = isShop ? Together(tills) : tills.front();
    std::string text =
        isShop ? Counted(static_cast<std::int64_t>(tills.size()), "till") + ": " + Outcomes(tills) + "\n"
               : Name(all.outcome) + "\n";
    text += "  " + Counted(all.records, "record") + ", " + Counted(all.bytes, "byte") +
            Text(" in %.1f s", all.seconds) + (isShop ? "" : " to " + all.target) + ", " +
            Counted(all.connections, "connection") + "\n";
    if (all.recordsRefused + all.recordsInDoubt > 0)
        text += "  " + Counted(all.recordsRefused, "record") + " refused, " + Grouped(all.recordsInDoubt) +
                " in doubt\n";
    if (!all.lateness.IsEmpty())
        text += Text("  lateness p50 %.3f ms, p99 %.3f ms, max %.3f ms; ", all.lateness.Percentile(0.5),
                     all.lateness.Percentile(0.99), all.lateness.Greatest()) +
                Grouped(all.late) + " late by more than an interval\n";
    text += ErrorLines(all.errors);
    return isShop ? text + Incomplete(tills) : text;
}

std::string Grouped(std::int64_t number)
{
    std::string digits = std::to_string(number);
    for (auto place = static_cast<std::ptrdiff_t>(digits.size()) - 3; place > (number < 0 ? 1 : 0);
         place -= 3)
        digits.insert(static_cast<std::size_t>(place), ",");
    return digits;
}

std::string Counted(std::int64_t number, const std::string& one)
{
    return Grouped(number) + " " + one + (number == 1 ? "" : "s");
}

}  // namespace player
