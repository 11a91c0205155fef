#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/journal.h"
#include "fakes/name_order.h"
#include "platform/error_log.h"
#include "platform/failure.h"
#include "platform/file_system.h"

namespace platform::fakes {

/// The lines of one file held in memory.
class LockedText : public LockedTextFile {
public:
    explicit LockedText(std::string& content) : content_(content) {}

    [[nodiscard]] std::int64_t CountLines() const override;
    void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) override;

private:
    std::string& content_;
};

/// Files held in memory: path to content.
class FileSystem : public platform::FileSystem, private Journaled {
public:
    FileSystem(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    [[nodiscard]] bool FileExists(const std::string& path) const override
    {
        Call("FileExists", path);
        return contents.contains(path);
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
        RefuseIf(!contents.contains(path), failure::kPathNotFound, "There is no file " + path);
        return std::make_unique<LockedText>(contents[path]);
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
        return found == values.end() ? std::string() : FirstCharacters(found->second, length);
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

private:
    /// One character less than `length`, as many as fit into a buffer of that length with its end mark.
    [[nodiscard]] static std::string FirstCharacters(std::string_view text, std::size_t length);
};

/// The records, as "number|description|procedure".
class ErrorLog : public platform::ErrorLog {
public:
    void Write(const std::string& /*path*/, const ErrorRecord& record) override
    {
        records.push_back(record.number + "|" + record.description + "|" + record.procedure);
    }
    void Trim(const std::string& /*path*/, std::int32_t /*lineLimit*/, DateTime /*ageCutoff*/) override {}

    std::vector<std::string> records;
};

}  // namespace platform::fakes
