#include "render/visible/visible_triangles.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/grid/grid.h"
#include "render/highest_surface.h"
#include "render/mesh/layer_mesh.h"
#include "tests/render/gl_test.h"
#include "tests/support/case_count.h"

// A frame that leaves out what cannot be seen is to have the bytes of one that draws everything.

namespace zelmo {
namespace {

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

Camera CameraOf(const ProcessModel& model, float top) {
    return {static_cast<double>(model.settings.windowWidth),
            static_cast<double>(model.settings.windowHeight), static_cast<double>(top),
            static_cast<double>(model.settings.cameraAngle)};
}

class Visible : public ::testing::Test {
protected:
    Pixels Draw(const ProcessModel& model, const Camera& camera, int width, bool wholeMeshes) {
        const int height = static_cast<int>(width / camera.aspect);
        const Canvas canvas(width, height);
        PictureTools tools = tools_.Tools();
        if (wholeMeshes) {
            tools.hidingRules.reset();
        }
        RenderFrame(model, uploads_, camera, tools, width, height);
        return canvas.Read();
    }

    /// Ends a step whose layers the test has changed as it likes.
    static void Settle(ProcessModel& model) {
        for (const auto& layer : model.stack.layers) {
            if (layer != nullptr) {
                MarkChanged(*layer);
            }
        }
        SettleStack(model.stack, model.grid);
    }

    /// Settles and uploads the stack; returns the picture's camera.
    Camera Prepare(ProcessModel& model) {
        Settle(model);
        UpdateUploads(uploads_, model);
        return CameraOf(model, HighestSurface(model.stack.coverMap));
    }

    /// Draws a model both ways.
    void ExpectSamePicture(ProcessModel& model, int width) {
        const Camera camera = Prepare(model);
        const Pixels all = Draw(model, camera, width, true);
        const Pixels chosen = Draw(model, camera, width, false);
        EXPECT_EQ(chosen == all, true)
            << "different pixels in " << all.BoxOf([&, i = std::size_t{0}](const Pixel&) mutable {
                   const bool differs = chosen.pixels[i] != all.pixels[i];
                   ++i;
                   return differs;
               });
    }

    /// How many triangles are drawn of a model, and how many there are.
    std::pair<std::size_t, std::size_t> CountTriangles(ProcessModel& model, int width) {
        const Camera camera = Prepare(model);
        HidingRules rules;
        rules.levelParts = !model.settings.showHeights;
        const auto chosen = ChooseTriangles(
            model.stack, model.grid,
            {camera.transform, 0, 0, width, static_cast<int>(width / camera.aspect), 8}, rules);
        DrawnTriangles drawn;
        std::pair<std::size_t, std::size_t> counts{0, 0};
        for (std::size_t slot = 0; slot < model.stack.layers.size(); ++slot) {
            if (model.stack.layers[slot] != nullptr) {
                counts.second += static_cast<std::size_t>(
                                     FindMesh(uploads_, *model.stack.layers[slot])->IndexCount()) /
                                 3;
                if (chosen) {
                    FindDrawnTriangles(*chosen, slot, drawn);
                    counts.first += drawn.levelCorners.size() / 3 + drawn.indices.size() / 3;
                }
            }
        }
        return counts;
    }

    /// Films of these thicknesses in micrometres over a flat window of 10 micrometres.
    std::unique_ptr<ProcessModel> MakeFilms(const std::vector<float>& thicknesses) {
        auto model = std::make_unique<ProcessModel>();
        model->settings.windowWidth = model->settings.windowHeight = 10.0f;
        model->settings.cameraAngle = 40.0f;
        model->settings.gridColumns = 120;
        SizeGrid(model->grid, model->settings);
        model->stack.coverMap.assign(model->grid.CellCount(), CoverCell{});
        float height = 0.0f;
        for (const float thickness : thicknesses) {
            AppendLayer(model->stack, CreateLayer(model->grid));
            Layer& layer = *model->stack.layers.back();
            layer.color = {0.3f, 0.6f, height > 0.0f ? 0.9f : 0.1f};
            std::fill(layer.bottom.begin(), layer.bottom.end(), height);
            height += thickness;
            std::fill(layer.top.begin(), layer.top.end(), height);
        }
        for (CoverCell& cell : model->stack.coverMap) {
            cell.height = height;
        }
        return model;
    }

