#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/row_bands.h"
#include "process_run/execute_run.h"
#include "tests/model/grid_model.h"
#include "tests/plain/stack_data_plain.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

/// Makes a fresh folder the current one for the length of a test.
class StackData : public testing::Test {
protected:
    StackData() : before_(fs::current_path()) { fs::current_path(folder_.Path()); }
    ~StackData() override { fs::current_path(before_); }

    /// The lines of the step, but for its time.
    static std::vector<std::string> Dump(ProcessModel& model) {
        ProcessStep step;
        step.kind = StepKind::Dump;
        step.result = "stack data";
        step.description = "dumping of stack data";
        RecordingConsole console;
        ExecuteStepWithReport(model, step, &console);
        console.lines.pop_back();
        return console.lines;
    }

    /// What the file says, with the platform's line ends read as '\n'.
    static std::string Text() {
        std::ifstream file("VertexData.txt");
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    TempFolder folder_;
    fs::path before_;
};

TEST_F(StackData, WritesTheWholeStack) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    AppendFlatLayer(model, 0.0f, 0.5f);
    AppendFlatLayer(model, 0.5f, 0.1f);
    AppendFlatLayer(model, 0.6f, 0.0f);
    model.stack.layers[1].reset();
    model.stack.layers[2]->top[3] = 12.5f;
    for (std::int32_t id = 0; id < 4; ++id) {
        model.stack.coverMap[static_cast<std::size_t>(id)] = {id, 0.6f + static_cast<float>(id)};
    }
    EXPECT_EQ(Dump(model), (std::vector<std::string>{"Executing dumping of stack data ..."}));

    const std::string film = "\tBOT: 0.600000023842\tTOP: 0.600000023842\tTHI: 0.000000000000\n";
    const std::string ground = "\tBOT: 0.000000000000\tTOP: 0.500000000000\tTHI: 0.500000000000\n";
    EXPECT_EQ(Text(),
              "\nCOVER LAYER ID: 0\tHEIGHT: 0.6000000238\n"
              "M: 0\tN: 0\tL: 0" +
                  ground + "M: 0\tN: 0\tL: 2" + film +
                  "\n"
                  "\nCOVER LAYER ID: 1\tHEIGHT: 1.6000000238\n"
                  "M: 0\tN: 1\tL: 0" +
                  ground + "M: 0\tN: 1\tL: 2" + film +
                  "\n"
                  "\n\n"
                  "\nCOVER LAYER ID: 2\tHEIGHT: 2.5999999046\n"
                  "M: 1\tN: 0\tL: 0" +
                  ground + "M: 1\tN: 0\tL: 2" + film +
                  "\n"
                  "\nCOVER LAYER ID: 3\tHEIGHT: 3.5999999046\n"
                  "M: 1\tN: 1\tL: 0" +
                  ground +
                  "M: 1\tN: 1\tL: 2\tBOT: 0.600000023842\tTOP: 12.500000000000\t"
                  "THI: 11.899999618530\n\n"
                  "\n\n");
}

/// A stack with gaps among its slots, and heights of all kinds at its cells.
void FillWithHeights(ProcessModel& model, std::int32_t columns, std::int32_t rows, int layers) {
    TestRandom random(static_cast<std::uint32_t>(columns));
    SetUpGrid(model, columns, rows, 1.0f);
    for (int id = 0; id < layers; ++id) {
        Layer& layer = AppendFlatLayer(model, 0.0f, 0.5f);
        for (std::size_t cell = 0; cell < layer.top.size(); ++cell) {
            layer.top[cell] = 20.0f * random.Unit();
            layer.bottom[cell] = random.Below(4) == 0 ? layer.top[cell] : -random.Unit();
        }
        if (id % 5 == 2) {
            model.stack.layers.back().reset();
        }
    }
    for (CoverCell& cell : model.stack.coverMap) {
        cell = {static_cast<std::int32_t>(random.Below(12)), 1e3f * random.Unit()};
    }
}

std::string BytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(StackData, IsWrittenAsByThePlainWayOnAnyNumberOfThreads) {
    // The last has cells that are larger than a piece as a rule is.
    const std::int32_t sizes[][3] = {{1, 1, 0}, {7, 3, 2}, {211, 150, 9}, {5, 3, 6000}};
    for (const auto& [columns, rows, layers] : sizes) {
        ProcessModel model;
        FillWithHeights(model, columns, rows, layers);
        {
            const FilePointer plain = OpenFile("plain.txt", "w");
            WriteStackDataPlain(model, plain.get());
        }
        for (const std::int32_t threads : {1, 2, 5}) {
            SetRowThreads(threads);
            Dump(model);
            EXPECT_TRUE(BytesOf("VertexData.txt") == BytesOf("plain.txt"))
                << columns << " columns on " << threads << " threads";
        }
        SetRowThreads(0);
    }
}

