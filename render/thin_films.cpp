#include "render/thin_films.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "base/row_bands.h"

namespace zelmo {

namespace {

constexpr std::int32_t fewestPieces = 1;  // for a thread
constexpr std::size_t piece = 4096;       // cells

/// What a film at a cell is lifted by that lies on others.
struct Growth {
    float top = 0.0f;  ///< of the thin film, as it was
    float by = 0.0f;
};

/// How much higher that is which was at this height.
float LiftOf(const std::vector<Growth>& growths, float height) {
    float lift = 0.0f;
    for (const Growth& growth : growths) {
        lift += growth.top <= height ? growth.by : 0.0f;
    }
    return lift;
}

class Thickening {
public:
    Thickening(const Stack& stack, float thickness) : stack_(stack), thickness_(thickness) {
        for (const auto& layer : stack.layers) {
            if (layer != nullptr && layer->top.size() == stack.coverMap.size() &&
                layer->bottom.size() == stack.coverMap.size()) {
                layers_.push_back(layer.get());
            } else {
                layers_.push_back(nullptr);
            }
        }
    }

    /// By slot, which layers are moved anywhere.
    std::vector<bool> FindMoved() {
        std::vector<bool> moved(layers_.size());
        std::mutex mutex;
        ForPieces([&](std::size_t first, std::size_t end) {
            std::vector<bool> here(layers_.size());
            std::vector<Growth> growths;
            for (std::size_t cell = first; cell < end; ++cell) {
                if (FindGrowths(cell, growths)) {
                    MarkMoved(cell, growths, here);
                }
            }
            const std::lock_guard lock(mutex);
            std::transform(here.begin(), here.end(), moved.begin(), moved.begin(),
                           [](bool a, bool b) { return a || b; });
        });
        return moved;
    }

    /// Moves the layers of a copy; those that are moved are its own already.
    void Move(Stack& copy, const std::vector<bool>& moved) const {
        CoverCell* const cover = copy.coverMap.data();
        ForPieces([&](std::size_t first, std::size_t end) {
            std::vector<Growth> growths;
            for (std::size_t cell = first; cell < end; ++cell) {
                if (!FindGrowths(cell, growths)) {
                    continue;
                }
                for (std::size_t slot = 0; slot < moved.size(); ++slot) {
                    if (moved[slot]) {
                        MoveCell(*copy.layers[slot], *layers_[slot], cell, growths);
                    }
                }
                cover[cell].height += LiftOf(growths, cover[cell].height);
            }
        });
    }

private:
    template <typename Work>
    void ForPieces(Work&& work) const {
        const std::size_t cells = stack_.coverMap.size();
        const auto pieces = static_cast<std::int32_t>((cells + piece - 1) / piece);
        ForRowBands(pieces, fewestPieces, [&](std::int32_t first, std::int32_t end) {
            work(static_cast<std::size_t>(first) * piece,
                 std::min(static_cast<std::size_t>(end) * piece, cells));
        });
    }

    bool IsThin(float thickness) const { return thickness >= leastFilm && thickness < thickness_; }

    /// The thin films of a cell. False if there is none.
    bool FindGrowths(std::size_t cell, std::vector<Growth>& growths) const {
        growths.clear();
        for (const Layer* const layer : layers_) {
            if (layer == nullptr) {
                continue;
            }
            const float thickness = layer->top[cell] - layer->bottom[cell];
            if (IsThin(thickness)) {
                growths.push_back({layer->top[cell], thickness_ - thickness});
            }
        }
        return !growths.empty();
    }

    void MarkMoved(std::size_t cell, const std::vector<Growth>& growths,
                   std::vector<bool>& moved) const {
        for (std::size_t slot = 0; slot < layers_.size(); ++slot) {
            // A layer's top is lifted wherever anything of it is.
            if (layers_[slot] != nullptr && LiftOf(growths, layers_[slot]->top[cell]) > 0.0f) {
                moved[slot] = true;
            }
        }
    }

    static void MoveCell(Layer& to, const Layer& from, std::size_t cell,
                         const std::vector<Growth>& growths) {
        to.bottom[cell] = from.bottom[cell] + LiftOf(growths, from.bottom[cell]);
        to.top[cell] = from.top[cell] + LiftOf(growths, from.top[cell]);
    }

    const Stack& stack_;
    float thickness_;
    std::vector<const Layer*> layers_;  ///< by slot; null: none, or not of the stack's grid
};

}  // namespace

std::optional<Stack> ThickenThinFilms(const Stack& stack, float thickness) {
    Thickening thickening(stack, thickness);
    const std::vector<bool> moved = thickening.FindMoved();
    if (std::find(moved.begin(), moved.end(), true) == moved.end()) {
        return std::nullopt;
    }
    Stack copy = CopyStack(stack);
    for (std::size_t slot = 0; slot < moved.size(); ++slot) {
        if (moved[slot]) {
            MarkChanged(*copy.layers[slot]);
        }
    }
    copy.coverMap.Unshare();
    thickening.Move(copy, moved);
    return copy;
}

}  // namespace zelmo
