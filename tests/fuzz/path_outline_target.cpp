#include <fuzzer/FuzzedDataProvider.h>

#include <vector>

#include "gds/path_outline.h"
#include "tests/fuzz/target.h"

// Centre lines of any points, widths and types, as the layout reader hands them over.

namespace zelmo {

namespace {

std::int64_t TakeCoordinate(FuzzedDataProvider& bytes, bool small) {
    return small ? bytes.ConsumeIntegral<std::int8_t>() : bytes.ConsumeIntegral<std::int32_t>();
}

void Expand(FuzzedDataProvider& bytes) {
    const auto width = bytes.ConsumeIntegral<std::uint32_t>();
    const auto pathType = bytes.ConsumeIntegral<std::uint16_t>();
    const bool small = bytes.ConsumeBool();
    std::vector<GdsPoint> points;
    while (bytes.remaining_bytes() > 0) {
        const std::int64_t x = TakeCoordinate(bytes, small);
        points.push_back({x, TakeCoordinate(bytes, small)});
    }
    std::vector<GdsPoint> outline(2 * points.size() + 1);
    const bool expanded = ExpandPath(outline, points, width, pathType);
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
