#include "benchmarks/large_layouts.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace zelmo {

namespace {

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

}  // namespace

GdsWriter MixedLayout() {
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

template <std::int32_t pointCount>
GdsWriter PathLayout() {
    std::mt19937 random(4);
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("PATHS");
    std::vector<GdsPoint> points(pointCount);
    for (std::int32_t i = 0; i < 2000000 / pointCount; ++i) {
        auto x = static_cast<std::int32_t>(random() % 4000000);
        auto y = static_cast<std::int32_t>(random() % 4000000);
        std::int32_t side = 1;  // to which the path turns: no two segments are parallel
        for (GdsPoint& point : points) {
            point = {x, y};
            x += static_cast<std::int32_t>(random() % 1000) + 300;
            y += side * static_cast<std::int32_t>(random() % 500 + 1);
            side = -side;
        }
        writer.Path(static_cast<std::uint16_t>(i % 5), points, 200, i % 2 == 0 ? 0 : 2);
    }
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}
template GdsWriter PathLayout<4>();
template GdsWriter PathLayout<20>();

GdsWriter SmallCellLayout() {
    constexpr int cells = 600000;
    std::mt19937 random(5);
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; cell < cells; ++cell) {
        writer.BeginCell("CELL_" + std::to_string(cell));
        for (std::int32_t k = cell % 3; k >= 0; --k) {
            writer.Rectangle(1, k * 100, 0, k * 100 + 50, 200 + cell);
        }
        if (cell > 0) {
            const auto below = static_cast<int>(random() % static_cast<unsigned>(cell));
            writer.Reference("CELL_" + std::to_string(below), {1000, 0});
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer;
}

}  // namespace zelmo
