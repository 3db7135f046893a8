#include "batch/files/picture_list.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

class PictureListTest : public testing::Test {
protected:
    bool Has(const char* name) const { return fs::exists(folder_.Path() / name); }

    TempFolder folder_;
    PictureList list_{true};
};

TEST_F(PictureListTest, TakesAnEmptyFolder) {
    EXPECT_FALSE(list_.IsOpen());
    EXPECT_EQ(list_.Open(folder_.Path()), "");
    EXPECT_TRUE(list_.IsOpen());
}

TEST_F(PictureListTest, RefusesAFolderOfOthers) {
    folder_.Write("thesis.tex", "years of work");
    EXPECT_NE(list_.Open(folder_.Path()).find("holds files of others"), std::string::npos);
    EXPECT_FALSE(list_.IsOpen());
    EXPECT_NE(list_.Open(folder_.Path() / "absent"), "");
}

TEST_F(PictureListTest, MayShareAFolderWithOthers) {
    folder_.Write("thesis.tex", "years of work");
    PictureList shared(false);
    EXPECT_EQ(shared.Open(folder_.Path()), "");
    EXPECT_EQ(shared.Add("picture", {L"a.png"}), "");
    EXPECT_EQ(shared.KeepOnly("picture", {}), "");
    EXPECT_TRUE(Has("thesis.tex"));
}

TEST_F(PictureListTest, RemovesItsOwnThatAreNotKeptAndNothingElse) {
    ASSERT_EQ(list_.Open(folder_.Path()), "");
    ASSERT_EQ(list_.Add("picture", {L"001 a.png", L"002 b.png", L"003 c.png"}), "");
    for (const char* name : {"001 a.png", "002 b.png", "009 of others.png"}) {
        folder_.Write(name, "picture");
    }
    EXPECT_EQ(list_.KeepOnly("picture", {L"001 a.png"}), "");
    EXPECT_TRUE(Has("001 a.png"));
    EXPECT_FALSE(Has("002 b.png"));
    EXPECT_TRUE(Has("009 of others.png"));
}

TEST_F(PictureListTest, KnowsItsOwnOfAnEarlierRun) {
    {
        PictureList earlier(true);
        ASSERT_EQ(earlier.Open(folder_.Path()), "");
        ASSERT_EQ(earlier.Add("picture", {L"001 a.png", L"002 \u00fc.png"}), "");
    }
    folder_.Write("001 a.png", "picture");
    ASSERT_EQ(list_.Open(folder_.Path()), "");
    EXPECT_EQ(list_.KeepOnly("picture", {L"001 b.png"}), "");
    EXPECT_FALSE(Has("001 a.png"));
}

TEST_F(PictureListTest, LeavesFilesOfOtherKindsToOthers) {
    ASSERT_EQ(list_.Open(folder_.Path()), "");
    ASSERT_EQ(list_.Add("picture", {L"a.png"}), "");
    ASSERT_EQ(list_.Add("cut", {L"a.svg", L"b.svg"}), "");
    for (const char* name : {"a.png", "a.svg", "b.svg"}) {
        folder_.Write(name, "file");
    }
    EXPECT_EQ(list_.KeepOnly("cut", {L"a.svg"}), "");
    EXPECT_TRUE(Has("a.png"));
    EXPECT_TRUE(Has("a.svg"));
    EXPECT_FALSE(Has("b.svg"));
}

TEST_F(PictureListTest, FollowsNoNameOutOfItsFolder) {
    folder_.Write("kept.txt", "of others");
    fs::create_directory(folder_.Path() / "pictures");
    folder_.Write("pictures/zelmo-pictures.txt", "../kept.txt\n..\n.\n\n/etc/passwd\n");
    ASSERT_EQ(list_.Open(folder_.Path() / "pictures"), "");
    EXPECT_EQ(list_.KeepOnly("picture", {}), "");
    EXPECT_TRUE(Has("kept.txt"));
}

}  // namespace
}  // namespace zelmo
