#include "process_file/manual.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>
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

std::string TextOfFile(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_FALSE(text.empty()) << path;
    return text;
}

std::size_t CountOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

/// The commands that have arguments, each with theirs in the manual's order behind `before` and in
/// front of `after`.
std::vector<std::pair<std::string, std::string>> ArgumentsOfCommands(const std::string& before,
                                                                     const std::string& after) {
    std::vector<std::pair<std::string, std::string>> commands;
    for (const ManualRow& row : Manual()) {
        if (commands.empty() || commands.back().first != row.command) {
            commands.emplace_back(row.command, "");
        }
        commands.back().second += fmt::format("{}{}{}", before, row.argument, after);
    }
    return commands;
}

TEST(Manual, TheWordsOfVimAreTheReaders) {
    const std::string vim = TextOfFile(ZELMO_EDITORS "/vim/syntax/zelmo.vim");
    const auto commands = ArgumentsOfCommands(" ", "");
    for (const auto& [command, arguments] : commands) {
        std::string group = command;
        group[0] = static_cast<char>(group[0] - 'a' + 'A');
        for (const std::string& line :
             {fmt::format("start=/^\\s*{}\\>/ end=/$/ oneline keepend "
                          "contains=zelmo{}Argument,@zelmoValue\n",
                          command, group),
              fmt::format("syntax keyword zelmo{}Argument contained{}\n", group, arguments),
              fmt::format("highlight default link zelmo{}Argument Identifier\n", group)}) {
            EXPECT_EQ(CountOf(vim, line), 1u) << line;
        }
    }
    EXPECT_EQ(CountOf(vim, "syntax keyword "), commands.size());
    EXPECT_EQ(CountOf(vim, "matchgroup=zelmoCommand start="), AllCommands().size());
    for (const Command& command : AllCommands()) {
        EXPECT_EQ(CountOf(vim, fmt::format("start=/^\\s*{}\\>/", command.word)), 1u)
            << command.word;
    }
}

TEST(Manual, TheWordsOfKateAreTheReaders) {
    const std::string kate = TextOfFile(ZELMO_EDITORS "/kate/zelmo-process.xml");
    const auto commands = ArgumentsOfCommands("      <item>", "</item>\n");
    for (const auto& [command, arguments] : commands) {
        const std::string list =
            fmt::format("    <list name=\"{}\">\n{}    </list>\n", command, arguments);
        EXPECT_EQ(CountOf(kate, list), 1u) << list;
        EXPECT_EQ(CountOf(kate, fmt::format("<keyword String=\"{}\"", command)), 1u) << command;
    }
    EXPECT_EQ(CountOf(kate, "<list "), commands.size());
    EXPECT_EQ(CountOf(kate, "attribute=\"Command\""), AllCommands().size());
    for (const Command& command : AllCommands()) {
        EXPECT_EQ(CountOf(kate, fmt::format("\"^\\s*{}(?=\\s|$)\"", command.word)), 1u)
            << command.word;
    }
}

}  // namespace
}  // namespace zelmo
