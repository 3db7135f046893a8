#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "base/debug_trace.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/grid/grid.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/implant_lanes.h"
#include "model/steps/steps.h"
#include "model/steps/typed_layers.h"

// A doped region takes the place of what it was: no surface moves. So beside it the new layer, with
// no thickness there, lies where the converted one's upper surface goes on, under whatever stands
// on that, and it covers no cell around its own. Otherwise its edge would climb up at a gate, and
// the next film would begin at a wrong height beside a gate or where resist was.
//
// Many columns are gone down at once, layer by layer, as far as any of them goes on.

namespace zelmo {

namespace {

/// As many columns as stay in the nearest cache while the layers go by.
constexpr std::int32_t stretch = 1024;

/// Neighbouring columns of the grid.
struct Stretch {
    std::int32_t row = 0;
    std::int32_t col = 0;
    std::int32_t count = 0;
};

bool IsFinite(float height) {
    return height - height == 0.0f;
}

/// The new layer, and what is converted into it.
class Doping {
public:
    Doping(Stack& stack, const Grid& grid, const ProcessStep& step)
        : stack_(stack),
          grid_(grid),
          depth_(step.depth),
          layer_(CreateLayer(grid, step)),
          top_(layer_->top.data()),
          bottom_(layer_->bottom.data()),
          isTarget_(FindTypedLayers(stack, step.targets)),
          isConverted_(stack.layers.size()),
          firstColumns_(static_cast<std::size_t>(grid.columns) + 2),
          first_(firstColumns_ * (static_cast<std::size_t>(grid.rows) + 2), noTarget),
          last_(grid.CellCount()) {
        layer_->coversAround = false;
    }

    /// Fills the new layer. The stack stays as it is.
    void Plan() {
        ForStretches([this](const Stretch& some) { GoDown(some); });
        ForStretches([this](const Stretch& some) { PlaceRim(some); });
    }

    /// Puts the new layer on the stack and lowers the converted ones. Needs no memory any more when
    /// it begins with the latter.
    void Perform() {
        for (std::size_t id = 0; id < isConverted_.size(); ++id) {
            if (isConverted_[id]) {
                MarkChanged(*stack_.layers[id]);
            }
        }
        AppendLayer(stack_, std::move(layer_));
        ForStretches([this](const Stretch& some) { Lower(some); });
    }

private:
    template <typename Work>
    void ForStretches(const Work& work) {
        ForRowBands(grid_.rows, 64, [this, &work](std::int32_t firstRow, std::int32_t endRow) {
            for (std::int32_t row = firstRow; row < endRow; ++row) {
                for (std::int32_t col = 0; col < grid_.columns; col += stretch) {
                    work(Stretch{row, col, std::min(stretch, grid_.columns - col)});
                }
            }
        });
    }

    std::size_t CellOf(const Stretch& some) const {
        return static_cast<std::size_t>(some.row) * static_cast<std::size_t>(grid_.columns) +
               static_cast<std::size_t>(some.col);
    }
    /// The place in `first_`, which has one more row and column on each side than the grid.
    std::int32_t* FirstOf(const Stretch& some) {
        return &first_[(static_cast<std::size_t>(some.row) + 1) * firstColumns_ +
                       static_cast<std::size_t>(some.col) + 1];
    }
    DopedColumns ColumnsOf(const Stretch& some, std::int32_t* state) {
        const std::size_t cell = CellOf(some);
        return {top_ + cell, bottom_ + cell, FirstOf(some), &last_[cell], state, some.count};
    }
    LayerColumns ColumnsOf(const Stretch& some, std::size_t id) const {
        const Layer& layer = *stack_.layers[id];
        const std::size_t cell = CellOf(some);
        return {&layer.top[cell], &layer.bottom[cell], static_cast<std::int32_t>(id)};
    }

    /// Both surfaces at the height that is exposed: right where no target is at or beside a column.
    void StartAtCover(const Stretch& some) {
        const std::size_t cell = CellOf(some);
        for (std::size_t i = cell; i < cell + static_cast<std::size_t>(some.count); ++i) {
            const float height = stack_.coverMap[i].height;
            top_[i] = IsFinite(height) ? height : stack_.substrateThickness;
            bottom_[i] = top_[i];
        }
    }

    void GoDown(const Stretch& some) {
        StartAtCover(some);
        std::array<std::int32_t, stretch> state;  // NOLINT(*-member-init): filled before it is read
        state.fill(columnOpen);
        const DopedColumns columns = ColumnsOf(some, state.data());
        bool goesOn = true;
        for (std::size_t id = isTarget_.size(); goesOn && id-- > 1;) {
            if (stack_.layers[id] == nullptr) {
                continue;
            }
            if (!isTarget_[id]) {
                goesOn = ZELMO_PICK_LANES(MeetShield)(columns, ColumnsOf(some, id));
                continue;
            }
            const ConversionProgress progress =
                ZELMO_PICK_LANES(ConvertTarget)(columns, ColumnsOf(some, id), depth_);
            goesOn = progress.goesOn;
            if (progress.converts) {
                isConverted_[id] = true;
            }
        }
        EndAtDepth(columns);
    }

    void EndAtDepth(const DopedColumns& columns) const {
        for (std::int32_t i = 0; i < columns.count; ++i) {
            const float end = columns.top[i] - depth_;
            const bool isInside = columns.first[i] > 0 && end > columns.bottom[i];
            columns.bottom[i] = isInside ? end : columns.bottom[i];
        }
    }

    /// Beside a converted layer, in columns where no target has thickness, the new layer's edge
    /// lies on that of the converted one.
    void PlaceRim(const Stretch& some) {
        std::array<std::int32_t, stretch> rim;  // NOLINT(*-member-init): filled before it is read
        const std::int32_t* const first = FirstOf(some);
        if (!ZELMO_PICK_LANES(FindRim)(first - firstColumns_, first, first + firstColumns_,
                                       rim.data(), some.count)) {
            return;
        }
        const std::size_t cell = CellOf(some);
        for (std::size_t i = 0; i < static_cast<std::size_t>(some.count); ++i) {
            if (rim[i] == 0) {
                continue;
            }
            const float edge = stack_.layers[static_cast<std::size_t>(rim[i])]->top[cell + i];
            if (IsFinite(edge)) {
                top_[cell + i] = edge;
                bottom_[cell + i] = edge;
            }
        }
    }

    void Lower(const Stretch& some) {
        const DopedColumns columns = ColumnsOf(some, nullptr);
        for (std::size_t id = 0; id < isConverted_.size(); ++id) {
            if (isConverted_[id]) {
                float* const tops = &stack_.layers[id]->top[CellOf(some)];
                ZELMO_PICK_LANES(LowerConverted)(tops, ColumnsOf(some, id), columns);
            }
        }
    }

    Stack& stack_;
    const Grid& grid_;
    float depth_;
    std::unique_ptr<Layer> layer_;  ///< until it is on the stack
    float* top_;                    ///< its surfaces
    float* bottom_;
    std::vector<bool> isTarget_;                  ///< by slot
    std::vector<std::atomic<bool>> isConverted_;  ///< the same: anywhere
    std::size_t firstColumns_;
    std::vector<std::int32_t> first_;  ///< of each column, as in DopedColumns
    std::vector<std::int32_t> last_;
};

}  // namespace

void ExecuteImplant(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing implant");
    Doping doping(stack, grid, step);
    doping.Plan();
    doping.Perform();
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
