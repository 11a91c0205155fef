#include "fakes/files.h"

#include <sstream>
#include <vector>

#include "platform/ansi_code_page.h"

namespace platform::fakes {
namespace {

std::vector<std::string> LinesOf(const std::string& content)
{
    std::vector<std::string> lines;
    std::istringstream stream(content);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r') && !stream.eof())
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

std::int64_t LockedText::CountLines() const
{
    return static_cast<std::int64_t>(LinesOf(content_).size());
}

void LockedText::KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep)
{
    std::string kept;
    std::int64_t number = 0;
    for (const std::string& line : LinesOf(content_))
        if (keep(++number, line))
            kept += line + "\r\n";
    content_ = kept;
}

std::string ProfileFile::FirstCharacters(std::string_view text, std::size_t length)
{
    std::string_view rest = text;
    for (std::size_t count = 1; count < length && !rest.empty(); ++count)
        static_cast<void>(TakeCharacter(rest));
    return std::string(text.substr(0, text.size() - rest.size()));
}

}  // namespace platform::fakes
