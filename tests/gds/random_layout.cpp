#include "tests/gds/random_layout.h"

#include <fmt/format.h>

#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "gds/cell_bounds.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"

namespace zelmo {

namespace {

GdsPoint RandomPoint(std::mt19937& random, std::int64_t reach) {
    const std::int64_t x = RandomInteger(random, -reach, reach);
    const std::int64_t y = RandomInteger(random, -reach, reach);
    return {x, y};
}

GdsBoundary RandomBoundary(std::mt19937& random, std::int64_t reach) {
    GdsBoundary boundary;
    boundary.layer = static_cast<std::uint16_t>(RandomInteger(random, 0, 65535));
    boundary.datatype = static_cast<std::uint16_t>(boundary.layer * 40503u);
    const GdsPoint corner = RandomPoint(random, reach);
    const std::int64_t count = RandomInteger(random, 1, 5);
    std::vector<GdsPoint> points;
    for (std::int64_t i = 0; i < count; ++i) {
        const GdsPoint step = RandomPoint(random, reach / 8 + 1);
        points.push_back({corner.x + step.x, corner.y + step.y});
    }
    points.push_back(points.front());
    boundary.points = KeepPoints(points);
    return boundary;
}

double RandomMagnification(std::mt19937& random, const RandomLayoutSettings& settings) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double strange[] = {0.0, -1.0, -0.375, 1e30, 1e-30, infinity, -infinity};
    if (settings.strangeMagnifications && random() % 4 == 0) {
        return strange[random() % std::size(strange)];
    }
    switch (random() % 4) {
        case 0:
            return static_cast<double>(
                static_cast<float>(static_cast<double>(RandomInteger(random, 1, 3000)) / 1000.0));
        case 1:
            return 0.5;
        default:
            return 1.0;
    }
}

std::uint16_t RandomFlags(std::mt19937& random) {
    constexpr std::uint16_t flags[] = {0, 0x8000, 0x0006, 0x8004};
    return flags[random() % 4];
}

GdsSref RandomSref(std::mt19937& random, const RandomLayoutSettings& settings, GdsCell& cell) {
    GdsSref sref;
    sref.strans = RandomFlags(random);
    sref.angle = RandomAngle(random);
    sref.mag = RandomMagnification(random, settings);
    sref.origin = RandomPoint(random, settings.reach);
    sref.name = cell.name;
    sref.cell = &cell;
    return sref;
}

/// The end of `count` pitches of an array: along an axis, or anywhere.
GdsPoint RandomEnd(std::mt19937& random, const RandomLayoutSettings& settings, GdsPoint origin,
                   bool horizontal) {
    const GdsPoint end = RandomPoint(random, settings.reach);
    if (random() % 2 == 0) {
        return end;
    }
    return horizontal ? GdsPoint{end.x, origin.y} : GdsPoint{origin.x, end.y};
}

GdsAref RandomAref(std::mt19937& random, const RandomLayoutSettings& settings, GdsCell& cell) {
    GdsAref aref;
    aref.strans = RandomFlags(random);
    aref.angle = RandomAngle(random);
    aref.mag = RandomMagnification(random, settings);
    aref.columns = static_cast<std::int32_t>(RandomInteger(random, 0, settings.arraySide));
    aref.rows = static_cast<std::int32_t>(RandomInteger(random, 0, settings.arraySide));
    const GdsPoint origin = RandomPoint(random, settings.reach);
    const bool turned = random() % 2 == 0;
    const GdsPoint columnEnd = RandomEnd(random, settings, origin, !turned);
    const GdsPoint rowEnd = RandomEnd(random, settings, origin, turned);
    aref.points = KeepPoints({origin, columnEnd, rowEnd});
    aref.name = cell.name;
    aref.cell = &cell;
    return aref;
}

}  // namespace

std::int64_t RandomInteger(std::mt19937& random, std::int64_t least, std::int64_t greatest) {
    const std::uint64_t span = static_cast<std::uint64_t>(greatest - least) + 1;
    std::uint64_t bits = random();
    bits = bits << 32 | random();
    return least + static_cast<std::int64_t>(bits % span);
}

double RandomAngle(std::mt19937& random) {
    const double degrees = random() % 3 == 0
                               ? static_cast<double>(RandomInteger(random, -36000, 36000)) / 100.0
                               : static_cast<double>(RandomInteger(random, 0, 3)) * 90.0;
    return static_cast<double>(static_cast<float>(degrees * 3.141592653589793 / 180.0));
}

GdsDatabase RandomLayout(std::mt19937& random, const RandomLayoutSettings& settings) {
    GdsDatabase database;
    const auto count = static_cast<std::size_t>(settings.cells);
    AddCells(database, count);
    // References lead to cells of a lower rank, which may come earlier or later in the file.
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i) {
        order[i] = i;
        std::swap(order[i], order[random() % (i + 1)]);
        database.cells[i].name = KeepName("cell" + std::to_string(i));
    }
    for (std::size_t rank = 0; rank < count; ++rank) {
        GdsCell& cell = database.cells[order[rank]];
        for (std::uint32_t n = random() % 4; n > 0; --n) {
            Add(cell.boundaries, RandomBoundary(random, settings.reach));
        }
        for (std::uint32_t n = rank > 0 ? random() % 4 : 0; n > 0; --n) {
            GdsCell& child = database.cells[order[random() % rank]];
            if (random() % 2 == 0) {
                Add(cell.srefs, RandomSref(random, settings, child));
            } else {
                Add(cell.arefs, RandomAref(random, settings, child));
            }
        }
    }
    RecordingConsole console;
    ComputeBoundaryBounds(database, &console);
    return database;
}

GdsDatabase TowerOfTurns() {
    constexpr int levels = 30;
    GdsWriter writer;
    writer.BeginLibrary();
    for (int level = 0; level < levels; ++level) {
        writer.BeginCell(fmt::format("C{}", level));
        for (const double degrees : {0.37 * level + 0.1, 0.0}) {
            writer.Reference(fmt::format("C{}", level + 1), {1, 2}, {false, 1.0, degrees});
        }
        writer.EndCell();
    }
    writer.BeginCell(fmt::format("C{}", levels));
    writer.Rectangle(7, 0, 0, 100, 50);
    writer.EndCell();
    writer.EndLibrary();
    return std::move(Load(writer).database);
}

}  // namespace zelmo
