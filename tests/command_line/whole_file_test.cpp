#include "command_line/whole_file.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::ptrdiff_t FilesIn(const TempFolder& folder) {
    return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
}

TEST(WriteWholeFile, MakesAFile) {
    const TempFolder folder;
    EXPECT_EQ(WriteWholeFile(folder.Path() / "new.txt", std::string_view("content")), "");
    EXPECT_EQ(ContentOf(folder.Path() / "new.txt"), "content");
    EXPECT_EQ(FilesIn(folder), 1);
}

TEST(WriteWholeFile, TakesThePlaceOfAnOlderFile) {
    const TempFolder folder;
    const auto path = folder.Write("old.txt", "older and longer");
    EXPECT_EQ(WriteWholeFile(path, std::string_view("content")), "");
    EXPECT_EQ(ContentOf(path), "content");
    EXPECT_EQ(FilesIn(folder), 1);
}

TEST(WriteNewFile, MakesAFileAndReplacesNone) {
    const TempFolder folder;
    const auto write = [](std::FILE* file) {
        std::fputs("content", file);
        return std::string();
    };
    EXPECT_EQ(WriteNewFile(folder.Path() / "new.txt", write), "");
    EXPECT_EQ(ContentOf(folder.Path() / "new.txt"), "content");
    const auto path = folder.Write("old.txt", "kept");
    EXPECT_NE(WriteNewFile(path, write).find("old.txt could not be written"), std::string::npos);
    EXPECT_EQ(ContentOf(path), "kept");
    EXPECT_EQ(FilesIn(folder), 2);
}

TEST(WriteWholeFile, LeavesTheOlderFileWhereWritingFails) {
    const TempFolder folder;
    const auto path = folder.Write("old.txt", "kept");
    const std::string line = WriteWholeFile(path, [](std::FILE* file) {
        std::fputs("half of it", file);
        return std::string("the pen broke");
    });
    EXPECT_NE(line.find("old.txt could not be written: the pen broke"), std::string::npos) << line;
    EXPECT_EQ(ContentOf(path), "kept");
    EXPECT_EQ(FilesIn(folder), 1);
}

TEST(WriteWholeFile, TellsOfAFolderInItsPlaceAndOfOneThatIsMissing) {
    const TempFolder folder;
    EXPECT_NE(WriteWholeFile(folder.Path(), std::string_view("x")).find("it is a folder"),
              std::string::npos);
    EXPECT_NE(WriteWholeFile(folder.Path() / "absent" / "x", std::string_view("x")), "");
}

}  // namespace
}  // namespace zelmo
