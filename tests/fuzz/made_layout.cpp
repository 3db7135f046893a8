#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "examples/gds_writer.h"
#include "tests/fuzz/made_run.h"

namespace zelmo {

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();

/// Mostly near the window, which is a few thousand units wide.
std::int64_t TakeCoordinate(FuzzedDataProvider& bytes) {
    constexpr std::array extremes = {least, least + 1, std::int64_t{0}, most - 1, most};
    switch (bytes.ConsumeIntegral<std::uint8_t>() % 8) {
        case 0:
            return bytes.ConsumeIntegral<std::int32_t>();
        case 1:
            return bytes.PickValueInArray(extremes);
        case 2:
            return bytes.ConsumeIntegral<std::int8_t>();
        default:
            return bytes.ConsumeIntegralInRange<std::int64_t>(-1000, 11000);
    }
}

GdsPoint TakePoint(FuzzedDataProvider& bytes) {
    const std::int64_t x = TakeCoordinate(bytes);
    return {x, TakeCoordinate(bytes)};
}

std::vector<GdsPoint> TakePoints(FuzzedDataProvider& bytes, std::size_t count) {
    std::vector<GdsPoint> points;
    while (points.size() < count) {
        points.push_back(TakePoint(bytes));
    }
    return points;
}

GdsWriterPlacement TakePlacement(FuzzedDataProvider& bytes) {
    constexpr std::array angles = {0.0, 90.0, 180.0, 270.0, 45.0, -90.0, 1e-9, 1e30};
    constexpr std::array magnifications = {1.0, 0.5, 2.0, 0.0, -1.0, 1e-30, 1e30, 1e70};
    GdsWriterPlacement placement;
    placement.reflect = bytes.ConsumeBool();
    placement.degrees = bytes.ConsumeBool() ? bytes.PickValueInArray(angles)
                                            : bytes.ConsumeFloatingPointInRange(-720.0, 720.0);
    placement.mag = bytes.ConsumeBool() ? bytes.PickValueInArray(magnifications)
                                        : bytes.ConsumeFloatingPointInRange(-4.0, 4.0);
    return placement;
}

std::uint16_t TakeLayer(FuzzedDataProvider& bytes) {
    return bytes.ConsumeIntegralInRange<std::uint16_t>(0, 3);
}

/// Paths that the reader refuses would end the run before it begins: two points that differ.
void AddPath(FuzzedDataProvider& bytes, GdsWriter& writer) {
    const std::uint16_t layer = TakeLayer(bytes);
    const GdsPoint from = TakePoint(bytes);
    const GdsPoint to = TakePoint(bytes);
    const std::int32_t width = bytes.ConsumeIntegral<std::int32_t>();
    if (from.x != to.x || from.y != to.y) {
        writer.Path(layer, {from, to}, width, bytes.ConsumeIntegralInRange<std::uint16_t>(0, 1));
    }
}

std::string CellName(std::size_t number) {
    return number == 0 ? "TOP" : "C" + std::to_string(number);
}

/// Adds an element to the cell `number` of `count`; references lead to later cells only.
void AddElement(FuzzedDataProvider& bytes, GdsWriter& writer, std::size_t number,
                std::size_t count) {
    const bool hasOthers = number + 1 < count;
    const auto takeCell = [&] {
        return CellName(bytes.ConsumeIntegralInRange<std::size_t>(number + 1, count - 1));
    };
    switch (bytes.ConsumeIntegral<std::uint8_t>() % (hasOthers ? 6 : 3)) {
        case 0:
            writer.Boundary(TakeLayer(bytes),
                            TakePoints(bytes, bytes.ConsumeIntegralInRange<std::size_t>(1, 7)));
            break;
        case 1: {
            const GdsPoint low = TakePoint(bytes);
            const std::int64_t side = bytes.ConsumeIntegralInRange<std::int64_t>(0, 8000);
            writer.Rectangle(TakeLayer(bytes), static_cast<std::int32_t>(low.x),
                             static_cast<std::int32_t>(low.y),
                             static_cast<std::int32_t>(std::min(low.x + side, most)),
                             static_cast<std::int32_t>(std::min(low.y + side, most)));
            break;
        }
        case 2:
            AddPath(bytes, writer);
            break;
        case 3:
            writer.Reference(takeCell(), TakePoint(bytes), TakePlacement(bytes));
            break;
        default: {
            const auto columns = bytes.ConsumeIntegral<std::uint16_t>();
            const auto rows = bytes.ConsumeIntegral<std::uint16_t>();
            const std::vector<GdsPoint> points = TakePoints(bytes, 3);
            writer.Array(takeCell(), columns, rows, points[0], points[1], points[2],
                         TakePlacement(bytes));
        }
    }
}

/// A chain of cells below the last one, each with its successor once or several times.
void AddChain(FuzzedDataProvider& bytes, GdsWriter& writer, std::size_t first) {
    const auto length = bytes.ConsumeIntegralInRange<std::size_t>(0, 3000);
    const auto copies = bytes.ConsumeIntegralInRange<std::size_t>(1, 3);
    const GdsPoint origin = TakePoint(bytes);
    const GdsWriterPlacement placement = TakePlacement(bytes);
    for (std::size_t link = 0; link < length; ++link) {
        writer.BeginCell(CellName(first + link));
        for (std::size_t copy = 0; copy < copies && link + 1 < length; ++copy) {
            writer.Reference(CellName(first + link + 1), origin, placement);
        }
        if (link + 1 == length) {
            writer.Rectangle(1, 0, 0, 900, 700);
        }
        writer.EndCell();
    }
}

}  // namespace

std::vector<std::uint8_t> MakeLayout(FuzzedDataProvider& bytes) {
    GdsWriter writer;
    if (bytes.ConsumeBool()) {
        writer.BeginLibrary();
    } else {
        constexpr std::array units = {1e-9, 1e-3, 1e-12, 1e-30, 1e30};
        writer.BeginLibrary(0.001, bytes.PickValueInArray(units));
    }
    const bool hasChain = bytes.ConsumeBool();
    const auto count = bytes.ConsumeIntegralInRange<std::size_t>(1, 12);
    for (std::size_t number = 0; number < count; ++number) {
        writer.BeginCell(CellName(number));
        for (auto left = bytes.ConsumeIntegralInRange<int>(0, 6); left > 0; --left) {
            AddElement(bytes, writer, number, count);
        }
        if (hasChain && number + 1 == count) {
            writer.Reference(CellName(count), {0, 0});
        }
        writer.EndCell();
    }
    if (hasChain) {
        AddChain(bytes, writer, count);
        writer.BeginCell(CellName(count));  // where the chain has no link at all
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer.Bytes();
}

}  // namespace zelmo
