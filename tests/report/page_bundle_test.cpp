#include "report/page_bundle.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using namespace std::string_view_literals;

class PageBundleTest : public testing::Test {
protected:
    std::string Read(std::string_view script, std::string_view style) {
        return ReadPageBundle(folder_.Write("page.js", script), folder_.Write("page.css", style),
                              bundle_);
    }

    TempFolder folder_;
    PageBundle bundle_;
};

TEST_F(PageBundleTest, IsWhatTheFilesHold) {
    EXPECT_EQ(Read("let a = 1 < 2;\n", "body { margin: 0 }\n"), "");
    EXPECT_EQ(bundle_.script, "let a = 1 < 2;\n");
    EXPECT_EQ(bundle_.style, "body { margin: 0 }\n");
}

TEST_F(PageBundleTest, MissingFilesAreNamedWithAWayOut) {
    const std::string reason =
        ReadPageBundle(folder_.Path() / "page.js", folder_.Path() / "page.css", bundle_);
    EXPECT_NE(reason.find("page.js"), std::string::npos) << reason;
    EXPECT_NE(reason.find("--assets DIR"), std::string::npos) << reason;
    const std::string style =
        ReadPageBundle(folder_.Write("page.js", "1"), folder_.Path() / "page.css", bundle_);
    EXPECT_NE(style.find("page.css"), std::string::npos) << style;
    EXPECT_NE(Read("", "a"), "");
}

TEST_F(PageBundleTest, WhatWouldEndAnElementOrChangeItsDigestIsRefused) {
    for (const std::string_view piece :
         {"'</script>'"sv, "'</SCRIPT '"sv, "'<!--'"sv, "a\r\nb"sv, "a\0b"sv, "</style>"sv}) {
        EXPECT_NE(Read(piece, "a").find("page.js"), std::string::npos) << piece;
        EXPECT_NE(Read("a", piece).find("page.css"), std::string::npos) << piece;
    }
}

}  // namespace
}  // namespace zelmo