    TestTools tools_;
    StackUploads uploads_;
};

TEST_F(Visible, GivesThePictureOfWholeMeshesOnRandomStacks) {
    const auto cases = static_cast<int>(CaseCount(250));
    for (int i = 0; i < cases && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        StackMaker maker(static_cast<unsigned>(i));
        AllowWideLanes(i % 2 == 0);
        SetRowThreads(1 + i % 3);
        const auto model = maker.Make();
        ExpectSamePicture(*model, maker.Chance(0.2f) ? 1920 : maker.Whole(40, 700));
    }
    AllowWideLanes(true);
    SetRowThreads(0);
}

TEST_F(Visible, LeavesOutWhatLiesInsideAStackOfFilms) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f, 0.5f});
    model->settings.showHeights = true;  // which keeps the triangles of level parts
    const auto [drawn, all] = CountTriangles(*model, 1920);
    EXPECT_EQ(all, 4u * (2u * 2u * 101u * 101u + 2u * 101u));
    // One sheet of eight, the walls, and the band at the front of the others.
    EXPECT_LT(drawn, all / 7);
    EXPECT_GT(drawn, 2u * 101u * 101u);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, KeepsWhatLiesUnderAFilmThinnerThanTheDepthBufferTells) {
    const auto thick = MakeFilms({1.0f, 1e-2f});
    const auto thin = MakeFilms({1.0f, 1e-6f});
    EXPECT_GT(CountTriangles(*thin, 1920).first, CountTriangles(*thick, 1920).first + 15000);
    ExpectSamePicture(*thin, 1920);
}

TEST_F(Visible, KeepsWhatIsSeenThroughATranslucentLayer) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f});
    const std::size_t opaque = CountTriangles(*model, 1920).first;
    model->stack.layers[2]->alpha = 0.5f;
    EXPECT_GT(CountTriangles(*model, 1920).first, opaque + 15000);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, LeavesOutWhatAnOpaqueLayerHidesUnderATranslucentOne) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f});
    const std::size_t opaque = CountTriangles(*model, 1920).first;
    model->stack.layers[1]->alpha = 0.5f;
    EXPECT_LT(CountTriangles(*model, 1920).first, opaque + 5000);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, KeepsWhatIsSeenUnderARoofThroughATranslucentHillBeforeIt) {
    // A translucent layer with a ridge across the window, and an opaque one in the plain behind it.
    const auto model = MakeFilms({1.0f, 0.2f, 0.0f});
    Layer& translucent = *model->stack.layers[1];
    Layer& roof = *model->stack.layers[2];
    translucent.alpha = 0.4f;
    for (int row = 0; row < model->grid.rows; ++row) {
        for (int col = 0; col < model->grid.columns; ++col) {
            const auto i = static_cast<std::size_t>(row * model->grid.columns + col);
            translucent.top[i] = row >= 30 && row < 40 ? 4.0f : 1.2f;
            roof.bottom[i] = translucent.top[i];
            roof.top[i] = row > 43 ? 2.5f : roof.bottom[i];
            model->stack.coverMap[i].height = roof.top[i];
        }
    }
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, LeavesOutWhatAHighOpaqueLayerHidesBehindIt) {
    // A wall across the window on a translucent film. The film itself is drawn where it is seen.
    const auto makeWall = [this](float height) {
        auto model = MakeFilms({1.0f, 0.5f, 0.0f});
        model->stack.layers[1]->alpha = 0.4f;
        Layer& wall = *model->stack.layers[2];
        for (int row = 30; row < 40; ++row) {
            const auto start = wall.top.begin() + row * model->grid.columns;
            std::fill(start, start + model->grid.columns, 1.5f + height);
        }
        return model;
    };
    const auto low = makeWall(0.1f);
    const auto high = makeWall(2.0f);
    const std::size_t hidden = 2 * 101 * 20;  // of the film, behind the high wall
    EXPECT_LT(CountTriangles(*high, 1920).first + hidden, CountTriangles(*low, 1920).first);
    ExpectSamePicture(*low, 1920);
    ExpectSamePicture(*high, 1920);
    ExpectSamePicture(*high, 333);
}

TEST_F(Visible, LetsTwoTrianglesStandForALevelPart) {
    for (const float angle : {1.0f, 12.0f, 40.0f, 88.0f}) {
        const auto model = MakeFilms({1.0f, 0.5f});
        model->settings.cameraAngle = angle;
        const std::size_t part = CountTriangles(*model, 1920).first;
        model->settings.showHeights = true;
        const std::size_t all = CountTriangles(*model, 1920).first;
        EXPECT_LT(part + 15000 * (angle > 10.0f ? 1 : 0), all + (angle > 10.0f ? 0 : 1)) << angle;
        model->settings.showHeights = false;
        for (const int width : {1920, 700, 123}) {
            ExpectSamePicture(*model, width);
        }
    }
}

