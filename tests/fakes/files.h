#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/journal.h"
#include "fakes/name_order.h"
#include "platform/ansi_code_page.h"
#include "platform/error_log.h"
#include "platform/failure.h"
#include "platform/file_system.h"

namespace platform::fakes {

/// Files held in memory: path to content. Another program keeps each of them locked.
class FileSystem : public platform::FileSystem, private Journaled {
public:
    FileSystem(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    [[nodiscard]] bool FileExists(const std::string& path) const override
    {
        return Read("FileExists " + path, contents.contains(path));
    }
    void Append(const std::string& path, const std::string& bytes) override
    {
        Call("Append", bytes);
        RefuseIf(path.empty(), failure::kPathNotFound, "There is no path");
        contents[path] += bytes;
    }
    [[nodiscard]] std::unique_ptr<LockedTextFile> OpenLocked(const std::string& path) override
    {
        Call("OpenLocked", path);
        const bool isThere = contents.contains(path);
        throw Failure(isThere ? failure::kPermissionDenied : failure::kPathNotFound, "Cannot lock " + path);
    }

    std::map<std::string, std::string> contents;
};

/// The one profile file that there is, held in memory: its values by section and key.
class ProfileFile : public platform::ProfileFile, private Journaled {
public:
    ProfileFile(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    [[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                       std::size_t length,
                                                       const std::string& path) const override
    {
        Call("GetPrivateProfileStringA", section + " " + key + " " + std::to_string(length) + " " + path);
        const auto found = values.find({section, key});
        const std::string value = found == values.end() ? "" : found->second;
        std::string_view rest = value;
        for (std::size_t count = 1; count < length && !rest.empty(); ++count)
            static_cast<void>(TakeCharacter(rest));
        return value.substr(0, value.size() - rest.size());
    }
    void WritePrivateProfileStringA(const std::vector<ProfileEntry>& entries,
                                    const std::string& path) override
    {
        std::string written = path;
        for (const auto& [section, key, value] : entries)
            written += "|" + section + " " + key + "=" + value;
        Call("WritePrivateProfileStringA", written);
        for (const auto& [section, key, value] : entries)
            values[{section, key}] = value;
    }

    std::map<NameOrder::Pair, std::string, NameOrder> values;
};

/// The records, as "number|description|procedure", and the limits that the log was trimmed to.
class ErrorLog : public platform::ErrorLog {
public:
    void Write(const std::string& /*path*/, const ErrorRecord& record) override
    {
        records.push_back(record.number + "|" + record.description + "|" + record.procedure);
    }
    void Trim(const std::string& /*path*/, std::int32_t newLineLimit, DateTime newAgeCutoff) override
    {
        lineLimit = newLineLimit;
        ageCutoff = newAgeCutoff;
    }

    std::vector<std::string> records;
    std::optional<std::int32_t> lineLimit;  // none: not trimmed
    DateTime ageCutoff{};
};

}  // namespace platform::fakes
