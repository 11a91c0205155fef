#include "make_database/csv_to_database.h"

#include <fstream>

#include "make_database/receipt_reader.h"
#include "platform/failure.h"
#include "platform/failure_numbers.h"

namespace tools {
namespace {

using platform::Failure;

std::ifstream OpenInput(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file || file.peek() == std::ifstream::traits_type::eof())
        throw Failure(platform::failure::kFileNotFound, path + ": cannot be read or is empty");
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

void AddReceipts(const std::string& path, DatabaseWriter& writer)
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

void MakeDatabase(const std::string& input, const std::string& output, const DatabaseOptions& options)
{
    FilePages pages(output);
    DatabaseWriter writer(pages, options);
    NamingFile(input, [&] {
        AddReceipts(input, writer);
        Finish(input, writer);
    });
    pages.Commit();
}

}  // namespace tools
