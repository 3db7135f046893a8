#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/batch/batch_fixture.h"

// Sheets and films of the pictures of a run.

namespace zelmo {
namespace {

class OverviewsTest : public BatchTest {
protected:
    OverviewsTest() {
        WriteProcess(
            "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
            "deposition -name Metal -type metal -thickness 3000 -color 20 100 250 100\n");
    }

    static bool IsPng(const std::string& bytes) {
        return bytes.starts_with("\x89PNG") && bytes.find("IEND") != std::string::npos;
    }

    /// Of the numbers in a PNG file's head.
    static std::uint32_t BigEndianAt(const std::string& bytes, std::size_t at) {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            number = number << 8 | static_cast<std::uint8_t>(bytes.at(at + i));
        }
        return number;
    }

    static std::size_t FramesOf(const std::string& film) {
        std::size_t frames = 0;
        for (std::size_t at = film.find("ANMF"); at != std::string::npos;
             at = film.find("ANMF", at + 1)) {
            ++frames;
        }
        return frames;
    }
};

TEST_F(OverviewsTest, TheSheetHasAllPicturesSideBySide) {
    const Ended ended = Run(
        {"-o", "out", "--sheet", "sheet.png", "--sheet-columns", "2", "square.gds", "flow.txt"});
    ASSERT_EQ(ended.status, 0) << ended.errors;
    const std::string sheet = FileText("sheet.png");
    ASSERT_TRUE(IsPng(sheet));
    const std::string picture = FileText("out/" + FilesIn("out").at(0));
    ASSERT_TRUE(IsPng(picture));
    EXPECT_EQ(BigEndianAt(sheet, 16), 2u * 480 + 3 * 16);
    const double aspect = static_cast<double>(BigEndianAt(picture, 20)) / BigEndianAt(picture, 16);
    EXPECT_NEAR(BigEndianAt(sheet, 20), 2 * (480 * aspect + 30) + 3 * 16, 3.0);
}

TEST_F(OverviewsTest, TheFilmHasAPictureAStep) {
    const Ended ended = Run({"-o", "out", "--width", "400", "--film", "film.webp", "--film-seconds",
                             "0.25", "--film-loops", "2", "square.gds", "flow.txt"});
    ASSERT_EQ(ended.status, 0) << ended.errors;
    const std::string film = FileText("film.webp");
    EXPECT_TRUE(film.starts_with("RIFF"));
    EXPECT_EQ(FramesOf(film), 3u);
}

TEST_F(OverviewsTest, AFilmThatWouldBeTooWideIsRefusedAtOnce) {
    const Ended ended =
        Run({"-o", "out", "--width", "16384", "--film", "film.webp", "square.gds", "flow.txt"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find("--film: 16384 pixels (--width) are too wide for a film, which has "
                                "at most 16383"),
              std::string::npos)
        << ended.errors;
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
}

TEST_F(OverviewsTest, OnlyChosenStepsAreInThem) {
    const Ended ended = Run({"-o", "out", "--width", "400", "--steps", "2-last", "--film",
                             "film.webp", "square.gds", "flow.txt"});
    ASSERT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(FramesOf(FileText("film.webp")), 2u);
}

TEST_F(OverviewsTest, ThePicturesAreOfOneSize) {
    ASSERT_EQ(Run({"-o", "out", "--sheet", "sheet.png", "square.gds", "flow.txt"}).status, 0);
    std::vector<std::uint32_t> heights;
    for (const std::string& name : FilesIn("out")) {
        heights.push_back(BigEndianAt(FileText("out/" + name), 20));
    }
    ASSERT_EQ(heights.size(), 3u);
    EXPECT_EQ(heights[0], heights[1]);
    EXPECT_EQ(heights[0], heights[2]);
}

TEST_F(OverviewsTest, FilesThatAreThereAreKeptUnlessTheyMayBeReplaced) {
    folder_.Write("film.webp", "mine");
    const std::vector<std::string> arguments{"-o",     "out",       "--width",    "400",
                                             "--film", "film.webp", "square.gds", "flow.txt"};
    ExpectRefusal(Run(arguments), 5, {"film film.webp exists already and is kept", "--overwrite"});
    EXPECT_EQ(FileText("film.webp"), "mine");
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    std::vector<std::string> replacing = arguments;
    replacing.emplace_back("--overwrite");
    ASSERT_EQ(Run(replacing).status, 0);
    EXPECT_EQ(FramesOf(FileText("film.webp")), 3u);
}

TEST_F(OverviewsTest, ArgumentsThatFitNothingAreWrongUsage) {
    const auto refused = [&](std::vector<std::string> arguments, const std::string& piece) {
        arguments.insert(arguments.end(), {"square.gds", "flow.txt"});
        ExpectRefusal(Run(arguments), 1, {piece});
    };
    refused({"--film", "a.webp", "--no-pictures"}, "--film and --no-pictures");
    refused({"--sheet", "a.png", "--no-pictures"}, "--sheet and --no-pictures");
    refused({"--film-seconds", "1"}, "--film-seconds needs a --film");
    refused({"--sheet-columns", "3"}, "--sheet-columns needs a --sheet");
    refused({"--film", "a.webp", "--film-seconds", "0"}, "--film-seconds: \"0\"");
    refused({"--film", "a.webp", "--film-seconds", "61"}, "--film-seconds: \"61\"");
    refused({"--film", "a.webp", "--film-loops", "-1"}, "--film-loops: \"-1\"");
    refused({"--sheet", "a.png", "--sheet-columns", "0"}, "--sheet-columns: \"0\"");
    refused({"--sheet", ""}, "--sheet: the file has no name");
}

}  // namespace
}  // namespace zelmo