TEST_F(Visible, KeepsTheTrianglesAroundWhatTouchesALevelPart) {
    const auto bare = MakeFilms({1.0f, 0.0f});
    const std::size_t level = CountTriangles(*bare, 1920).first;
    const auto covered = MakeFilms({1.0f, 0.0f});
    // Small things stand on it, hang over it by less than the depth buffer tells apart, and cut it.
    Layer& ground = *covered->stack.layers[0];
    Layer& thing = *covered->stack.layers[1];
    const auto at = [&](int col, int row) {
        return static_cast<std::size_t>(row * covered->grid.columns + col);
    };
    for (int i = 0; i < 5; ++i) {
        thing.top[at(20 + 15 * i, 30)] = 1.1f;
        thing.bottom[at(20 + 15 * i, 60)] = 1.0000002f;
        thing.top[at(20 + 15 * i, 60)] = 1.2f;
        ground.top[at(20 + 15 * i, 90)] = 0.9f;
    }
    EXPECT_GT(CountTriangles(*covered, 1920).first, level + 15 * 100);
    ExpectSamePicture(*covered, 1920);
    ExpectSamePicture(*covered, 250);
}

TEST_F(Visible, LetsTwoTrianglesStandForALevelPartUnderATranslucentLayer) {
    const auto model = MakeFilms({1.0f, 0.5f});
    model->stack.layers[1]->alpha = 0.3f;
    const std::size_t standing = CountTriangles(*model, 1920).first;
    ExpectSamePicture(*model, 1920);
    // A gap too small for the depth buffer is no gap: neither level nor standing.
    for (float& bottom : model->stack.layers[1]->bottom) {
        bottom += 1e-6f;
    }
    EXPECT_GT(CountTriangles(*model, 1920).first, standing + 35000);
    ExpectSamePicture(*model, 1920);
    // Over a wide gap it is level again.
    for (float& bottom : model->stack.layers[1]->bottom) {
        bottom += 0.2f;
    }
    EXPECT_LT(CountTriangles(*model, 1920).first, standing + 25000);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, KeepsTheTrianglesOfALevelPartThatAnEarlierLayerReaches) {
    const auto model = MakeFilms({1.0f, 0.5f});
    const std::size_t level = CountTriangles(*model, 1920).first;
    std::fill(model->stack.layers[0]->top.begin(), model->stack.layers[0]->top.end(), 1.5f);
    EXPECT_GT(CountTriangles(*model, 1920).first, level + 35000);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Visible, KeepsTheTrianglesOfALevelPartWhereLayersOverItBeginAndEnd) {
    // A translucent layer in stripes too narrow for level parts between their edges.
    const auto makeStripes = [this](float bottomInside, float topOutside, float bottomOutside) {
        auto model = MakeFilms({1.0f, 0.5f});
        Layer& over = *model->stack.layers[1];
        over.alpha = 0.4f;
        for (std::size_t i = 0; i < over.top.size(); ++i) {
            const bool isInside = i % static_cast<std::size_t>(model->grid.columns) / 10 % 2 == 0;
            over.bottom[i] = isInside ? bottomInside : bottomOutside;
            over.top[i] = isInside ? 1.5f : topOutside;
        }
        return model;
    };
    const auto ends = makeStripes(1.3f, 1.3f, 1.3f);
    EXPECT_GT(CountTriangles(*ends, 1920).first, 35000u);
    ExpectSamePicture(*ends, 1920);
    const auto touches = makeStripes(1.0f, 1.5f, 1.3f);
    EXPECT_GT(CountTriangles(*touches, 1920).first, 45000u);
    ExpectSamePicture(*touches, 1920);
}

TEST_F(Visible, LeavesOutTrianglesBetweenThePixels) {
    const auto model = MakeFilms({1.0f});
    model->settings.showHeights = true;
    const std::size_t large = CountTriangles(*model, 1920).first;
    EXPECT_LT(CountTriangles(*model, 60).first, large / 3);
    ExpectSamePicture(*model, 60);
}

TEST_F(Visible, DrawsWholeMeshesWhereTheViewIsNoneOfTheWindow) {
    const auto model = MakeFilms({1.0f});
    Settle(*model);
    const Camera camera = CameraOf(*model, 1.0f);
    const auto chosen = [&](const Matrix4& transform) {
        const PictureView view{transform, 0, 0, 1920, 900, 8};
        return ChooseTriangles(model->stack, model->grid, view).has_value();
    };
    EXPECT_TRUE(chosen(camera.transform));
    EXPECT_FALSE(chosen(identity));
    EXPECT_FALSE(chosen({}));
    // The near plane cuts the stack.
    Matrix4 cut = camera.transform;
    cut[14] -= 40.0f;
    EXPECT_FALSE(chosen(cut));
}

TEST_F(Visible, DrawsWholeMeshesWhereAHeightIsNoNumber) {
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        const auto model = MakeFilms({1.0f, 0.5f});
        model->stack.layers[0]->top[60 * 120 + 60] = bad;
        Settle(*model);
        const Camera camera = CameraOf(*model, 1.5f);
        const PictureView view{camera.transform, 0, 0, 1920, 900, 8};
        EXPECT_FALSE(ChooseTriangles(model->stack, model->grid, view));
    }
}

}  // namespace
}  // namespace zelmo
