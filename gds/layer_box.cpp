#include "gds/layer_box.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "gds/coordinates.h"

namespace zelmo {

namespace {

/// Everything that a cell's box can hold, which ends at 32 bits.
constexpr std::int64_t farLeft = std::int64_t{std::numeric_limits<std::int32_t>::min()} - 1;
constexpr std::int64_t farRight = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
constexpr std::int64_t leastSize = 1;

void Widen(std::optional<GdsRect>& box, GdsPoint point) {
    if (!box) {
        box = GdsRect{point.x, point.y, point.x, point.y};
        return;
    }
    box->xmin = std::min(box->xmin, point.x);
    box->ymin = std::min(box->ymin, point.y);
    box->xmax = std::max(box->xmax, point.x);
    box->ymax = std::max(box->ymax, point.y);
}

}  // namespace

LayerBox FindLayerBox(const GdsDatabase& database, std::string_view cellName,
                      const std::function<bool(const RawPolygon&)>& isChosen,
                      ExtractionLimits limits) {
    const ExtractionWindow everywhere{farLeft, farLeft, farRight, farRight, leastSize};
    const PolygonExtraction all = ExtractPolygons(database, cellName, everywhere, limits);
    LayerBox found;
    found.refusal = all.refusal;
    for (const RawPolygon& polygon : all.polygons) {
        if (!isChosen(polygon)) {
            continue;
        }
        for (const GdsPoint point : polygon.points) {
            Widen(found.box, {SaturatingAdd(point.x, farLeft), SaturatingAdd(point.y, farLeft)});
        }
    }
    return found;
}

}  // namespace zelmo
