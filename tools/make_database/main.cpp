#include <cstdio>
#include <string>

#include "command_line/command.h"
#include "make_database/csv_to_database.h"

namespace {

constexpr const char* kDescription =
    "Makes a database of recorded transactions, with the one table trans, from a CSV.";

constexpr const char* kFooter =
    "Columns of the CSV, which its first line names in any order:\n"
    "  ref             whole number; the order in which the records are sent\n"
    "  rawtransaction  the transaction's text, in quotes where it has several lines\n"
    "  timestamp       date and time, like 2021-05-14 15:07:09 or 2021-05-14T15:07:09.250\n"
    "  datetimestamp   the same\n"
    "\n"
    "The CSV is in UTF-8. A field with nothing in it is null; \"\" is an empty text. Where a recording was "
    "cut off "
    "in the middle of its last record, that record is left out.\n"
    "\n"
    "The files are meant for programs that read them. Do not edit them in Access.";

struct Arguments {
    tools::DatabaseOptions options;
    std::string input;
    std::string output;
};

void AddFormat(tools::Command& command, tools::Format& format)
{
    command
        .add_option_function<std::string>(
            "--format",
            [&format](const std::string& name) {
                format = name == "jet3" ? tools::Format::kJet3 : tools::Format::kJet4;
            },
            "jet4 (Access 2000 to 2003, as without the option) or jet3 (Access 97)")
        ->check(CLI::IsMember({"jet4", "jet3"}))
        ->option_text("FORMAT");
}

void AddOptions(tools::Command& command, Arguments& arguments)
{
    tools::DatabaseOptions& options = arguments.options;
    command.add_option("--password", options.password, "give the database a password of up to 20 characters");
    AddFormat(command, options.format);
    command.add_flag_callback(
        "--no-index", [&options] { options.index = false; },
        "no primary key on ref: it may be empty and stand in several rows");
    command.add_option("IN.csv", arguments.input, "the transactions")->required();
    command.add_option("OUT.mdb", arguments.output, "the database; one that is there is replaced")
        ->required();
}

}  // namespace

int main(int count, char** words)
{
    Arguments arguments;
    tools::Command command("make_database", kDescription);
    command.footer(kFooter);
    AddOptions(command, arguments);
    return command.Run(count, words, [&] {
        const std::string remark = tools::MakeDatabase(arguments.input, arguments.output, arguments.options);
        if (!remark.empty())
            std::fprintf(stderr, "make_database: %s\n", remark.c_str());
        return tools::kDone;
    });
}
