#include "process_file/manual.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "process_file/commands.h"

namespace zelmo {
namespace {

using Names = std::set<std::string, std::less<>>;

/// What the reader knows of a command; that of `gds` looks for one argument and for no others.
Names KnownArguments(const Command& command) {
    if (command.word == "gds") {
        return {"-cell"};
    }
    return {command.arguments.begin(), command.arguments.end()};
}

std::vector<Command> AllCommands() {
    std::vector<Command> commands(SettingsCommands().begin(), SettingsCommands().end());
    commands.insert(commands.end(), StepCommands().begin(), StepCommands().end());
    return commands;
}

TEST(Manual, HasARowForEveryArgumentThatTheReaderKnowsAndNoOther) {
    std::size_t count = 0;
    for (const Command& command : AllCommands()) {
        Names told;
        for (const ManualRow& row : Manual()) {
            if (row.command == command.word) {
                EXPECT_TRUE(told.emplace(row.argument).second)
                    << row.argument << " of " << command.word << " comes twice";
                ++count;
            }
        }
        EXPECT_EQ(told, KnownArguments(command)) << command.word;
    }
    EXPECT_EQ(count, Manual().size()) << "a row of no command";
}

TEST(Manual, RowsAreFoundByCommandAndArgument) {
    for (const ManualRow& row : Manual()) {
        EXPECT_EQ(FindManualRow(row.command, row.argument), &row);
        EXPECT_FALSE(row.meaning.empty()) << row.command << " " << row.argument;
        EXPECT_FALSE(row.usual.empty()) << row.command << " " << row.argument;
    }
    EXPECT_EQ(FindManualRow("photo", "-depth"), nullptr);
    EXPECT_EQ(FindManualRow("", ""), nullptr);
}

TEST(Manual, ThePageOfProcessFilesTellsEveryArgument) {
    std::ifstream stream(ZELMO_PROCESS_FILE_PAGE, std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(stream), {}};
    ASSERT_FALSE(page.empty());
    for (const ManualRow& row : Manual()) {
        EXPECT_NE(page.find(fmt::format("`{}`", row.argument)), std::string::npos) << row.argument;
    }
}

}  // namespace
}  // namespace zelmo
