#include "process_file/substitution.h"

#include <array>
#include <random>

#include "process_file/arguments.h"
#include "process_file/words.h"
#include "process_file_fixture.h"

namespace zelmo {
namespace {

std::string Replaced(std::string_view line, const VariableValues& values = {}) {
    const SubstitutedLine result = Substitute(line, values);
    EXPECT_EQ(result.errors, Lines{});
    return result.text;
}

/// A line that stays as it is, with the text of its error.
std::string ErrorOf(std::string_view line, const VariableValues& values = {}) {
    const SubstitutedLine result = Substitute(line, values);
    EXPECT_EQ(result.text, line);
    return result.errors.size() == 1 ? result.errors[0] : "no single error";
}

TEST(Substitution, ReplacesVariablesByTheirValues) {
    const VariableValues values = {{"T", "500"}, {"name_2", "Oxide"}, {"_", "0.5"}};
    EXPECT_EQ(Replaced("deposition -name ${name_2} -thickness ${T} -sc ${_}", values),
              "deposition -name Oxide -thickness 500 -sc 0.5");
    EXPECT_EQ(Replaced("photo -mask_id ${T}/20,${T} -name a${name_2}b", values),
              "photo -mask_id 500/20,500 -name aOxideb");
    EXPECT_EQ(Replaced("photo -shift -${T} -1${T}", values), "photo -shift -500 -1500");
}

TEST(Substitution, DefaultsServeWhereNoValueIsGiven) {
    EXPECT_EQ(Replaced("etch -depth ${D:-500} -iso ${I:-0.1}", {{"I", "1"}}),
              "etch -depth 500 -iso 1");
    EXPECT_EQ(Replaced("photo -shift ${X:--0.5} ${Y:-}0"), "photo -shift -0.5 0");
    EXPECT_EQ(Replaced("etch -name ${A:-${B}", {{"B", "x"}}), "etch -name ${B");
}

TEST(Substitution, KeepsWhatIsNoVariable) {
    for (const char* line :
         {"etch -name ${D}", "etch -name ${", "etch -name ${}", "etch -name ${1A:-2}",
          "etch -name ${A", "etch -name ${A-2}", "etch -name ${A:2}", "etch -name $A",
          "etch -name ${A B}", "etch -name ${\xC3\x84:-2}", "", "  ", "strip"}) {
        EXPECT_EQ(Replaced(line, {{"A", "7"}, {"B", "8"}}), line);
    }
}

TEST(Substitution, ReplacesNeitherCommandsNorNamesOfArguments) {
    const VariableValues values = {{"A", "x"}};
    EXPECT_EQ(Replaced("${A} -name ${A}", values), "${A} -name x");
    EXPECT_EQ(Replaced("  e${A} ${A}", values), "  e${A} x");
    EXPECT_EQ(Replaced("etch -na${A} ${A}", values), "etch -na${A} x");
}

TEST(Substitution, KeepsAllWhiteSpace) {
    EXPECT_EQ(Replaced(" gds \t-cell\t${A}  \v${A} ", {{"A", "TOP"}}), " gds \t-cell\tTOP  \vTOP ");
}

TEST(Substitution, LooksNotIntoWhatAValueBrings) {
    EXPECT_EQ(Replaced("etch -name ${A}", {{"A", "${B}"}, {"B", "${A}"}}), "etch -name ${B}");
    EXPECT_EQ(Replaced("etch -name ${A}A}", {{"A", "${"}}), "etch -name ${A}");
}

TEST(Substitution, LetsNoValueBringAnArgument) {
    const std::string why =
        ", which has a \"-\" in front of a letter, as an argument begins: let it "
        "have another";
    EXPECT_EQ(ErrorOf("etch -name ${A}", {{"A", "-iso"}}), "The value ${A} becomes \"-iso\"" + why);
    EXPECT_EQ(ErrorOf("etch -name -${A}", {{"A", "iso"}}),
              "The value -${A} becomes \"-iso\"" + why);
    EXPECT_EQ(ErrorOf("etch -name ${A}iso", {{"A", "x-"}}),
              "The value ${A}iso becomes \"x-iso\"" + why);
    EXPECT_EQ(ErrorOf("etch -name x-${A}${B}", {{"A", ""}, {"B", "iso"}}),
              "The value x-${A}${B} becomes \"x-iso\"" + why);
    EXPECT_EQ(ErrorOf("etch -name x-i${A}", {{"A", "so"}}),
              "The value x-i${A} becomes \"x-iso\"" + why);
    EXPECT_EQ(ErrorOf("etch -name ${A:-x-iso}"), "The value ${A:-x-iso} becomes \"x-iso\"" + why);
}

TEST(Substitution, LetsNoValueBringAWordOrTakeOneAway) {
    EXPECT_EQ(ErrorOf("etch -name ${A}", {{"A", ""}}),
              "The value ${A} becomes empty: let it have a text");
    EXPECT_EQ(ErrorOf("etch -name ${A:-}"), "The value ${A:-} becomes empty: let it have a text");
    EXPECT_EQ(ErrorOf("etch -name ${A}", {{"A", "x 5"}}),
              "The value ${A} becomes \"x 5\", which has a blank: let it have another");
    for (const char* value : {"x\ty", "x\n", "\rx", "x\v"}) {
        EXPECT_NE(ErrorOf("etch -name ${A}", {{"A", value}}).find("control character"),
                  std::string::npos);
    }
}

TEST(Substitution, TellsWhichValuesNoVariableCanHave) {
    for (const char* value : {"", "500", "-0.5", "1e-3", "a,b/c", "a-", "#", "${A}", "\xC3\xA9"}) {
        EXPECT_EQ(WhyNoValue(value), std::nullopt) << value;
    }
    EXPECT_EQ(WhyNoValue("a b"), "has a blank");
    for (const std::string& value :
         {std::string("a\0b", 3), std::string("\n"), std::string("\x7F")}) {
        EXPECT_EQ(WhyNoValue(value), "has a tab, a line end or another control character");
    }
    EXPECT_EQ(WhyNoValue("a-b"), "has a \"-\" in front of a letter, as an argument begins");
    EXPECT_EQ(WhyNoValue(std::string(1023, 'a')), std::nullopt);
    EXPECT_EQ(WhyNoValue(std::string(1024, 'a')), "is longer than the 1023 bytes of a line");
}

TEST(Substitution, NamesAreWords) {
    for (const char* name : {"A", "a_1", "_", "WIDTH"}) {
        EXPECT_TRUE(IsVariableName(name)) << name;
    }
    for (const char* name : {"", "1", "1a", "a-b", "a b", "\xC3\xA9", "a."}) {
        EXPECT_FALSE(IsVariableName(name)) << name;
    }
}

/// The words of a line that begin as arguments, with their places among its words.
std::vector<std::pair<std::size_t, std::string>> ArgumentWords(std::string_view line) {
    std::vector<std::pair<std::size_t, std::string>> words;
    std::size_t count = 0;
    for (std::string_view word = TakeWord(line); !word.empty(); word = TakeWord(line)) {
        if (LooksLikeArgument(word)) {
            words.emplace_back(count, word);
        }
        ++count;
    }
    words.emplace_back(count, "");
    return words;
}

TEST(Substitution, ALineHasTheArgumentsThatItHadWhateverTheValuesAre) {
    std::mt19937 random(8);
    const auto pick = [&](const auto& from) { return from[random() % std::size(from)]; };
    constexpr std::array pieces = {"-",    "-",    "s",       "sc",      " ", "${A}",
                                   "${A}", "${B}", "0",       "\t",      "n", "N",
                                   "-sc",  "-iso", "${C:-c}", "${C:--}", "o", "#"};
    constexpr std::array values = {"-", "s", "sc", "-s", " ", "\n", "N", "o", "5", "", "iso", "x-"};
    int replaced = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string line = "etch";
        for (std::size_t piece = random() % 9; piece > 0; --piece) {
            line += pick(pieces);
        }
        const VariableValues given = {{"A", pick(values)}, {"B", pick(values)}};
        const SubstitutedLine result = Substitute(line, given);
        ASSERT_EQ(ArgumentWords(result.text), ArgumentWords(line)) << line << " / " << result.text;
        // Names that were not there before the replacement are not found by it either.
        const std::string neutral = Substitute(line, {{"A", "0"}, {"B", "0"}, {"C", "0"}}).text;
        for (const char* argument : {"-s", "-sc", "-iso", "-N"}) {
            ASSERT_TRUE(HasArgument(neutral, argument) || !HasArgument(result.text, argument) ||
                        HasArgument(line, argument))
                << line << " / " << result.text;
        }
        replaced += result.text != line ? 1 : 0;
    }
    EXPECT_GT(replaced, 10000);
}

class VariablesTest : public ProcessFileTest {};

TEST_F(VariablesTest, AreReplacedWhereValuesAreGiven) {
    values = VariableValues{{"T", "250"}};
    EXPECT_EQ(ReadSteps("deposition -name ${N:-Oxide} -type ${Y} -thickness ${T} -color 1 2 3 4\n"),
              Lines{});
    EXPECT_EQ(Step(1).material, "Oxide");
    EXPECT_EQ(Step(1).materialType, "${Y}");
    EXPECT_EQ(Step(1).thickness, 0.25f);
    EXPECT_EQ(
        file.variables,
        (std::vector<Variable>{{"N", "Oxide", 4}, {"Y", std::nullopt, 4}, {"T", std::nullopt, 4}}));
}

TEST_F(VariablesTest, AreTextWhereNoneAreGiven) {
    EXPECT_EQ(ReadSteps("strip -name ${N:-x}\n"),
              (Lines{"Error in line 4: strip command not allowed if no prior photo process"}));
    EXPECT_EQ(Step(1).processName, "${N:-x}");
    EXPECT_EQ(ReadSteps("release -name A -targets ${N}\n"),
              (Lines{"Error in line 4: Target etch type ${N} is undefined"}));
    EXPECT_TRUE(file.variables.empty());
    values = VariableValues{};
    EXPECT_EQ(ReadSteps("release -name A -targets ${N}\n"),
              (Lines{"Error in line 4: Target etch type ${N} is undefined"}));
}

TEST_F(VariablesTest, StandInCommandsButNotInComments) {
    values = VariableValues{};
    const Lines lines = Read(
        "settings -version ${V:-4} -N ${N:-300}\n"
        "#${C:-comment}\n"
        "location -x 0 -y 0 -dx ${W:-10} -dy ${W:-5}\n"
        "gds -cell ${CELL:-TOP} ${W}\n"
        "stop ${BEHIND}\n"
        "gds -cell ${NEVER}\n");
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(file.settings.gridColumns, 300);
    EXPECT_EQ(file.settings.windowHeight, 5.0f);
    EXPECT_EQ(file.settings.cellName, "TOP");
    EXPECT_EQ(file.variables, (std::vector<Variable>{{"V", "4", 1},
                                                     {"N", "300", 1},
                                                     {"W", "10", 3},
                                                     {"CELL", "TOP", 4},
                                                     {"BEHIND", std::nullopt, 5}}));
}

TEST_F(VariablesTest, ErrorsNameTheLineAndComeBeforeItsOthers) {
    values = VariableValues{{"T", "5 -sc 1"}, {"N", "a"}};
    EXPECT_EQ(ReadSteps("coating -name ${N} -type b -thickness ${T} -color 1 2 3 4\n"),
              (Lines{"Error in line 4: The value ${T} becomes \"5 -sc 1\", which has a blank: let "
                     "it have another",
                     "Error in line 4: No decimal number found reading -thickness argument",
                     "Error in line 4: Invalid -thickness argument: Thickness needs to be "
                     "positive."}));
}

TEST_F(VariablesTest, AValueWithoutAVariableIsAnError) {
    values = VariableValues{{"WITDH", "1"}};
    EXPECT_EQ(ReadSteps("#${WITDH}\n"),
              (Lines{"Error: WITDH is set, but no variable of the file: no argument's value holds "
                     "one, as ${NAME} or ${NAME:-500}"}));
    EXPECT_EQ(ReadSteps("etch -name ${DEPTH:-a}${WIDTH:-b} -targets -depth 1 -iso 0\n"),
              (Lines{"Error: WITDH is set, but no variable of the file: did you mean WIDTH?"}));
    EXPECT_EQ(ReadSteps("etch -name ${X:-a}${Y:-b}${X:-c} -targets -depth 1 -iso 0\n"),
              (Lines{"Error: WITDH is set, but no variable of the file: the file has X, Y"}));
    EXPECT_FALSE(Accepted());
}

TEST_F(VariablesTest, CanBeAskedFor) {
    const auto path = folder.Write("vary.txt",
                                   "settings -version ${V}\n"
                                   "etch -depth ${D:-5} -iso ${V:-4} -name ${V:-6}\n");
    EXPECT_EQ(FindVariables(path), (std::vector<Variable>{{"V", "4", 1}, {"D", "5", 2}}));
    EXPECT_TRUE(FindVariables(folder.Path() / "nowhere").empty());
}

}  // namespace
}  // namespace zelmo