TEST_F(StackData, ChangesNothingInTheModel) {
    ProcessModel model;
    SetUpGrid(model, 3, 2, 1.0f);
    Layer& layer = AppendFlatLayer(model, 0.0f, 0.5f);
    layer.changed = false;
    model.stack.coverMap[4] = {3, 0.7f};
    const auto cover = BitsOf(model.stack.coverMap);
    const auto top = BitsOf(layer.top);
    Dump(model);
    EXPECT_EQ(BitsOf(model.stack.coverMap), cover);
    EXPECT_EQ(BitsOf(layer.top), top);
    EXPECT_FALSE(layer.changed);
    EXPECT_EQ(model.stack.layers.size(), 1U);
}

TEST_F(StackData, AStepThatAsksForNoneWritesNoFile) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    ProcessStep strip;
    strip.kind = StepKind::Strip;
    RecordingConsole console;
    ExecuteStepWithReport(model, strip, &console);
    EXPECT_TRUE(fs::is_empty(fs::current_path()));
}

TEST_F(StackData, OverwritesAnOlderFile) {
    std::ofstream("VertexData.txt") << std::string(10000, 'x');
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    Dump(model);
    EXPECT_EQ(Text(), "\nCOVER LAYER ID: 0\tHEIGHT: 0.0000000000\n\n\n\n");
}

TEST_F(StackData, LineEndsArePlatformsOwn) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    Dump(model);
    std::ofstream("lines.txt") << "\n\n\n\n\n";
    EXPECT_EQ(
        fs::file_size("VertexData.txt"),
        fs::file_size("lines.txt") + std::string("COVER LAYER ID: 0\tHEIGHT: 0.0000000000").size());
}

TEST_F(StackData, SaysNothingWhereTheFileCannotBeOpened) {
    fs::create_directory("VertexData.txt");
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    EXPECT_EQ(Dump(model), (std::vector<std::string>{"Executing dumping of stack data ..."}));
    EXPECT_TRUE(fs::is_directory("VertexData.txt"));
    fs::remove("VertexData.txt");
}

TEST_F(StackData, WritesStrangeNumbersTheSameOnEveryPlatform) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    ProcessModel model;
    SetUpGrid(model, 8, 1, 1.0f);
    const float heights[] = {infinity, -infinity,        nan,          -nan, -0.0f,
                             1e-45f,   0.0001220703125f, 3.4028235e38f};
    for (std::size_t cell = 0; cell < 8; ++cell) {
        model.stack.coverMap[cell].height = heights[cell];
    }
    Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f);
    layer.top = std::span<const float>(heights);
    Dump(model);
    const std::string text = Text();
    const char* covers[] = {"inf",           "-inf",
                            "nan",           "-nan",
                            "-0.0000000000", "0.0000000000",
                            "0.0001220703",  "340282346638528859811704183484516925440.0000000000"};
    // 2^-13 lies half-way between two texts of twelve decimals: the even one is taken.
    const char* tops[] = {"inf",
                          "-inf",
                          "nan",
                          "-nan",
                          "-0.000000000000",
                          "0.000000000000",
                          "0.000122070312",
                          "340282346638528859811704183484516925440.000000000000"};
    std::size_t from = 0;
    for (int cell = 0; cell < 8; ++cell) {
        const std::string cover = std::string("HEIGHT: ") + covers[cell] + "\n";
        const std::string top = std::string("TOP: ") + tops[cell] + "\t";
        from = text.find(cover, from);
        ASSERT_NE(from, std::string::npos) << cover;
        from = text.find(top, from);
        ASSERT_NE(from, std::string::npos) << top;
    }
}

TEST_F(StackData, NumbersAreRoundedToTheNearestTextAndTiesToTheEvenOne) {
    TestRandom random(12);
    ProcessModel model;
    SetUpGrid(model, 2000, 1, 1.0f);
    Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f);
    for (std::size_t cell = 0; cell < 2000; ++cell) {
        // Heights, multiples of small powers of two that end in a tie, and any bits at all.
        const float values[] = {
            10.0f * random.Unit(), static_cast<float>(random.Below(9999)) / 8192.0f,
            static_cast<float>(random.Below(9999)) / 2048.0f, std::bit_cast<float>(random.Bits())};
        layer.top[cell] = values[random.Below(4)];
        layer.bottom[cell] = values[random.Below(4)];
        model.stack.coverMap[cell].height = values[random.Below(4)];
        if (layer.top[cell] != layer.top[cell] || layer.bottom[cell] != layer.bottom[cell]) {
            layer.top[cell] = layer.bottom[cell] = 1.0f;
        }
    }
    Dump(model);
    // The hash of what the GNU C library prints for them. Others round the ties in other ways.
    std::uint64_t hash = 1469598103934665603ULL;
    for (const char letter : Text()) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 1099511628211ULL;
    }
    EXPECT_EQ(hash, 0xe6d132f496d877f3ULL);
}

}  // namespace
}  // namespace zelmo
