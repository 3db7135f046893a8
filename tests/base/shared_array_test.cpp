#include "base/shared_array.h"

#include <gtest/gtest.h>

#include <span>
#include <stdexcept>
#include <vector>

namespace zelmo {
namespace {

TEST(SharedArray, StartsEmpty) {
    const SharedArray<float> array;
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.begin(), array.end());
}

TEST(SharedArray, HoldsWhatItWasGiven) {
    const std::vector<float> values{1.0f, 2.0f, 3.0f};
    const SharedArray<float> array{std::span<const float>(values)};
    EXPECT_EQ(array, values);
    EXPECT_EQ(array[1], 2.0f);
    EXPECT_THROW(static_cast<void>(array.at(3)), std::out_of_range);
}

TEST(SharedArray, CopiesShareUntilOneIsToBeWritten) {
    SharedArray<int> array;
    array.assign(4, 7);
    SharedArray<int> copy = array;
    EXPECT_TRUE(copy.SharesWith(array));
    copy.Unshare();
    EXPECT_FALSE(copy.SharesWith(array));
    copy[2] = 1;
    EXPECT_EQ(array, (std::vector<int>{7, 7, 7, 7}));
    EXPECT_EQ(copy, (std::vector<int>{7, 7, 1, 7}));
}

TEST(SharedArray, WhatIsItsOwnAlreadyStaysWhereItIs) {
    SharedArray<int> array;
    array.assign(4, 7);
    const int* const place = array.data();
    array.Unshare();
    EXPECT_EQ(array.data(), place);
}

}  // namespace
}  // namespace zelmo
