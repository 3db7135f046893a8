#include "process_file/arguments.h"

#include <array>
#include <utility>

#include "process_file/reader_state.h"
#include "process_file_fixture.h"

namespace zelmo {
namespace {

using namespace std::string_view_literals;

/// The readers of single arguments, on a line given as text.
class ArgumentsTest : public testing::Test {
protected:
    ArgumentsTest() { state.lineNumber = 7; }

    /// The errors since the last call.
    Lines Errors() {
        Lines texts;
        for (const ProcessFileError& error : std::exchange(state.errors, {})) {
            EXPECT_EQ(error.line, 7);
            texts.push_back(error.text);
        }
        return texts;
    }

    Lines Check(std::string_view line) {
        constexpr std::array allowed = {"-name"sv, "-x"sv, "-N"sv};
        CheckArguments(state, line, allowed);
        return Errors();
    }

    /// Reads into four values that start at -1 to -4.
    Lines Integers(std::string_view line, std::size_t count) {
        values = {-1, -2, -3, -4};
        ReadIntegers(state, line, "-a", std::span(values).first(count));
        return Errors();
    }

    ColorTable colors = testColors;
    ReaderState state{colors};
    std::array<std::int32_t, 4> values{};
};

TEST_F(ArgumentsTest, ErrorsWithoutALineCarryNoNumber) {
    state.lineNumber = 0;
    ReportError(state, "a %s b %d", "text", 12);
    ASSERT_EQ(state.errors.size(), 1u);
    EXPECT_EQ(ErrorLine(state.errors[0]), "Error: a text b 12");
}

TEST_F(ArgumentsTest, ACommandNeedsAnArgument) {
    EXPECT_EQ(Check("strip"), Lines{"Command has no argument"});
    EXPECT_EQ(Check("  strip  "), Lines{"Command has no argument"});
    EXPECT_EQ(Check("strip\t"), Lines{"Command has no argument"});
    EXPECT_EQ(Check("strip x"), Lines{});
}

TEST_F(ArgumentsTest, AWordOfADashAndALetterMustBeInTheList) {
    EXPECT_EQ(Check("c -verbose -name -X -xx -x"),
              (Lines{"Invalid argument -verbose", "Invalid argument -X", "Invalid argument -xx"}));
    EXPECT_EQ(Check("c -name -foo"), Lines{"Invalid argument -foo"});
}

TEST_F(ArgumentsTest, OtherWordsPassTheCheck) {
    EXPECT_EQ(Check("c -5 -.5 - -- -_a -\xe9 a-verbose --verbose 12 #"), Lines{});
}

TEST_F(ArgumentsTest, ATabMakesOneWordOfNameAndValue) {
    EXPECT_EQ(Check("c -x\t5"), Lines{"Invalid argument -x\t5"});
    EXPECT_EQ(Check("c\t-bad 5"), Lines{});
    EXPECT_EQ(Check("\t c -x"), Lines{});
    EXPECT_EQ(Check("\t -bad"), Lines{"Invalid argument -bad"});
    EXPECT_EQ(Check("\t c"), Lines{});
}

TEST_F(ArgumentsTest, IntegersAreReadInTheirOrder) {
    EXPECT_EQ(Integers("c -a 1 22  333 0 99", 4), Lines{});
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, 22, 333, 0}));
    EXPECT_EQ(Integers("c -a 7 x", 1), Lines{});
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{7, -2, -3, -4}));
}

TEST_F(ArgumentsTest, AMissingIntegerArgumentIsReported) {
    EXPECT_EQ(Integers("c -b 1", 1), Lines{"Argument -a not found"});
    EXPECT_EQ(values[0], -1);
}

TEST_F(ArgumentsTest, NothingBehindAnIntegerArgumentIsReported) {
    EXPECT_EQ(Integers("c -a", 2), Lines{"No integer value or values found reading argument -a"});
    EXPECT_EQ(Integers("c -a  ", 2), Lines{"No integer value or values found reading argument -a"});
    EXPECT_EQ(values[0], -1);
}

TEST_F(ArgumentsTest, ADashEndsAListOfIntegers) {
    EXPECT_EQ(Integers("c -a 1 2 -b 3", 3),
              Lines{"Not enough integer values found reading argument -a"});
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, 2, -3, -4}));
    EXPECT_EQ(Integers("c -a -5", 1), Lines{"Not enough integer values found reading argument -a"});
    EXPECT_EQ(Integers("c -a - 5", 1),
              Lines{"Not enough integer values found reading argument -a"});
}

