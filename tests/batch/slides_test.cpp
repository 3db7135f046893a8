#include <algorithm>
#include <set>

#include "tests/batch/batch_fixture.h"

namespace zelmo {
namespace {

std::uint32_t BigEndian(const std::string& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<std::uint8_t>(bytes.at(offset + i));
    }
    return value;
}

struct PngHead {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int colorType = 0;

    auto operator<=>(const PngHead&) const = default;
};

constexpr int rgb = 2;
constexpr int rgba = 6;

class SlidesTest : public BatchTest {
protected:
    /// The heads of the pictures of a run with these options.
    std::vector<PngHead> Heads(const std::vector<std::string>& options) {
        const std::string folder = "out" + std::to_string(++runs_);
        std::vector<std::string> arguments{"square.gds", "flow.txt", "-o", folder};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Ended ended = Run(arguments);
        EXPECT_EQ(ended.status, 0) << ended.errors;
        std::vector<PngHead> heads;
        for (const std::string& name : FilesIn(folder)) {
            const std::string bytes = FileText(folder + "/" + name);
            heads.push_back({BigEndian(bytes, 16), BigEndian(bytes, 20), bytes.at(25)});
        }
        return heads;
    }

    std::string Bytes(const std::string& folder, const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{"square.gds", "flow.txt", "-o",
                                           folder,       "--steps",  "last"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Ended ended = Run(arguments);
        EXPECT_EQ(ended.status, 0) << ended.errors;
        return FileText(folder + "/" + FilesIn(folder).at(0));
    }

    void WriteHighProcess() const {
        WriteProcess(
            "deposition -name A -type a -thickness 300 -sc 1.0 -color 200 60 60 100\n"
            "deposition -name B -type b -thickness 3000 -sc 1.0 -color 60 60 200 100\n"
            "etch -name C -targets b -depth 9000 -iso 0.0\n");
    }

    int runs_ = 0;
};

TEST_F(SlidesTest, PicturesAreAsWideAsTheyAreAskedFor) {
    for (const PngHead& head : Heads({"--width", "640", "--smooth"})) {
        EXPECT_EQ(head.width, 640u);
        EXPECT_EQ(head.colorType, rgb);
    }
}

TEST_F(SlidesTest, TheUsualWidthChangesNothing) {
    EXPECT_TRUE(Bytes("usual", {}) == Bytes("said", {"--width", "1920"}));
    EXPECT_FALSE(Bytes("usual2", {}) == Bytes("smooth", {"--smooth"}));
}

TEST_F(SlidesTest, TheSameOptionsGiveTheSameBytes) {
    const std::vector<std::string> options{"--width", "500",    "--smooth", "--title", "--scale",
                                           "--view",  "120,30", "--crop",   "--thin",  "20"};
    EXPECT_TRUE(Bytes("one", options) == Bytes("two", options));
}

TEST_F(SlidesTest, WithoutABackgroundTheyHaveAlpha) {
    for (const PngHead& head : Heads({"--width", "640", "--transparent"})) {
        EXPECT_EQ(head.colorType, rgba);
    }
}

TEST_F(SlidesTest, OfOneSizeTheyAreWhateverTheStepsAdd) {
    WriteHighProcess();
    const auto sizes = [](const std::vector<PngHead>& heads) {
        return std::set<PngHead>(heads.begin(), heads.end());
    };
    const std::vector<PngHead> usual = Heads({"--width", "640"});
    ASSERT_EQ(usual.size(), 4u);
    EXPECT_GT(sizes(usual).size(), 1u);
    EXPECT_EQ(sizes(Heads({"--width", "640", "--same-size"})).size(), 1u);
    EXPECT_EQ(sizes(Heads({"--width", "640", "--same-size", "--crop"})).size(), 1u);
    // The size is that of the highest step, and it does not depend on the steps that are chosen.
    EXPECT_EQ(Heads({"--width", "640", "--same-size", "--steps", "first"}).at(0),
              Heads({"--width", "640", "--same-size"}).at(0));
    EXPECT_EQ(Heads({"--width", "640", "--same-size"}).at(0).height,
              std::max_element(usual.begin(), usual.end())->height);
}

TEST_F(SlidesTest, OfOneSizeAreTheSamePicturesAsWithRoomForTheHighest) {
    // The highest step is drawn as it is by itself.
    WriteHighProcess();
    const std::vector<std::string> options{"square.gds", "flow.txt", "--width", "640", "--title"};
    const auto run = [&](const std::string& folder, bool sameSize) {
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.end(), {"-o", folder});
        if (sameSize) {
            arguments.emplace_back("--same-size");
        }
        EXPECT_EQ(Run(arguments).status, 0);
        return FileText(folder + "/" + FilesIn(folder).at(2));
    };
    EXPECT_TRUE(run("alone", false) == run("same", true));
}

TEST_F(SlidesTest, NumbersAreNotThoseOfThickenedFilms) {
    const Ended plain = Run({"square.gds", "flow.txt", "--no-pictures", "--probe", "0,0"});
    const Ended thick = Run({"square.gds", "flow.txt", "-o", "t", "--width", "400", "--thin",
                             "100000", "--same-size", "--probe", "0,0"});
    EXPECT_EQ(MaskTimes(plain.output), MaskTimes(thick.output));
}

TEST_F(SlidesTest, WrongArgumentsRunNothing) {
    ExpectRefusal(Run({"square.gds", "flow.txt", "-o", "no", "--view", "1"}), 1,
                  {"--view: \"1\" is not AZIMUTH,ELEVATION[,parallel]"});
    EXPECT_FALSE(std::filesystem::exists(InFolder("no")));
}

}  // namespace
}  // namespace zelmo
