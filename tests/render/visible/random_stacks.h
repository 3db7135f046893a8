#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "model/process_model.h"

namespace zelmo {

/// Stacks as runs leave them, and worse: hills, films of any thickness, patterns, levelled layers,
/// etched ones, and gaps where a layer has been released.
class StackMaker {
public:
    explicit StackMaker(unsigned seed) : random_(seed) {}

    std::unique_ptr<ProcessModel> Make() {
        model_ = std::make_unique<ProcessModel>();
        model_->settings.gridColumns = Chance(0.2f) ? Whole(60, 200) : Whole(4, 60);
        model_->settings.windowWidth = std::pow(10.0f, Number(-1.0f, 2.0f));
        model_->settings.windowHeight = model_->settings.windowWidth * Number(0.05f, 1.0f);
        model_->settings.cameraAngle = Chance(0.1f) ? 0.0f : Number(0.0f, 89.0f);
        model_->settings.showLegend = Chance(0.3f);
        model_->settings.showHeights = Chance(0.1f);
        SizeGrid(model_->grid, model_->settings);
        model_->stack.coverMap.assign(model_->grid.CellCount(), CoverCell{});
        surface_.assign(model_->grid.CellCount(), 0.0f);
        AddGround();
        for (int i = Whole(1, 8); i > 0; --i) {
            AddLayer();
            if (Chance(0.4f)) {
                LowerALayer();
            }
        }
        for (std::size_t i = 0; i < surface_.size(); ++i) {
            model_->stack.coverMap[i].height = surface_[i];
        }
        return std::move(model_);
    }

    bool Chance(float share) { return Number(0.0f, 1.0f) < share; }
    int Whole(int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(random_);
    }
    float Number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random_);
    }

private:
    Layer& Append(float opaqueShare) {
        AppendLayer(model_->stack, CreateLayer(model_->grid));
        Layer& layer = *model_->stack.layers.back();
        layer.color = {Number(0.0f, 1.0f), Number(0.0f, 1.0f), Number(0.0f, 1.0f)};
        layer.alpha = Chance(opaqueShare) ? 1.0f : Number(0.1f, 0.95f);
        return layer;
    }

    /// From far below what the depth buffer can tell apart to many cells.
    float Thickness() {
        return model_->grid.spacing * std::pow(10.0f, Number(Chance(0.2f) ? -6.0f : -1.0f, 1.0f));
    }

    void AddGround() {
        Layer& ground = Append(0.95f);
        const float height = Thickness();
        const float wave = Chance(0.5f) ? Number(0.0f, 0.9f) * height : 0.0f;
        const float acrossX = Number(0.0f, 1.5f);
        const float acrossY = Number(0.0f, 1.5f);
        ForEachCell([&](int col, int row, std::size_t i) {
            const float phase =
                acrossX * static_cast<float>(col) + acrossY * static_cast<float>(row);
            ground.top[i] = surface_[i] = height + wave * std::sin(phase);
        });
    }

    /// Marks the cells of a pattern.
    std::vector<char> Pattern() {
        std::vector<char> marks(surface_.size(), Chance(0.5f) ? 1 : 0);
        for (int i = Whole(0, 4); i > 0; --i) {
            const int left = Whole(0, model_->grid.columns - 1);
            const int front = Whole(0, model_->grid.rows - 1);
            const bool isSingle = Chance(0.3f);
            const int right = left + (isSingle ? 0 : Whole(0, model_->grid.columns));
            const int back = front + (isSingle ? 0 : Whole(0, model_->grid.rows));
            ForEachCell([&](int col, int row, std::size_t cell) {
                if (col >= left && col <= right && row >= front && row <= back) {
                    marks[cell] = marks[cell] != 0 ? 0 : 1;
                }
            });
        }
        return marks;
    }

    void AddLayer() {
        Layer& layer = Append(0.75f);
        const std::vector<char> pattern = Pattern();
        const float thickness = Thickness();
        const bool isLevelled = Chance(0.3f);
        const float level = *std::max_element(surface_.begin(), surface_.end()) *
                            (Chance(0.5f) ? 1.0f : Number(0.7f, 1.2f));
        const float rough = Chance(0.3f) ? Number(0.0f, 1.0f) : 0.0f;
        for (std::size_t i = 0; i < surface_.size(); ++i) {
            layer.bottom[i] = layer.top[i] = surface_[i];
            if (pattern[i] != 0) {
                layer.top[i] = isLevelled ? std::max(surface_[i], level)
                                          : surface_[i] + thickness * (1.0f - rough * Number(0, 1));
            }
            surface_[i] = layer.top[i];
        }
    }

    /// Etches a layer, wherever it lies in the stack, or takes it away.
    void LowerALayer() {
        Layer& layer = *model_->stack.layers[static_cast<std::size_t>(
            Whole(0, static_cast<int>(model_->stack.layers.size()) - 1))];
        const std::vector<char> pattern = Pattern();
        const float depth = Thickness();
        for (std::size_t i = 0; i < surface_.size(); ++i) {
            if (pattern[i] != 0) {
                layer.top[i] = std::max(layer.bottom[i], layer.top[i] - depth);
            }
        }
        for (std::size_t i = 0; i < surface_.size(); ++i) {
            surface_[i] = 0.0f;
            for (const auto& other : model_->stack.layers) {
                surface_[i] = std::max(surface_[i], other->top[i]);
            }
        }
    }

    template <typename Visit>
    void ForEachCell(Visit&& visit) {
        for (int row = 0; row < model_->grid.rows; ++row) {
            for (int col = 0; col < model_->grid.columns; ++col) {
                visit(
                    col, row,
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(model_->grid.columns) +
                        static_cast<std::size_t>(col));
            }
        }
    }

    std::mt19937 random_;
    std::unique_ptr<ProcessModel> model_;
    std::vector<float> surface_;
};

}  // namespace zelmo