TEST_F(ArgumentsTest, AWordWithAnythingButDigitsIsNoInteger) {
    for (const char* const word :
         {"12.5", "12.", "+5", "1e3", "x", "12abc", "1-2", "\xb2", "5\t"}) {
        EXPECT_EQ(Integers(std::string("c -a 9 ") + word + " 4", 2),
                  Lines{"Non integer value or values found reading argument -a"})
            << word;
        EXPECT_EQ(values, (std::array<std::int32_t, 4>{9, -2, -3, -4}));
    }
}

TEST_F(ArgumentsTest, AListThatEndsWithTheLineIsReportedWithItsLength) {
    EXPECT_EQ(Integers("c -a 1 2 3", 4), Lines{"Argument -a should be followed by 4 integer(s)"});
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, 2, 3, -4}));
}

TEST_F(ArgumentsTest, LargeIntegersSaturate) {
    EXPECT_EQ(Integers("c -a 2147483647 2147483648 99999999999999999999 0000000000000000000012", 4),
              Lines{});
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{2147483647, 2147483647, 2147483647, 12}));
}

TEST_F(ArgumentsTest, ATabBehindAnIntegerArgumentHidesAWord) {
    EXPECT_EQ(Integers("c -a\t5 6", 1), Lines{});
    EXPECT_EQ(values[0], 6);
}

TEST_F(ArgumentsTest, DecimalsAreReadBehindAnyWhiteSpace) {
    EXPECT_EQ(ReadDecimal(state, "c -t 2.5", "-t"), 2.5f);
    EXPECT_EQ(ReadDecimal(state, "c -t\t-2.5", "-t"), -2.5f);
    EXPECT_EQ(ReadDecimal(state, "c -t \t\v 2e1x", "-t"), 20.0f);
    EXPECT_EQ(ReadDecimal(state, "c -tab 3", "-t"), 3.0f);
    EXPECT_EQ(ReadDecimal(state, "c -t 1 -t 2", "-t"), 1.0f);
    EXPECT_EQ(Errors(), Lines{});
}

TEST_F(ArgumentsTest, AMissingDecimalIsReportedAndZero) {
    EXPECT_EQ(ReadDecimal(state, "c -u 2.5", "-t"), 0.0f);
    EXPECT_EQ(Errors(), Lines{"Argument -t not found"});
    for (const char* const line : {"c -t", "c -t ", "c -t abc", "c -t -u 5", "c -t inf"}) {
        EXPECT_EQ(ReadDecimal(state, line, "-t"), 0.0f);
        EXPECT_EQ(Errors(), Lines{"No decimal number found reading -t argument"}) << line;
    }
}

TEST_F(ArgumentsTest, WordsAreReadBehindAnyWhiteSpace) {
    EXPECT_EQ(ReadWord(state, "c -n abc def", "-n"), "abc");
    EXPECT_EQ(ReadWord(state, "c -n\tabc\tdef", "-n"), "abc");
    EXPECT_EQ(ReadWord(state, "c x-name abc", "-n"), "abc");
    EXPECT_EQ(Errors(), Lines{});
}

TEST_F(ArgumentsTest, LongWordsAreReadInFull) {
    const std::string word(1018, 'w');
    EXPECT_EQ(ReadWord(state, "c -n " + word, "-n"), word);
    EXPECT_EQ(Errors(), Lines{});
}

TEST_F(ArgumentsTest, AMissingWordIsReportedAndEmpty) {
    EXPECT_EQ(ReadWord(state, "c abc", "-n"), "");
    EXPECT_EQ(Errors(), Lines{"Argument -n not found"});
    EXPECT_EQ(ReadWord(state, "c -n \t", "-n"), "");
    EXPECT_EQ(Errors(), Lines{"No string found reading -n argument"});
}

TEST_F(ArgumentsTest, AWordThatBeginsWithADashIsReportedAndReturned) {
    EXPECT_EQ(ReadWord(state, "c -n -foo", "-n"), "-foo");
    EXPECT_EQ(Errors(), Lines{"Invalid character '-' in argument"});
    EXPECT_EQ(ReadWord(state, "c -n -", "-n"), "-");
    EXPECT_EQ(Errors(), Lines{"Invalid character '-' in argument"});
    EXPECT_EQ(ReadWord(state, "c -n a-b", "-n"), "a-b");
    EXPECT_EQ(Errors(), Lines{});
}

