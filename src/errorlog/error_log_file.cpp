#include "errorlog/error_log_file.h"

#include "errorlog/trim.h"
#include "platform/ansi_code_page.h"

namespace trellivan {

void ErrorLogFile::Write(const std::string& path, const platform::ErrorRecord& record)
{
    const std::string now = GeneralDate(clock_.Now(), formats_);
    files_.Append(path, platform::ToAnsi(now + "|" + record.number + "|" + record.description + "|" +
                                         record.procedure + "\r\n"));
}

void ErrorLogFile::Trim(const std::string& path, std::int32_t lineLimit, platform::DateTime ageCutoff)
{
    TrimErrorLog(lineLimit, ageCutoff, path, files_, formats_);
}

}  // namespace trellivan
