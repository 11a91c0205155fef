#include "app/mod_globals.h"
#include "platform/ansi_code_page.h"

namespace trellivan {

void modGlobals::WriteErrorLog(const std::string& number, const std::string& description,
                               const std::string& procedure)
{
    try {
        const std::string now = GeneralDate(clock_.Now(), formats_);
        files_.Append(ErrorLogFilePath_,
                      platform::ToAnsi(now + "|" + number + "|" + description + "|" + procedure + "\r\n"));
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is no other place to report it
    }
}

void modGlobals::WriteErrorLog(const platform::Failure& failure, const std::string& procedure)
{
    WriteErrorLog(std::to_string(failure.Number()), failure.Description(), procedure);
}

}  // namespace trellivan
