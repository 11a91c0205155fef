#include "app/mod_globals.h"

namespace trellivan {

void modGlobals::WriteErrorLog(const std::string& number, const std::string& description,
                               const std::string& procedure)
{
    try {
        errorLog_.Write(ErrorLogFilePath_, {number, description, procedure});
    } catch (...) {  // There is no other place to report it.
    }
}

void modGlobals::WriteErrorLog(const platform::Failure& failure, const std::string& procedure)
{
    WriteErrorLog(std::to_string(failure.Number()), failure.Description(), procedure);
}

}  // namespace trellivan
