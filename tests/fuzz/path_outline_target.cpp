#include <fuzzer/FuzzedDataProvider.h>

#include <vector>

#include "gds/path_outline.h"
#include "gds/path_repair.h"
#include "tests/fuzz/target.h"

// Centre lines of any points, widths and types, as the layout reader hands them over.

namespace zelmo {

namespace {

std::int64_t TakeCoordinate(FuzzedDataProvider& bytes, bool small) {
    return small ? bytes.ConsumeIntegral<std::int8_t>() : bytes.ConsumeIntegral<std::int32_t>();
}

/// Repairs a path that was refused.
void Repair(const DrawnPath& path) {
    const RepairedPath repaired = RepairPath(path);
    const PathFaults& faults = repaired.faults;
    Require(
        faults.repeatedPoints || faults.collinearPoints || faults.refusedEnds || faults.noLength,
        "a path that is refused has a fault");
    Require(faults.noLength || !repaired.outlines.empty(), "a path with a length has an outline");
    for (const std::vector<GdsPoint>& outline : repaired.outlines) {
        Require(outline.size() >= 5 && outline.front() == outline.back(), "an outline is closed");
    }
}

void Expand(FuzzedDataProvider& bytes) {
    const auto width = bytes.ConsumeIntegral<std::uint32_t>();
    const auto pathType = bytes.ConsumeIntegral<std::uint16_t>();
    const bool small = bytes.ConsumeBool();
    const PathExtensions extensions{static_cast<double>(bytes.ConsumeIntegral<std::int32_t>()),
                                    static_cast<double>(bytes.ConsumeIntegral<std::int32_t>())};
    std::vector<GdsPoint> points;
    while (bytes.remaining_bytes() > 0) {
        const std::int64_t x = TakeCoordinate(bytes, small);
        points.push_back({x, TakeCoordinate(bytes, small)});
    }
    std::vector<GdsPoint> outline(2 * points.size() + 1);
    const bool expanded = ExpandPath(outline, points, width, pathType);
    if (!expanded && !points.empty()) {
        Repair({.points = points,
                .width = static_cast<std::int32_t>(width),
                .pathType = pathType,
                .endsTested = pathType == extendedEnds,
                .variableExtensions = extensions});
    }
    Require(!expanded || points.size() >= 2, "a point alone is refused");
    Require(!expanded || outline.front() == outline.back(), "an outline is closed");
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    zelmo::Expand(bytes);
    return 0;
}
