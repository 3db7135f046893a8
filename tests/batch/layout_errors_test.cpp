#include "batch/layout_errors.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace zelmo {
namespace {

TEST(LayoutErrorReason, EveryCodeOfTheReaderHasItsOwnWords) {
    const std::string unknown = LayoutErrorReason(1);
    std::set<std::string> reasons;
    for (std::int32_t code = 2; code <= 30; ++code) {
        if (code != 23 && code != 24) {
            EXPECT_NE(LayoutErrorReason(code), unknown) << code;
            reasons.insert(LayoutErrorReason(code));
        }
    }
    EXPECT_EQ(reasons.size(), 27u);
}

TEST(LayoutErrorReason, CodesThatNobodyUsesHaveNone) {
    for (const std::int32_t code : {-1, 1, 23, 24, 31}) {
        EXPECT_STREQ(LayoutErrorReason(code), "the reader gives no reason");
    }
}

}  // namespace
}  // namespace zelmo
