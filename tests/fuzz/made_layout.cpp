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

/// What a layout may hold. A walk through all instances of a wild one takes milliseconds; a huge
/// one has more instances than any walk could visit, of cells that are compact.
enum class Manner { Wild, Huge };

/// Mostly near the window, which is a few thousand units wide.
std::int64_t TakeCoordinate(FuzzedDataProvider& bytes, Manner manner) {
    constexpr std::array extremes = {least, least + 1, std::int64_t{0}, most - 1, most};
    switch (manner == Manner::Wild ? bytes.ConsumeIntegral<std::uint8_t>() % 8 : 7) {
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

GdsPoint TakePoint(FuzzedDataProvider& bytes, Manner manner) {
    const std::int64_t x = TakeCoordinate(bytes, manner);
    return {x, TakeCoordinate(bytes, manner)};
}

std::vector<GdsPoint> TakePoints(FuzzedDataProvider& bytes, Manner manner, std::size_t count) {
    std::vector<GdsPoint> points;
    while (points.size() < count) {
        points.push_back(TakePoint(bytes, manner));
    }
    return points;
}

GdsWriterPlacement TakePlacement(FuzzedDataProvider& bytes, Manner manner) {
    constexpr std::array angles = {0.0, 90.0, 180.0, 270.0, 45.0, -90.0, 1e-9, 1e30};
    constexpr std::array magnifications = {1.0, 0.5, 2.0, -1.0, 0.0, 1e-30, 1e30, 1e70};
    GdsWriterPlacement placement;
    placement.reflect = bytes.ConsumeBool();
    placement.degrees = bytes.ConsumeBool() ? bytes.PickValueInArray(angles)
                                            : bytes.ConsumeFloatingPointInRange(-720.0, 720.0);
    if (manner == Manner::Huge) {
        placement.mag = magnifications[bytes.ConsumeIntegral<std::uint8_t>() % 4];
    } else {
        placement.mag = bytes.ConsumeBool() ? bytes.PickValueInArray(magnifications)
                                            : bytes.ConsumeFloatingPointInRange(-4.0, 4.0);
    }
    return placement;
}

GdsWriterLayer TakeLayer(FuzzedDataProvider& bytes) {
    const auto layer = bytes.ConsumeIntegralInRange<std::uint16_t>(0, 3);
    return {layer, bytes.ConsumeIntegralInRange<std::uint16_t>(0, 2)};
}

std::string CellName(std::size_t number) {
    return number == 0 ? "TOP" : "C" + std::to_string(number);
}

/// Writes the cells of a layout, the last first.
class LayoutMaker {
public:
    LayoutMaker(FuzzedDataProvider& bytes, Manner manner) : bytes_(bytes), manner_(manner) {}

    void AddCell(std::size_t number, std::size_t count, bool refersToChain) {
        writer_.BeginCell(CellName(number));
        instances_.resize(std::max(instances_.size(), number + 1), 1.0);
        for (auto left = bytes_.ConsumeIntegralInRange<int>(0, 6); left > 0; --left) {
            AddElement(number, count);
        }
        if (refersToChain) {
            writer_.Reference(CellName(count), {0, 0});
        }
        writer_.EndCell();
    }

    /// A chain of cells, each of which refers to its successor, or to it and its twin.
    void AddChain(std::size_t first) {
        const auto length = bytes_.ConsumeIntegralInRange<std::size_t>(1, 3000);
        const bool twins = bytes_.ConsumeBool();
        const GdsPoint origin = TakePoint(bytes_, manner_);
        const GdsWriterPlacement placement = TakePlacement(bytes_, manner_);
        for (std::size_t link = 0; link < length; ++link) {
            writer_.BeginCell(CellName(first + link));
            if (link + 1 == length) {
                writer_.Rectangle(1, 0, 0, 900, 700);
            } else {
                writer_.Reference(CellName(first + link + 1), origin, placement);
            }
            if (link + 1 < length && twins) {
                writer_.Reference(CellName(first + link + 1), origin, placement);
            }
            writer_.EndCell();
        }
    }

    GdsWriter& Writer() { return writer_; }

private:
    /// Adds an element to the cell `number` of `count`; references lead to later cells only.
    void AddElement(std::size_t number, std::size_t count) {
        switch (bytes_.ConsumeIntegral<std::uint8_t>() % (number + 1 < count ? 6 : 3)) {
            case 0:
                writer_.Boundary(
                    TakeLayer(bytes_),
                    TakePoints(bytes_, manner_, bytes_.ConsumeIntegralInRange<std::size_t>(1, 7)));
                break;
            case 1:
                AddRectangle();
                break;
            case 2:
                AddPath();
                break;
            default:
                AddReference(number,
                             bytes_.ConsumeIntegralInRange<std::size_t>(number + 1, count - 1));
        }
    }

    void AddRectangle() {
        const GdsPoint low = TakePoint(bytes_, manner_);
        const std::int64_t side = bytes_.ConsumeIntegralInRange<std::int64_t>(0, 8000);
        writer_.Rectangle(TakeLayer(bytes_), static_cast<std::int32_t>(low.x),
                          static_cast<std::int32_t>(low.y),
                          static_cast<std::int32_t>(std::min(low.x + side, most)),
                          static_cast<std::int32_t>(std::min(low.y + side, most)));
    }

    /// Paths that the reader refuses would end the run before it begins: two points that differ,
    /// and flush ends.
    void AddPath() {
        const GdsWriterLayer layer = TakeLayer(bytes_);
        const GdsPoint from = TakePoint(bytes_, manner_);
        const GdsPoint to = TakePoint(bytes_, manner_);
        const std::int32_t width = manner_ == Manner::Wild ? bytes_.ConsumeIntegral<std::int32_t>()
                                                           : bytes_.ConsumeIntegral<std::int16_t>();
        if (from.x != to.x || from.y != to.y) {
            writer_.Path(layer, {from, to}, width, bytes_.ConsumeBool() ? 3 : 0);
        }
    }

    void AddReference(std::size_t number, std::size_t cell) {
        const bool single = bytes_.ConsumeBool();
        const auto largest = static_cast<std::uint16_t>(manner_ == Manner::Wild ? 30 : 65535);
        const auto columns = bytes_.ConsumeIntegralInRange<std::uint16_t>(0, largest);
        const auto rows = bytes_.ConsumeIntegralInRange<std::uint16_t>(0, largest);
        const double added = instances_[cell] * (single ? 1.0 : double(columns) * double(rows));
        constexpr double walkable = 10000.0;
        if (manner_ == Manner::Wild && instances_[number] + added > walkable) {
            return;
        }
        instances_[number] += added;
        const GdsWriterPlacement placement = TakePlacement(bytes_, manner_);
        // Huge arrays reach far, whatever stands in them.
        const std::vector<GdsPoint> points = TakePoints(bytes_, Manner::Wild, 3);
        if (single) {
            writer_.Reference(CellName(cell), points[0], placement);
        } else {
            writer_.Array(CellName(cell), columns, rows, points[0], points[1], points[2],
                          placement);
        }
    }

    FuzzedDataProvider& bytes_;
    Manner manner_;
    GdsWriter writer_;
    std::vector<double> instances_;  ///< cells that a walk through each cell visits
};

}  // namespace

std::vector<std::uint8_t> MakeLayout(FuzzedDataProvider& bytes) {
    LayoutMaker maker(bytes, bytes.ConsumeBool() ? Manner::Wild : Manner::Huge);
    if (bytes.ConsumeBool()) {
        maker.Writer().BeginLibrary();
    } else {
        constexpr std::array units = {1e-9, 1e-3, 1e-12, 1e-30, 1e30};
        maker.Writer().BeginLibrary(0.001, bytes.PickValueInArray(units));
    }
    const bool hasChain = bytes.ConsumeBool();
    const auto count = bytes.ConsumeIntegralInRange<std::size_t>(1, 12);
    for (std::size_t number = count; number-- > 0;) {
        maker.AddCell(number, count, hasChain && number + 1 == count);
    }
    if (hasChain) {
        maker.AddChain(count);
    }
    maker.Writer().EndLibrary();
    return maker.Writer().Bytes();
}

}  // namespace zelmo
