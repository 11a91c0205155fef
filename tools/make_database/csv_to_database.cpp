#include "make_database/csv_to_database.h"

#include <fstream>

#include "make_database/receipt_reader.h"
#include "platform/failure.h"

namespace tools {
namespace {

using platform::Failure;

std::ifstream OpenInput(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file || file.peek() == std::ifstream::traits_type::eof())
        throw Failure(platform::failure::kPathFileAccess, path + ": cannot be read or is empty");
    return file;
}

/// Runs a step that reads the input, whose failures name the line: adds the name of the file.
template <class Step>
void NamingFile(const std::string& path, Step step)
{
    try {
        step();
    } catch (const Failure& failure) {
        if (failure.Number() != platform::failure::kTypeMismatch)
            throw;
        throw Failure(failure.Number(), path + ": " + failure.Description());
    }
}

/// The line on which a `ref` stands for the second time.
std::size_t SecondLine(const std::string& path, std::int32_t ref)
{
    std::ifstream file = OpenInput(path);
    ReceiptReader reader(file);
    Receipt receipt;
    for (int seen = 0; seen < 2 && reader.Next(receipt);)
        seen += receipt.ref == ref ? 1 : 0;
    return reader.Line();
}

/// How the recording was cut off; empty where it was not.
std::string CutOff(const std::string& path, const ReceiptReader& reader)
{
    const std::string where = path + ": line " + std::to_string(reader.Line()) + ": ";
    switch (reader.Tail()) {
        case CsvTail::kTorn:
            return where + "the recording ends in the middle of a record, which is left out";
        case CsvTail::kNoLineEnd:
            return where + "the last line has no end; its text may lack one too";
        default:
            return "";
    }
}

std::string AddReceipts(const std::string& path, DatabaseWriter& writer)
{
    std::ifstream file = OpenInput(path);
    ReceiptReader reader(file);
    Receipt receipt;
    while (reader.Next(receipt)) {
        try {
            writer.Add(receipt);
        } catch (const Failure& failure) {
            if (failure.Number() != platform::failure::kTypeMismatch)
                throw;
            FailAtLine(reader.Line(), failure.Description());
        }
    }
    return CutOff(path, reader);
}

void Finish(const std::string& path, DatabaseWriter& writer)
{
    try {
        writer.Finish();
    } catch (const DuplicateRef& failure) {
        FailAtLine(SecondLine(path, failure.Ref()), failure.Description());
    }
}

}  // namespace

std::string MakeDatabase(const std::string& input, const std::string& output, const DatabaseOptions& options)
{
    FilePages pages(output);
    DatabaseWriter writer(pages, options);
    std::string remark;
    NamingFile(input, [&] {
        remark = AddReceipts(input, writer);
        Finish(input, writer);
    });
    pages.Commit();
    return remark;
}

}  // namespace tools
