#include "batch/watch/watched_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

class WatchedFileTest : public testing::Test {
protected:
    TempFolder folder_;
    const fs::path path_ = folder_.Write("a.txt", "first");
    WatchedFile file_{path_};
};

TEST_F(WatchedFileTest, IsTheSameUntilItIsSaved) {
    EXPECT_TRUE(file_.Look());
    EXPECT_FALSE(file_.Changed());
    folder_.Write("a.txt", "longer than before");
    EXPECT_TRUE(file_.Changed());
    EXPECT_TRUE(file_.Look());
    EXPECT_FALSE(file_.Changed());
    EXPECT_FALSE(file_.Look());
}

TEST_F(WatchedFileTest, SeesASaveOfTheSameSizeWithinOneTickOfTheClock) {
    file_.Look();
    const auto time = fs::last_write_time(path_);
    folder_.Write("a.txt", "other");
    fs::last_write_time(path_, time);
    EXPECT_TRUE(file_.Changed());
}

TEST_F(WatchedFileTest, SeesAFileThatTookItsName) {
    fs::last_write_time(path_, fs::file_time_type::clock::now() - std::chrono::hours(1));
    file_.Look();
    folder_.Write("new", "other");
    fs::rename(folder_.Path() / "new", path_);
    EXPECT_TRUE(file_.Changed());
}

TEST_F(WatchedFileTest, SeesThatItIsGoneAndBack) {
    file_.Look();
    fs::remove(path_);
    EXPECT_TRUE(file_.Changed());
    EXPECT_TRUE(file_.Look());
    EXPECT_FALSE(file_.Changed());
    folder_.Write("a.txt", "first");
    EXPECT_TRUE(file_.Changed());
}

TEST_F(WatchedFileTest, IsTheSameWhenItIsOnlyOlder) {
    fs::last_write_time(path_, fs::file_time_type::clock::now() - std::chrono::milliseconds(1900));
    file_.Look();
    for (int look = 0; look < 30; ++look) {
        EXPECT_FALSE(file_.Changed());
    }
}

}  // namespace
}  // namespace zelmo
