#include <random>

#include "process_file_fixture.h"

namespace zelmo {
namespace {

/// Reads faulty files of many kinds. Whatever a file holds, reading ends, and a file
/// without an error holds settings that can be run.
class GarbageTest : public ProcessFileTest {
protected:
    void ReadAndCheck(const std::string& text) {
        const Lines lines = Read(text);
        ASSERT_TRUE(file.opened);
        ASSERT_EQ(lines.size(), file.errors.size());
        for (const std::string& line : lines) {
            ASSERT_TRUE(line.starts_with("Error in line ") || line.starts_with("Error: ")) << line;
        }
        ASSERT_GE(file.steps.size(), 1u);
        ASSERT_EQ(file.steps[0].kind, StepKind::Substrate);
        if (Accepted()) {
            ASSERT_TRUE(file.settings.gridColumns >= 200 && file.settings.gridColumns <= 2000);
            ASSERT_GT(file.settings.windowHeight, 0.0f);
            ASSERT_LE(file.settings.windowHeight, file.settings.windowWidth);
        }
    }

    std::size_t Random(std::size_t below) { return below == 0 ? 0 : random_() % below; }
    char RandomByte() { return static_cast<char>(Random(256)); }

    /// Changes one thing in the text.
    void Mutate(std::string& text) {
        static const std::vector<std::string> pieces = {" ",
                                                        "\t",
                                                        "\n",
                                                        "\r",
                                                        "\r\n",
                                                        "-",
                                                        "-name",
                                                        "-targets",
                                                        "-sc",
                                                        "-scolor",
                                                        "-1",
                                                        "1e39",
                                                        "99999999",
                                                        "settings",
                                                        "stop\n",
                                                        "photo ",
                                                        "strip ",
                                                        "etch ",
                                                        "-dx 0",
                                                        "-color",
                                                        ".",
                                                        "inf",
                                                        "release",
                                                        "polish ",
                                                        "implant ",
                                                        "-stop",
                                                        "-level",
                                                        "-above",
                                                        "\v",
                                                        std::string(1, '\0'),
                                                        std::string(1100, 'z'),
                                                        std::string(300, '9')};
        const std::size_t at = Random(text.size() + 1);
        switch (Random(6)) {
            case 0:
                text.insert(at, 1, RandomByte());
                break;
            case 1:
                text.erase(at, Random(20));
                break;
            case 2:
                text.insert(at, pieces[Random(pieces.size())]);
                break;
            case 3:
                text.insert(at, text.substr(Random(text.size()), Random(200)));
                break;
            case 4:
                text.resize(at);
                break;
            default:
                if (at < text.size()) {
                    text[at] = RandomByte();
                }
        }
    }

private:
    std::mt19937 random_{987654321};
};

const std::string goodFile =
    "# stack\r\n"
    "settings -version 4 -N 300 -angle 30 -legend -heights\n"
    "location -x 1.5 -y -2e1 -dx 40 -dy 20\n"
    "gds -cell TOP\n"
    "deposition -name Ox -type oxide -thickness 500 -sc .5 -scolor navy -alpha 0.5\n"
    "coating -name Sog -type glass -thickness 300 -dop 0.5 -color 200 200 255 100\n"
    "photo -name Cut -mask_id 12 -type 0 -res 0.5 -thickness 1000 -taper 80\n"
    "etch -name Cut -targets oxide glass -depth 500 -iso 0.1\n"
    "strip -name Cut\n"
    "dump\n"
    "polish -name Flat -stop glass -over 20\n"
    "implant -name Well -type well -targets oxide -depth 200 -scolor navy\n"
    "release -name Free -targets oxide\n"
    "stop\n";

TEST_F(GarbageTest, TheUnchangedFileIsGood) {
    EXPECT_EQ(Read(goodFile), Lines{});
    EXPECT_TRUE(Accepted());
}

TEST_F(GarbageTest, ChangedFilesEndWithAResult) {
    int refused = 0;
    for (int round = 0; round < 2500 && !HasFatalFailure(); ++round) {
        std::string text = goodFile;
        for (std::size_t change = 0, count = 1 + Random(8); change < count; ++change) {
            Mutate(text);
        }
        ReadAndCheck(text);
        refused += Accepted() ? 0 : 1;
    }
    EXPECT_GT(refused, 500);
    EXPECT_LT(refused, 2500);
}

TEST_F(GarbageTest, RandomBytesEndWithAResult) {
    for (int round = 0; round < 500 && !HasFatalFailure(); ++round) {
        std::string text(Random(4000), ' ');
        for (char& byte : text) {
            byte = RandomByte();
        }
        ReadAndCheck(text);
    }
}

TEST_F(GarbageTest, EveryTruncationEndsWithAResult) {
    for (std::size_t length = 0; length < goodFile.size() && !HasFatalFailure(); ++length) {
        ReadAndCheck(goodFile.substr(0, length));
    }
}

}  // namespace
}  // namespace zelmo
