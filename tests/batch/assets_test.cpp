#include "batch/assets.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

TEST(AssetFolders, AreTheProgramsOwnThenTheInstalledThenTheCurrentOne) {
    const fs::path bin = fs::path("prefix") / "bin";
    EXPECT_EQ(AssetFolders(std::nullopt, bin),
              (std::vector<fs::path>{bin, fs::path("prefix") / "share" / "zelmo", fs::path()}));
}

TEST(AssetFolders, AGivenFolderStandsAlone) {
    EXPECT_EQ(AssetFolders(fs::path("given"), "bin"), (std::vector<fs::path>{"given"}));
}

TEST(AssetFolders, AProgramThatDoesNotKnowItsFolderLooksInTheCurrentOne) {
    EXPECT_EQ(AssetFolders(std::nullopt, {}), (std::vector<fs::path>{fs::path()}));
}

TEST(FindAsset, TakesTheFirstFolderThatHasTheFile) {
    const TempFolder folder;
    const fs::path first = folder.Path() / "first";
    const fs::path second = folder.Path() / "second";
    fs::create_directory(first);
    fs::create_directory(second);
    folder.Write("second/colors.txt", "");
    EXPECT_EQ(FindAsset({first, second}, "colors.txt"), second / "colors.txt");
    folder.Write("first/colors.txt", "");
    EXPECT_EQ(FindAsset({first, second}, "colors.txt"), first / "colors.txt");
}

TEST(FindAsset, WithoutAFileItNamesTheFirstFolder) {
    const TempFolder folder;
    EXPECT_EQ(FindAsset({folder.Path(), "other"}, "colors.txt"), folder.Path() / "colors.txt");
}

}  // namespace
}  // namespace zelmo
