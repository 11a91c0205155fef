#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/posix/file_descriptor.h"
#include "record/csv_line.h"

namespace record {

/// What the user asked for cannot be, and nothing was done: the command has to be another.
class WrongUsage : public platform::Failure {
public:
    explicit WrongUsage(std::string description);
};

enum class OnExisting { kRefuse, kGoOn };

/// The file of a recording. It holds whole rows whenever no call is under way, whatever becomes of the program.
///
/// A row that a power failure or a kill cut off in the middle of a write stays at the end; going on in the file
/// takes it away, and make_database leaves it out.
class RecordingFile {
public:
    /// Makes the file, or goes on behind its last whole row, and keeps other recorders out of it. WrongUsage
    /// where the file is there and must not be, is no recording or is being recorded to. Failure where it
    /// cannot be made, read or written.
    RecordingFile(std::string path, OnExisting onExisting);

    [[nodiscard]] const std::string& Path() const { return path_; }

    /// The `ref` of the next row: one more than the greatest in the file.
    [[nodiscard]] std::int64_t NextRef() const { return nextRef_; }

    /// How many bytes of a torn row were taken away from the end.
    [[nodiscard]] std::uint64_t TornBytes() const { return tornBytes_; }

    /// True when the last row, to which the end of its line was added, may itself be cut off: behind a quote that
    /// was to be the first of two. It is kept.
    [[nodiscard]] bool LastRowMayBeTorn() const { return lastRowMayBeTorn_; }

    /// How many rows this program has written.
    [[nodiscard]] std::uint64_t Rows() const { return rows_; }

    /// Adds a row with the next `ref` to those that the next Write writes; the row's own `ref` is not looked
    /// at. Failure: no `ref` is left.
    void Add(Row row);

    /// Writes the added rows in one write. Failure, a full disk above all: the rows that found room stay, what
    /// is behind them is taken away, and no row is added any more.
    void Write();

    /// Waits until all that was written is on the disk. Failure: the disk does not take it.
    void Sync();

    /// Takes away a file that this object made, for a recording that cannot begin.
    void RemoveIfNew();

    [[nodiscard]] int Descriptor() const { return file_.Number(); }

private:
    void Begin();
    void GoOn();
    void KeepOthersOut();
    void TakeStock();
    void WriteColumns();
    void AppendBytes(const std::string& bytes);
    void KeepWholeRows(std::size_t writtenBytes);
    void CutTo(std::uint64_t size);
    [[noreturn]] void Fail(int error, const char* what) const;

    std::string path_;
    platform::FileDescriptor file_;
    bool isNew_ = false;
    std::uint64_t size_ = 0;
    std::int64_t nextRef_ = 1;
    std::uint64_t tornBytes_ = 0;
    bool lastRowMayBeTorn_ = false;
    std::uint64_t rows_ = 0;
    std::string added_;
    std::vector<std::size_t> addedEnds_;  // of each row in added_
};

}  // namespace record
