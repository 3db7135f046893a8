#include <cstddef>
#include <cstdint>
#include <span>

#include "model/disc_filter.h"
#include "model/mask.h"

namespace zelmo {

namespace {

/// Counts the cells of the disc that are in the grid, and those of them that are set.
struct MajorityWindow {
    const std::uint8_t* rawMask;
    std::uint8_t* mask;
    std::int32_t total = 0;
    std::int32_t on = 0;

    void Add(std::size_t cell) {
        ++total;
        on += rawMask[cell] != 0 ? 1 : 0;
    }
    void Remove(std::size_t cell) {
        --total;
        on -= rawMask[cell] != 0 ? 1 : 0;
    }
    void Store(std::size_t cell) {
        mask[cell] = static_cast<float>(on) > static_cast<float>(total) * 0.5f ? 1 : 0;
    }
};

}  // namespace

void BlurMask(const ProcessModel& model, std::span<std::uint8_t> mask,
              std::span<const std::uint8_t> rawMask, float radius) {
    MajorityWindow window{rawMask.data(), mask.data()};
    SlideDisc(model.gridColumns, model.gridRows, SelectSlidingDisc(model, radius), window);
}

}  // namespace zelmo
