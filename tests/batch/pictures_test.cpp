#include "tests/batch/batch_fixture.h"
#include "tests/batch/decoded_png.h"

namespace zelmo {
namespace {

std::uint32_t U32At(const std::string& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes.at(offset + i)))
                 << (8 * i);
    }
    return value;
}

Pixels DecodeBmp(const std::string& bytes) {
    Pixels pixels;
    pixels.width = U32At(bytes, 18);
    pixels.height = U32At(bytes, 22);
    for (std::uint32_t row = pixels.height; row-- > 0;) {
        for (std::uint32_t column = 0; column < pixels.width; ++column) {
            const std::size_t offset = 54 + (std::size_t{row} * pixels.width + column) * 4;
            for (const std::size_t channel : {2, 1, 0}) {
                pixels.rgb.push_back(static_cast<std::uint8_t>(bytes.at(offset + channel)));
            }
        }
    }
    return pixels;
}

class PicturesTest : public BatchTest {
protected:
    void Save(const std::string& folder, const std::string& format) const {
        const Ended ended = Run({"square.gds", "flow.txt", "-o", folder, "--format", format});
        ASSERT_EQ(ended.status, 0) << ended.errors;
    }
};

TEST_F(PicturesTest, ABmpHasTheSizeAndTheHeaderOfTheDesktops) {
    Save("out", "bmp");
    EXPECT_EQ(FilesIn("out"),
              (std::vector<std::string>{"001 001 Substrate.bmp", "002 002 Oxide deposition.bmp"}));
    const std::string bytes = FileText("out/002 002 Oxide deposition.bmp");
    ASSERT_GT(bytes.size(), 54u);
    const std::uint32_t height = U32At(bytes, 22);
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    EXPECT_EQ(U32At(bytes, 2), bytes.size());
    EXPECT_EQ(U32At(bytes, 6), 0u);
    EXPECT_EQ(U32At(bytes, 10), 54u);
    EXPECT_EQ(U32At(bytes, 14), 40u);
    EXPECT_EQ(U32At(bytes, 18), 1920u);
    EXPECT_EQ(bytes.size(), std::size_t{1920} * height * 4 + 54);
    EXPECT_EQ(U32At(bytes, 26), 1u + (32u << 16));
    EXPECT_EQ(bytes.substr(30, 24), std::string(24, '\0'));
}

TEST_F(PicturesTest, APngShowsWhatTheBmpShows) {
    Save("bmp", "bmp");
    Save("png", "png");
    for (const char* name : {"001 001 Substrate", "002 002 Oxide deposition"}) {
        const Pixels bmp = DecodeBmp(FileText(std::string("bmp/") + name + ".bmp"));
        const Pixels png = DecodePng(FileText(std::string("png/") + name + ".png"));
        EXPECT_EQ(png.width, bmp.width);
        EXPECT_EQ(png.height, bmp.height);
        EXPECT_TRUE(png.rgb == bmp.rgb) << name;
    }
}

TEST_F(PicturesTest, PicturesShowSomethingOnAWhiteGround) {
    Save("out", "png");
    const Pixels before = DecodePng(FileText("out/001 001 Substrate.png"));
    const Pixels after = DecodePng(FileText("out/002 002 Oxide deposition.png"));
    const auto white = [](const Pixels& pixels, std::size_t pixel) {
        return pixels.rgb[pixel * 3] == 255 && pixels.rgb[pixel * 3 + 1] == 255 &&
               pixels.rgb[pixel * 3 + 2] == 255;
    };
    EXPECT_TRUE(white(after, 0));
    std::size_t colored = 0;
    const std::size_t count = after.rgb.size() / 3;
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        colored += white(after, pixel) ? 0u : 1u;
    }
    EXPECT_GT(colored, count / 10);
    EXPECT_FALSE(before.rgb == after.rgb);
}

TEST_F(PicturesTest, TheSameRunTwiceGivesTheSameBytes) {
    for (const char* format : {"bmp", "png"}) {
        Save(std::string("one-") + format, format);
        Save(std::string("two-") + format, format);
        const std::string name = std::string("/002 002 Oxide deposition.") + format;
        EXPECT_TRUE(FileText("one-" + (format + name)) == FileText("two-" + (format + name)));
    }
}

TEST_F(PicturesTest, ALegendMakesRoomForItself) {
    // Seen along the surface, the stack alone gives a picture of a few rows.
    std::string steps;
    for (int i = 0; i < 4; ++i) {
        steps += "deposition -name M" + std::to_string(i) +
                 " -type oxide -thickness 10 -color 200 100 50 100\n";
    }
    folder_.Write("flow.txt",
                  "settings -version 4 -N 200 -angle 0 -legend\n"
                  "location -x 0 -y 0 -dx 10 -dy 0.2\ngds -cell TOP\n" +
                      steps);
    Save("out", "bmp");
    EXPECT_GE(U32At(FileText("out/005 005 M3 deposition.bmp"), 22), 5u * 36);
}

}  // namespace
}  // namespace zelmo
