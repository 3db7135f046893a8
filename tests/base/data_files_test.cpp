#include "base/data_files.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

TEST(DataFiles, LieBesideTheProgramOrInItsInstallation) {
    const fs::path bin = fs::path("prefix") / "bin";
    EXPECT_EQ(InstalledDataFolders(bin),
              (std::vector<fs::path>{bin, fs::path("prefix") / "share" / "zelmo"}));
}

TEST(DataFiles, AProgramThatDoesNotKnowItsFolderHasNone) {
    EXPECT_TRUE(InstalledDataFolders(fs::path()).empty());
}

TEST(DataFiles, TheProgramsFolderHoldsTheProgram) {
    EXPECT_TRUE(fs::is_directory(ProgramFolder()));
}

TEST(DataFiles, TakesTheFirstFolderThatHasTheFile) {
    const TempFolder folder;
    const fs::path first = folder.Path() / "first";
    const fs::path second = folder.Path() / "second";
    fs::create_directory(first);
    fs::create_directory(second);
    folder.Write("second/colors.txt", "");
    EXPECT_EQ(FindDataFile({first, second}, "colors.txt"), second / "colors.txt");
    folder.Write("first/colors.txt", "");
    EXPECT_EQ(FindDataFile({first, second}, "colors.txt"), first / "colors.txt");
}

TEST(DataFiles, WithoutAFileItNamesTheFirstFolder) {
    const TempFolder folder;
    EXPECT_EQ(FindDataFile({folder.Path(), "other"}, "colors.txt"), folder.Path() / "colors.txt");
}

}  // namespace
}  // namespace zelmo