TEST_F(ArgumentsTest, TargetsAreTheNamesOfAllMaterialsOfTheTypes) {
    state.materials = {{"Ox1", "oxide"}, {"M1", "metal"}, {"Ox2", "oxide"}, {"Ox1", "oxide"}};
    Lines targets{"before"};
    ReadTargets(state, "etch -targets oxide metal oxide -iso metal", "-targets", targets);
    EXPECT_EQ(targets, (Lines{"before", "Ox1", "Ox2", "Ox1", "M1", "Ox1", "Ox2", "Ox1"}));
    EXPECT_EQ(Errors(), Lines{});
}

TEST_F(ArgumentsTest, UnknownTargetTypesAreReportedWordByWord) {
    state.materials = {{"Ox1", "oxide"}};
    Lines targets;
    ReadTargets(state, "etch -targets Oxide oxide Ox1 oxide\t -depth", "-targets", targets);
    EXPECT_EQ(targets, Lines{"Ox1"});
    EXPECT_EQ(Errors(),
              (Lines{"Target etch type Oxide is undefined", "Target etch type Ox1 is undefined",
                     "Target etch type oxide\t is undefined"}));
}

TEST_F(ArgumentsTest, MissingTargetsAreReported) {
    Lines targets;
    ReadTargets(state, "etch", "-targets", targets);
    EXPECT_EQ(Errors(), Lines{"Argument -targets not found"});
    ReadTargets(state, "etch -targets ", "-targets", targets);
    EXPECT_EQ(Errors(),
              Lines{"No targets found reading -targets argument: provide at least one target"});
    ReadTargets(state, "etch -targets -depth 5", "-targets", targets);
    ReadTargets(state, "etch -targets - x", "-targets", targets);
    EXPECT_EQ(Errors(), Lines{});
    EXPECT_TRUE(targets.empty());
    ReadTargets(state, "polish -stop", "-stop", targets);
    EXPECT_EQ(Errors(),
              Lines{"No targets found reading -stop argument: provide at least one target"});
    ReadTargets(state, "polish -name P", "-stop", targets);
    EXPECT_EQ(Errors(), Lines{"Argument -stop not found"});
}

class ColorTest : public ArgumentsTest {
protected:
    Lines Color(std::string_view line) {
        step = ProcessStep{};
        ReadColor(state, line, step, "no such colour");
        return Errors();
    }

    ProcessStep step;
};

using Channels = std::array<float, 3>;

TEST_F(ColorTest, ChannelsAreScaledByTheBrightness) {
    EXPECT_EQ(Color("c -color 255 255 255 50"), Lines{});
    for (const float channel : step.color) {
        EXPECT_FLOAT_EQ(channel, 0.5f);
    }
    EXPECT_EQ(Color("c -color 255 0 51 100"), Lines{});
    const float factor = 100.0f / 25500.0f;
    EXPECT_EQ(step.color, (Channels{255.0f * factor, 0.0f, 51.0f * factor}));
    EXPECT_FLOAT_EQ(step.color[0], 1.0f);
}

TEST_F(ColorTest, WordsBehindTheFourthValueArePassedBy) {
    EXPECT_EQ(Color("c -color 10 20 30 100 55"), Lines{});
    const float factor = 100.0f / 25500.0f;
    EXPECT_EQ(step.color, (Channels{10.0f * factor, 20.0f * factor, 30.0f * factor}));
}

TEST_F(ColorTest, AColorOutOfRangeIsReportedOnce) {
    const Lines invalid{"Invalid value(s) in -color argument"};
    EXPECT_EQ(Color("c -color 300 20 30 500"), invalid);
    EXPECT_EQ(Color("c -color 256 256 256 100"), invalid);
    EXPECT_EQ(Color("c -color 1 256 3 100"), invalid);
    EXPECT_EQ(Color("c -color 1 2 256 100"), invalid);
    EXPECT_EQ(Color("c -color 1 2 3 101"), invalid);
    EXPECT_EQ(step.color[0], 101.0f / 25500.0f);
    EXPECT_EQ(Color("c -color 255 255 255 100"), Lines{});
}

TEST_F(ColorTest, AShortColorIsReported) {
    EXPECT_EQ(Color("c -color 10 20 30"),
              Lines{"Argument -color should be followed by 4 integer(s)"});
    EXPECT_EQ(step.color, (Channels{0.0f, 0.0f, 0.0f}));
    EXPECT_EQ(Color("c -color 10 20 30 -alpha 1"),
              Lines{"Not enough integer values found reading argument -color"});
    EXPECT_EQ(step.color, (Channels{0.0f, 0.0f, 0.0f}));
    EXPECT_EQ(Color("c -color"), Lines{"No integer value or values found reading argument -color"});
}

TEST_F(ColorTest, AShortColorOutOfRangeGivesBothMessages) {
    EXPECT_EQ(Color("c -color 300"), (Lines{"Argument -color should be followed by 4 integer(s)",
                                            "Invalid value(s) in -color argument"}));
}

