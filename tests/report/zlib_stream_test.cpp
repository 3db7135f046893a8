#include "report/zlib_stream.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

TEST(ZlibStream, GivesTheBytesAgain) {
    TestRandom random(3);
    for (const std::size_t size : {0, 1, 100, 70000, 1000000}) {
        std::vector<std::uint8_t> bytes(size);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random.Below(4) == 0 ? random.Below(256) : 0);
        }
        const std::vector<std::uint8_t> stream = Deflate(bytes);
        EXPECT_EQ(Inflate(stream, size), bytes);
        EXPECT_THROW(Inflate(stream, size + 1), std::runtime_error);
        if (size > 0) {
            EXPECT_THROW(Inflate(stream, size - 1), std::runtime_error);
            EXPECT_THROW(Inflate(std::span(stream).first(stream.size() / 2), size),
                         std::runtime_error);
        }
    }
    EXPECT_THROW(Inflate({}, 0), std::runtime_error);
}

}  // namespace
}  // namespace zelmo
