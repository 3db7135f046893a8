#include "model/disc_filter.h"

#include <algorithm>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// The mean of the cells in the disc. The sum is carried along a whole row in double precision and
/// its roundings with it, which makes the order of the calls part of the result.
struct MeanWindow {
    const float* heights;
    float* means;
    double sum = 0.0;
    std::int32_t count = 0;

    void Add(std::size_t cell) {
        sum += heights[cell];
        ++count;
    }
    void Remove(std::size_t cell) {
        sum -= heights[cell];
        --count;
    }
    void Store(std::size_t cell) {
        means[cell] = static_cast<float>(sum / static_cast<double>(count));
    }
};

}  // namespace

SlidingDisc SelectSlidingDisc(const ProcessModel& model, float radius) {
    return {SelectDiscOffsets(model, radius), SelectLeavingOffsets(model, radius)};
}

void SmoothLayerTop(const ProcessModel& model, Layer& layer, float radius) {
    std::vector<float> means(layer.top.size());
    MeanWindow window{layer.top.data(), means.data()};
    SlideDisc(model.gridColumns, model.gridRows, SelectSlidingDisc(model, radius), window);
    for (std::size_t cell = 0; cell < means.size(); ++cell) {
        layer.top[cell] = layer.bottom[cell] > means[cell] ? layer.bottom[cell] : means[cell];
    }
}

}  // namespace zelmo