TEST_F(ColorTest, NamedColorsComeFromTheTable) {
    EXPECT_EQ(Color("c -scolor navy"), Lines{});
    EXPECT_EQ(step.color, (Channels{0.0f, 0.0f, 128.0f / 255.0f}));
    EXPECT_EQ(Color("c -scolor orange"), Lines{});
    EXPECT_EQ(step.color, (Channels{1.0f, 165.0f / 255.0f, 0.0f}));
}

TEST_F(ColorTest, UnknownNamesAreReportedWithTheCallersText) {
    for (const char* const line : {"c -scolor Navy", "c -scolor nav", "c -scolor nosuchcolor"}) {
        EXPECT_EQ(Color(line), Lines{"no such colour"});
        EXPECT_EQ(step.color, (Channels{0.0f, 0.0f, 0.0f}));
    }
    EXPECT_EQ(Color("c -scolor"),
              (Lines{"No string found reading -scolor argument", "no such colour"}));
    EXPECT_EQ(Color("c -scolor -x"),
              (Lines{"Invalid character '-' in argument", "no such colour"}));
}

TEST_F(ColorTest, AnEmptyTableKnowsNoName) {
    colors.clear();
    EXPECT_EQ(Color("c -scolor navy"), Lines{"no such colour"});
    EXPECT_EQ(Color("c -scolor"),
              (Lines{"No string found reading -scolor argument", "no such colour"}));
}

TEST_F(ColorTest, NumbersGoBeforeANameWhichIsNotLookedUp) {
    EXPECT_EQ(Color("c -scolor nosuchcolor -color 0 51 0 100"), Lines{});
    EXPECT_EQ(step.color, (Channels{0.0f, 51.0f * (100.0f / 25500.0f), 0.0f}));
}

TEST_F(ColorTest, AColorIsNeeded) {
    for (const char* const line : {"c color scolor", "c -colo 1 2 3 4", "c -scolo navy"}) {
        EXPECT_EQ(Color(line), Lines{"Missing -color or -scolor argument"}) << line;
    }
}

/// Traps of looking for arguments by their text alone, on whole lines.
using LooseGrammarTest = ProcessFileTest;

TEST_F(LooseGrammarTest, AValueWithAnArgumentsTextIsTakenForIt) {
    EXPECT_EQ(ReadSteps("coating -name a-type -type oxide -thickness 1 -color 1 2 3 4\n"),
              Lines{"Error in line 4: Invalid character '-' in argument"});
    EXPECT_EQ(Step(1).material, "a-type");
    EXPECT_EQ(Step(1).materialType, "-type");
}

TEST_F(LooseGrammarTest, OfTwoArgumentsOfOneNameTheFirstCounts) {
    EXPECT_EQ(ReadSteps("coating -name a -name b -type t -thickness 1 -thickness x -color 1 2 3 4 "
                        "-color 9\n"),
              Lines{});
    EXPECT_EQ(Step(1).material, "a");
    EXPECT_EQ(Step(1).thickness, 0.001f);
}

TEST_F(LooseGrammarTest, ATabBehindAnArgumentFailsTheCheckButNotTheReader) {
    EXPECT_EQ(ReadSteps("coating -name\ta -type t -thickness\t5 -color 1 2 3 4\n"),
              (Lines{"Error in line 4: Invalid argument -name\ta",
                     "Error in line 4: Invalid argument -thickness\t5"}));
    EXPECT_EQ(Step(1).material, "a");
    EXPECT_EQ(Step(1).thickness, 0.005f);
}

TEST_F(LooseGrammarTest, ArgumentsStandInAnyOrder) {
    EXPECT_EQ(ReadSteps("coating -color 255 0 0 100 -thickness 5 -type t -name a\n"), Lines{});
    EXPECT_EQ(Step(1).material, "a");
    EXPECT_EQ(Step(1).materialType, "t");
}

TEST_F(LooseGrammarTest, RemarksBehindTheArgumentsAreIgnoredButForTargets) {
    EXPECT_EQ(
        ReadSteps("coating -name a -type t -thickness 5 -color 1 2 3 4 the first film (5 nm)\n"
                  "etch -name e -depth 5 -iso 0 -targets t through a film\n"),
        (Lines{"Error in line 5: Target etch type through is undefined",
               "Error in line 5: Target etch type a is undefined",
               "Error in line 5: Target etch type film is undefined"}));
    EXPECT_EQ(Step(2).targets, Lines{"a"});
}

}  // namespace
}  // namespace zelmo
