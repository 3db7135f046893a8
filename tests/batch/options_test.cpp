#include "batch/options.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "base/version.h"

namespace zelmo {
namespace {

BatchOptions Parse(const std::vector<std::string>& arguments) {
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_TRUE(line.options) << line.text;
    return line.options.value_or(BatchOptions{});
}

void ExpectUsageError(const std::vector<std::string>& arguments, const std::string& piece) {
    const CommandLine line = ParseCommandLine(arguments);
    EXPECT_FALSE(line.options);
    EXPECT_EQ(line.status, ExitStatus::Usage);
    EXPECT_NE(line.text.find(piece), std::string::npos) << line.text;
    EXPECT_EQ(line.text.find('\n'), std::string::npos) << line.text;
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

TEST(ParseCommandLine, TheHelpNamesThePictureFormats) {
    EXPECT_NE(ParseCommandLine({"--help"})
                  .text.find("  --format bmp|png            Picture files: png (default) or bmp\n"),
              std::string::npos);
}

TEST(ParseCommandLine, HelpAndVersionNeedNoFiles) {
    for (const char* argument : {"-h", "--help", "--version"}) {
        const CommandLine line = ParseCommandLine({argument});
        EXPECT_FALSE(line.options);
        EXPECT_EQ(line.status, ExitStatus::Success);
        EXPECT_TRUE(line.text.ends_with("\n"));
    }
    EXPECT_EQ(ParseCommandLine({"--version"}).text,
              std::string("zelmo-batch ") + programVersion + "\n");
}

}  // namespace
}  // namespace zelmo
