#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/log_console.h"
#include "base/row_bands.h"
#include "benchmarks/large_layouts.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/layout_contents.h"
#include "gds/layout_problems.h"
#include "model/grid/grid.h"
#include "process_run/mask_polygons.h"

// Loading large layouts, whose files lie in the system's memory by then, and extracting windows of
// one of them.

namespace zelmo {
namespace {

class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring) override {}
};

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

    GdsDatabase Load(const LayoutOptions& options = {}) const {
        GdsDatabase database;
        SilentConsole console;
        if (ReadGdsFile(database, path_, &console, options)) {
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
    static const GdsDatabase database = LayoutFile(MixedLayout()).Load();
    return database;
}

/// The most memory that the process has taken since the mark was set, in bytes.
class MemoryMark {
public:
    MemoryMark() {
        malloc_trim(0);                               // no memory that is at hand already
        std::ofstream("/proc/self/clear_refs") << 5;  // sets the highest value back
        before_ = Highest();
    }
    std::int64_t Taken() const { return Highest() - before_; }

private:
    static std::int64_t Highest() {
        std::ifstream status("/proc/self/status");
        std::string word;
        std::int64_t kibibytes = 0;
        while (status >> word && word != "VmHWM:") {
        }
        status >> kibibytes;
        return kibibytes * 1024;
    }

    std::int64_t before_ = 0;
};

template <GdsWriter (*makeLayout)()>
void LayoutLoad(benchmark::State& state) {
    const LayoutFile file(makeLayout());
    const auto size = static_cast<std::int64_t>(file.Size());
    const MemoryMark mark;
    benchmark::DoNotOptimize(file.Load());
    const std::int64_t taken = mark.Taken();
    for (auto _ : state) {
        benchmark::DoNotOptimize(file.Load());
    }
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["memory_per_file"] = static_cast<double>(taken) / static_cast<double>(size);
}
BENCHMARK(LayoutLoad<FlatLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<OutlineLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<MixedLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<ReferenceLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<PathLayout<4>>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<PathLayout<20>>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutLoad<SmallCellLayout>)->Unit(benchmark::kMillisecond);

/// All that zelmo-layout works out of a layout before it prints: on one thread, from the file.
template <GdsWriter (*makeLayout)()>
void LayoutFacts(benchmark::State& state) {
    const LayoutFile file(makeLayout());
    SetRowThreads(1);
    for (auto _ : state) {
        const GdsDatabase database = file.Load({.texts = true});
        benchmark::DoNotOptimize(FindLayoutProblems(database));
        benchmark::DoNotOptimize(CountCells(database));
    }
    SetRowThreads(0);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Size()));
}
BENCHMARK(LayoutFacts<FlatLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutFacts<MixedLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutFacts<ReferenceLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayoutFacts<SmallCellLayout>)->Unit(benchmark::kMillisecond);

/// The layers of the cell with the most shapes below it.
template <GdsWriter (*makeLayout)()>
void LayerContents(benchmark::State& state) {
    const LayoutFile file(makeLayout());
    const GdsDatabase database = file.Load();
    const std::vector<CellContents> cells = CountCells(database);
    const auto largest = std::max_element(cells.begin(), cells.end(),
                                          [](const CellContents& a, const CellContents& b) {
                                              return a.shapes.estimate < b.shapes.estimate;
                                          });
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            CountLayers(database, static_cast<std::size_t>(largest - cells.begin())));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Size()));
}
BENCHMARK(LayerContents<FlatLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayerContents<MixedLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayerContents<ReferenceLayout>)->Unit(benchmark::kMillisecond);
BENCHMARK(LayerContents<SmallCellLayout>)->Unit(benchmark::kMillisecond);

/// A window of so many micrometres in the middle of the chip, 1000 cells wide.
void PolygonExtraction(benchmark::State& state) {
    const auto side = static_cast<float>(state.range(0));
    const float corner = 2000.0f - side / 2.0f;
    const Grid grid{.spacing = side / 1000.0f,
                    .width = side,
                    .height = side,
                    .originX = corner,
                    .originY = corner};
    SilentConsole console;
    LoadedLayout();
    MaskExtraction masks;
    for (auto _ : state) {
        masks = ExtractMaskPolygons(LoadedLayout(), "CHIP", grid, &console);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(masks.polygons.size()));
    state.counters["polygons"] = static_cast<double>(masks.polygons.size());
}

BENCHMARK(PolygonExtraction)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
