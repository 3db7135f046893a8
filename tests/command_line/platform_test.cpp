#include "command_line/platform.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

TEST(RenameToNew, NeverReplacesAFile) {
    const TempFolder folder;
    const fs::path from = folder.Write("from", "new");
    const fs::path to = folder.Write("to", "older");
    EXPECT_EQ(RenameToNew(from, to), std::errc::file_exists);
    EXPECT_EQ(fs::file_size(from), 3u);
    EXPECT_EQ(fs::file_size(to), 5u);
    EXPECT_FALSE(RenameToNew(from, folder.Path() / "other"));
    EXPECT_FALSE(fs::exists(from));
    EXPECT_EQ(fs::file_size(folder.Path() / "other"), 3u);
    EXPECT_TRUE(RenameToNew(folder.Path() / "other", folder.Path() / "absent" / "x"));
}

TEST(CreateNewFile, OpensNoFileThatExists) {
    const TempFolder folder;
    EXPECT_EQ(CreateNewFile(folder.Write("old", "kept")), nullptr);
    EXPECT_NE(CreateNewFile(folder.Path() / "new"), nullptr);
}

}  // namespace
}  // namespace zelmo
