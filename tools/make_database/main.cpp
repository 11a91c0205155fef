#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "make_database/database_writer.h"
#include "make_database/receipt_reader.h"
#include "platform/failure.h"
#include "platform/failure_numbers.h"

namespace {

using platform::Failure;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr std::string_view kUsage =
    "Usage: make_database [--password TEXT] [--format jet4|jet3] [--no-index] IN.csv OUT.mdb\n";

constexpr std::string_view kHelp =
    "\n"
    "Makes a database of recorded transactions, with the one table trans, from a CSV in UTF-8.\n"
    "\n"
    "The first line names the columns, in any order:\n"
    "  ref             whole number; the order in which the records are sent\n"
    "  rawtransaction  the transaction's text, in quotes where it has several lines\n"
    "  timestamp       date and time, like 2021-05-14 15:07:09 or 2021-05-14T15:07:09.250\n"
    "  datetimestamp   the same\n"
    "A field with nothing in it is null; \"\" is an empty text. Where a recording was cut off in the middle "
    "of\n"
    "its last record, that record is left out.\n"
    "\n"
    "  --password TEXT  give the database a password of up to 20 characters\n"
    "  --format FORMAT  jet4 (Access 2000 to 2003, as without the option) or jet3 (Access 97)\n"
    "  --no-index       no primary key on ref: it may be empty and stand in several rows\n"
    "  --help           show this text\n"
    "\n"
    "The files are meant for programs that read them. Do not edit them in Access.\n";

struct Arguments {
    tools::DatabaseOptions options;
    std::string input;
    std::string output;
};

struct WrongUsage {};

tools::Format ToFormat(std::string_view name)
{
    if (name != "jet3" && name != "jet4")
        throw WrongUsage();
    return name == "jet3" ? tools::Format::kJet3 : tools::Format::kJet4;
}

Arguments ParseArguments(const std::vector<std::string>& words)
{
    Arguments arguments;
    std::vector<std::string> files;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto value = [&] { return ++i < words.size() ? words[i] : throw WrongUsage(); };
        if (words[i] == "--password")
            arguments.options.password = value();
        else if (words[i] == "--format")
            arguments.options.format = ToFormat(value());
        else if (words[i] == "--no-index")
            arguments.options.index = false;
        else if (words[i].starts_with("-"))
            throw WrongUsage();
        else
            files.push_back(words[i]);
    }
    if (files.size() != 2)
        throw WrongUsage();
    arguments.input = files[0];
    arguments.output = files[1];
    return arguments;
}

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
    tools::ReceiptReader reader(file);
    tools::Receipt receipt;
    for (int seen = 0; seen < 2 && reader.Next(receipt);)
        seen += receipt.ref == ref ? 1 : 0;
    return reader.Line();
}

void Print(std::FILE* to, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), to);
}

/// Tells of a recording that was cut off.
void TellOfTail(const std::string& path, const tools::ReceiptReader& reader)
{
    const std::string where = "make_database: " + path + ": line " + std::to_string(reader.Line()) + ": ";
    if (reader.Tail() == tools::CsvTail::kTorn)
        Print(stderr, where + "the recording ends in the middle of a record, which is left out\n");
    if (reader.Tail() == tools::CsvTail::kNoLineEnd)
        Print(stderr, where + "the last line has no end; its text may lack one too\n");
}

void AddReceipts(const std::string& path, tools::DatabaseWriter& writer)
{
    std::ifstream file = OpenInput(path);
    tools::ReceiptReader reader(file);
    tools::Receipt receipt;
    while (reader.Next(receipt)) {
        try {
            writer.Add(receipt);
        } catch (const Failure& failure) {
            if (failure.Number() != platform::failure::kTypeMismatch)
                throw;
            tools::FailAtLine(reader.Line(), failure.Description());
        }
    }
    TellOfTail(path, reader);
}

void Finish(const std::string& path, tools::DatabaseWriter& writer)
{
    try {
        writer.Finish();
    } catch (const tools::DuplicateRef& failure) {
        tools::FailAtLine(SecondLine(path, failure.Ref()), failure.Description());
    }
}

void MakeDatabase(const Arguments& arguments)
{
    tools::FilePages pages(arguments.output);
    tools::DatabaseWriter writer(pages, arguments.options);
    NamingFile(arguments.input, [&] {
        AddReceipts(arguments.input, writer);
        Finish(arguments.input, writer);
    });
    pages.Commit();
}

}  // namespace

int main(int count, char** words)
{
    const std::vector<std::string> given(words + 1, words + count);
    if (given == std::vector<std::string>{"--help"}) {
        Print(stdout, std::string(kUsage) + std::string(kHelp));
        return 0;
    }
    Arguments arguments;
    try {
        arguments = ParseArguments(given);
    } catch (const WrongUsage&) {
        Print(stderr, kUsage);
        return kWrongUsage;
    }
    try {
        MakeDatabase(arguments);
    } catch (...) {
        Print(stderr, "make_database: " + platform::CurrentFailure().Description() + "\n");
        return kFailed;
    }
    return 0;
}
