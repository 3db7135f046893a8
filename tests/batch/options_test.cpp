#include "batch/options.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "base/version.h"

namespace zelmo {
namespace {

BatchOptions Parse(const std::vector<std::string>& arguments) {
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_TRUE(line.options) << line.end.text;
    return line.options.value_or(BatchOptions{});
}

void ExpectUsageError(const std::vector<std::string>& arguments, const std::string& piece) {
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_FALSE(line.options);
    EXPECT_EQ(line.end.status, ExitStatus::Usage);
    EXPECT_NE(line.end.text.find(piece), std::string::npos) << line.end.text;
    EXPECT_EQ(line.end.text.find('\n'), std::string::npos) << line.end.text;
}

TEST(ParseCommandLine, TwoFilesAreEnough) {
    const BatchOptions options = Parse({"a.gds", "b.txt"});
    EXPECT_EQ(options.layout, "a.gds");
    EXPECT_EQ(options.process, "b.txt");
    EXPECT_FALSE(options.output);
    EXPECT_EQ(options.format.name, "png");
    EXPECT_FALSE(options.repair);
    EXPECT_FALSE(options.checkOnly);
    EXPECT_TRUE(options.pictures);
    EXPECT_FALSE(options.assets);
    EXPECT_FALSE(options.quiet);
}

TEST(ParseCommandLine, OptionsMayStandAnywhere) {
    const BatchOptions options =
        Parse({"--check", "--repair", "a.gds", "-o", "out", "--no-pictures", "b.txt", "--quiet",
               "--format", "bmp", "--assets=data"});
    EXPECT_EQ(options.layout, "a.gds");
    EXPECT_EQ(options.process, "b.txt");
    EXPECT_EQ(options.output, std::filesystem::path("out"));
    EXPECT_EQ(options.format.name, "bmp");
    EXPECT_TRUE(options.repair);
    EXPECT_TRUE(options.checkOnly);
    EXPECT_FALSE(options.pictures);
    EXPECT_EQ(options.assets, std::filesystem::path("data"));
    EXPECT_TRUE(options.quiet);
}

TEST(ParseCommandLine, FilesMayLookLikeOptions) {
    EXPECT_EQ(Parse({"--", "-a.gds", "--quiet"}).process, "--quiet");
    EXPECT_EQ(Parse({"/a.gds", "/b"}).layout, "/a.gds");
}

TEST(ParseCommandLine, ArgumentsAreUtf8) {
    const BatchOptions options = Parse({"\xC3\xA9.gds", "b.txt"});
    EXPECT_EQ(PathText(options.layout), L"\u00E9.gds");
}

TEST(ParseCommandLine, WrongUsageNamesWhatIsWrong) {
    ExpectUsageError({}, "LAYOUT.gds");
    ExpectUsageError({"a.gds"}, "PROCESS.txt");
    ExpectUsageError({"a.gds", "b.txt", "c"}, "c");
    ExpectUsageError({"a.gds", "b.txt", "--frob"}, "--frob");
    ExpectUsageError({"a.gds", "b.txt", "--format", "tiff"}, "\"tiff\" is neither bmp nor png");
    ExpectUsageError({"a.gds", "b.txt", "--format", "PNG"}, "PNG");
    ExpectUsageError({"a.gds", "b.txt", "-o"}, "--output");
    ExpectUsageError({"a.gds", "b.txt", "--output="}, "--output");
    ExpectUsageError({"a.gds", "b.txt", "--assets", ""}, "--assets");
    ExpectUsageError({"a.gds", "b.txt", "-o", "c", "--output", "d"}, "--output");
    ExpectUsageError({"a.gds", "b.txt", "--quiet=maybe"}, "maybe");
}

TEST(ParseCommandLine, CellAndWindowTakeThePlaceOfTheProcessFiles) {
    const BatchOptions usual = Parse({"a.gds", "b.txt"});
    EXPECT_FALSE(usual.view.cell);
    EXPECT_EQ(usual.view.window, WindowChoice{});
    const BatchOptions options =
        Parse({"a.gds", "--cell", "NAND2", "--window", "-1.5,2,3,4", "b.txt"});
    EXPECT_EQ(options.view.cell, "NAND2");
    EXPECT_EQ(options.view.window, WindowChoice(GivenWindow{-1.5f, 2, 3, 4}));
    EXPECT_EQ(Parse({"a.gds", "b.txt", "--window=fit:0.5"}).view.window,
              WindowChoice(FittedWindow{0.5f}));
    ExpectUsageError({"a.gds", "b.txt", "--cell", ""}, "--cell: the cell has no name");
    ExpectUsageError({"a.gds", "b.txt", "--window", "1,2"}, "--window: \"1,2\" is neither");
    ExpectUsageError({"a.gds", "b.txt", "--window"}, "--window");
}

TEST(ParseCommandLine, ColumnsAndAngleTakeThePlaceOfTheProcessFiles) {
    const BatchOptions usual = Parse({"a.gds", "b.txt"});
    EXPECT_FALSE(usual.view.gridColumns);
    EXPECT_FALSE(usual.view.cameraAngle);
    const BatchOptions options = Parse({"a.gds", "b.txt", "--columns", "200", "--angle=0"});
    EXPECT_EQ(options.view.gridColumns, 200);
    EXPECT_EQ(options.view.cameraAngle, 0.0f);
    EXPECT_EQ(Parse({"a.gds", "b.txt", "--columns", "2000"}).view.gridColumns, 2000);
    EXPECT_EQ(Parse({"a.gds", "b.txt", "--angle", "90"}).view.cameraAngle, 90.0f);
    for (const char* columns : {"199", "2001", "", "400.0", "-400", "+400", "many", "1e3", "400 ",
                                "99999999999999999999"}) {
        ExpectUsageError({"a.gds", "b.txt", "--columns", columns},
                         "is no whole number from 200 to 2000");
    }
    for (const char* angle : {"91", "-1", "30.5", "", "-0", "steep", "30deg"}) {
        ExpectUsageError({"a.gds", "b.txt", "--angle", angle},
                         "is no whole number of degrees from 0 to 90");
    }
    ExpectUsageError({"a.gds", "b.txt", "--columns", "300", "--columns", "400"}, "--columns");
}

TEST(ParseCommandLine, ValuesOfVariablesAreSetOneByOne) {
    EXPECT_EQ(Parse({"a.gds", "b.txt"}).view.variables, VariableValues{});
    const BatchOptions options = Parse(
        {"--set", "A=1", "a.gds", "--set=B_2=x=y", "b.txt", "--set", "C=", "--set", "D=[1,2]"});
    EXPECT_EQ(options.layout, "a.gds");
    EXPECT_EQ(options.process, "b.txt");
    EXPECT_EQ(options.view.variables,
              (VariableValues{{"A", "1"}, {"B_2", "x=y"}, {"C", ""}, {"D", "[1,2]"}}));
    EXPECT_EQ(Parse({"a.gds", "b.txt", "--set", "A=-0.5"}).view.variables,
              (VariableValues{{"A", "-0.5"}}));
}

TEST(ParseCommandLine, ValuesThatNoVariableCanHaveAreRefused) {
    const auto refused = [](const std::string& text, const std::string& piece) {
        ExpectUsageError({"a.gds", "b.txt", "--set", text}, piece);
    };
    refused("A", "--set: \"A\" is no NAME=VALUE");
    refused("", "--set: \"\" is no NAME=VALUE");
    refused("=1", "--set: \"\" is no name of a variable");
    refused("1A=1", "--set: \"1A\" is no name of a variable");
    refused("${A}=1", "--set: \"${A}\" is no name of a variable");
    refused("A=1 2", "--set: the value of A has a blank");
    refused("A=-name", "--set: the value of A has a \"-\" in front of a letter");
    refused("A=" + std::string(1024, '1'), "--set: the value of A is longer than");
    ExpectUsageError({"a.gds", "b.txt", "--set", "A=1", "--set", "A=1"}, "--set: A is set twice");
    ExpectUsageError({"a.gds", "b.txt", "--set"}, "--set");
    EXPECT_NE(ParseCommandLine({"a.gds", "b.txt", "--set", "A=1\n2"})
                  .end.text.find("--set: the value of A has a tab, a line end or another control"),
              std::string::npos);
}

TEST(ParseCommandLine, TheHelpNamesThePictureFormats) {
    EXPECT_NE(
        ParseCommandLine({"--help"})
            .end.text.find("  --format bmp|png            Picture files: png (default) or bmp\n"),
        std::string::npos);
}

TEST(ParseCommandLine, HelpAndVersionNeedNoFiles) {
    for (const char* argument : {"-h", "--help", "--version"}) {
        const CommandLine line = ParseCommandLine({argument});
        EXPECT_FALSE(line.options);
        EXPECT_EQ(line.end.status, ExitStatus::Success);
        EXPECT_TRUE(line.end.text.ends_with("\n"));
    }
    EXPECT_EQ(ParseCommandLine({"--version"}).end.text,
              std::string("zelmo-batch ") + programVersion + "\n");
}

}  // namespace
}  // namespace zelmo
