#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "examples/gds_writer.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/polygon_extraction.h"
#include "model/process_model.h"
#include "shell/log_console.h"

// Loading large layouts, whose files lie in the system's memory by then, and extracting windows of
// one of them.

namespace zelmo {
namespace {

class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring) override {}
};

constexpr std::int32_t blockSize = 100000;  // 100 um
constexpr std::int32_t blocksAcross = 40;

/// Polygons, paths and references to small cells, all over a block.
void WriteBlock(GdsWriter& writer, std::mt19937& random, int shapes) {
    const auto coordinate = [&] { return static_cast<std::int32_t>(random() % blockSize); };
    for (int i = 0; i < shapes; ++i) {
        const std::int32_t x = coordinate();
        const std::int32_t y = coordinate();
        writer.Rectangle(1, x, y, x + 400, y + 2000);
        writer.Boundary(2, {{x, y},
                            {x + 900, y},
                            {x + 900, y + 300},
                            {x + 400, y + 300},
                            {x + 400, y + 700},
                            {x, y + 700}});
        writer.Path(3, {{x, y}, {x + 5000, y}, {x + 5000, y + 3000}}, 250, 2);
        writer.Reference("VIA", {y, x}, {i % 2 == 0, 1.0, 90.0 * (i % 4)});
    }
}

GdsWriter LargeLayout() {
    std::mt19937 random(1);
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("VIA");
    writer.Rectangle(4, -100, -100, 100, 100);
    writer.EndCell();
    for (int block = 0; block < blocksAcross * blocksAcross; ++block) {
        writer.BeginCell("BLOCK" + std::to_string(block));
        WriteBlock(writer, random, 150);
        writer.EndCell();
    }
    writer.BeginCell("CHIP");
    for (int block = 0; block < blocksAcross * blocksAcross; ++block) {
        writer.Reference("BLOCK" + std::to_string(block),
                         {block % blocksAcross * blockSize, block / blocksAcross * blockSize});
    }
    writer.Array("VIA", 8000, 8000, {0, 0}, {8000 * 500, 0}, {0, 8000 * 500});
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

/// One cell of rectangles, as tools write them that flatten a layout.
GdsWriter FlatLayout() {
    std::mt19937 random(2);
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("FLAT");
    for (int i = 0; i < 1000000; ++i) {
        const auto x = static_cast<std::int32_t>(random() % 4000000);
        const auto y = static_cast<std::int32_t>(random() % 4000000);
        writer.Rectangle(static_cast<std::uint16_t>(i % 5), x, y, x + 200, y + 300);
    }
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

/// Outlines of 2000 points.
GdsWriter OutlineLayout() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("OUTLINES");
    for (std::int64_t i = 0; i < 4000; ++i) {
        std::vector<GdsPoint> points;
        for (std::int64_t k = 0; k < 2000; ++k) {
            points.push_back({i * 10 + k * 100, k % 2 * 500 + k * i});
        }
        writer.Boundary(1, points);
    }
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

/// A million references to a thousand cells, in no order, half of them turned.
GdsWriter ReferenceLayout() {
    std::mt19937 random(3);
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; cell < 1000; ++cell) {
        writer.BeginCell("CELL_" + std::to_string(cell));
        writer.Rectangle(1, 0, 0, 100, 200 + cell);
        writer.EndCell();
    }
    writer.BeginCell("TOP");
    for (int i = 0; i < 1000000; ++i) {
        const auto x = static_cast<std::int32_t>(random() % 4000000);
        const auto y = static_cast<std::int32_t>(random() % 4000000);
        writer.Reference("CELL_" + std::to_string(random() % 1000), {x, y},
                         {i % 2 == 0, 1.0, i % 2 == 0 ? 90.0 : 0.0});
    }
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

/// A layout as a file, which is deleted in the end.
class LayoutFile {
public:
    explicit LayoutFile(const GdsWriter& layout)
        : path_(std::filesystem::temp_directory_path() / "zelmo-benchmark.gds") {
        layout.Save(path_);
        size_ = std::filesystem::file_size(path_);
    }
    ~LayoutFile() { std::filesystem::remove(path_); }
    LayoutFile(const LayoutFile&) = delete;
    LayoutFile& operator=(const LayoutFile&) = delete;

    GdsDatabase Load() const {
        GdsDatabase database;
        SilentConsole console;
        if (ReadGdsFile(database, path_, &console) != 0) {
            throw std::runtime_error("the layout was refused");
        }
        return database;
    }
    std::uintmax_t Size() const { return size_; }

private:
    std::filesystem::path path_;
    std::uintmax_t size_ = 0;
};

const GdsDatabase& LoadedLayout() {
    static const GdsDatabase database = LayoutFile(LargeLayout()).Load();
    return database;
}

template <GdsWriter (*makeLayout)()>
void LayoutLoad(benchmark::State& state) {
    const LayoutFile file(makeLayout());
    for (auto _ : state) {
        benchmark::DoNotOptimize(file.Load());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Size()));
}
BENCHMARK(LayoutLoad<LargeLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<FlatLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<OutlineLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<ReferenceLayout>)->Unit(benchmark::kMillisecond);

/// A window of so many micrometres in the middle of the chip, 1000 cells wide.
void PolygonExtraction(benchmark::State& state) {
    const auto side = static_cast<float>(state.range(0));
    ProcessModel model;
    model.cellName = "CHIP";
    model.gridOriginX = 2000.0f - side / 2.0f;
    model.gridOriginY = model.gridOriginX;
    model.gridWidth = side;
    model.gridHeight = side;
    model.gridSpacing = side / 1000.0f;
    SilentConsole console;
    LoadedLayout();
    for (auto _ : state) {
        ExtractPolygons(model, &console, LoadedLayout());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(model.polygons.size()));
    state.counters["polygons"] = static_cast<double>(model.polygons.size());
}

BENCHMARK(PolygonExtraction)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
