#include "base/version.h"

#include <gtest/gtest.h>

#include <regex>

namespace zelmo {
namespace {

TEST(Version, IsThreeNumbers) {
    EXPECT_TRUE(std::regex_match(programVersion, std::regex("[0-9]+\\.[0-9]+\\.[0-9]+")))
        << programVersion;
}

}  // namespace
}  // namespace zelmo
