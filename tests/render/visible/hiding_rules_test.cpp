// Each rule by itself: what it leaves out, and what it has to keep.
#include <algorithm>
#include <cstddef>
#include <utility>

#include "tests/render/visible/visible_fixture.h"

namespace zelmo {
namespace {

HidingRules Only(bool HidingRules::*rule) {
    HidingRules rules = noRule;
    rules.*rule = true;
    return rules;
}

class Standing : public VisibleTest {
protected:
    Standing() : VisibleTest(Only(&HidingRules::standing)) {}
};

TEST_F(Standing, LeavesOutALowerSheetThatLiesOnAnEarlierUpperOne) {
    const auto model = MakeFilms({1.0f, 0.5f});
    EXPECT_EQ(CountDrawn(*model, 1920), CountAll(*model) - sheetTriangles);
    ExpectSamePicture(*model, 1920);
    // However thin the layer, and whatever shows through.
    const auto thin = MakeFilms({1.0f, 1e-6f});
    thin->stack.layers[1]->alpha = 0.5f;
    EXPECT_EQ(CountDrawn(*thin, 1920), CountAll(*thin) - sheetTriangles);
    ExpectSamePicture(*thin, 1920);
}

TEST_F(Standing, KeepsALowerSheetOverAGap) {
    const auto model = MakeFilms({1.0f, 0.5f});
    for (float& bottom : model->stack.layers[1]->bottom) {
        bottom += 1e-6f;
    }
    EXPECT_EQ(CountDrawn(*model, 1920), CountAll(*model));
    ExpectSamePicture(*model, 1920);
}

TEST_F(Standing, KeepsTheTrianglesAtTheEdgeOfWhatTheLayerStandsOn) {
    // The middle film ends within the window: the last one lies on two layers.
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f});
    Layer& middle = *model->stack.layers[1];
    Layer& last = *model->stack.layers[2];
    for (std::size_t i = middle.top.size() / 2; i < middle.top.size(); ++i) {
        middle.top[i] = last.bottom[i] = 1.0f;
    }
    const std::size_t all = CountAll(*model);
    const std::size_t drawn = CountDrawn(*model, 1920);
    EXPECT_LT(drawn, all - sheetTriangles);
    EXPECT_GT(drawn, all - sheetTriangles * 3 / 2);
    ExpectSamePicture(*model, 1920);
}

class Buried : public VisibleTest {
protected:
    Buried() : VisibleTest(Only(&HidingRules::buried)) {}
};

TEST_F(Buried, LeavesOutWhatLiesInsideAStackOfFilms) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f, 0.5f});
    const std::size_t all = CountAll(*model);
    EXPECT_EQ(all, 4 * (2 * sheetTriangles + 2 * filmSquares));
    // One sheet of eight, the walls, and the squares at the front of the others.
    EXPECT_LT(CountDrawn(*model, 1920), all / 6);
    EXPECT_GT(CountDrawn(*model, 1920), sheetTriangles);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Buried, KeepsWhatLiesUnderAFilmThinnerThanTheDepthBufferTells) {
    const auto thick = MakeFilms({1.0f, 1e-2f});
    const auto thin = MakeFilms({1.0f, 1e-6f});
    EXPECT_GT(CountDrawn(*thin, 1920), CountDrawn(*thick, 1920) + 15000);
    ExpectSamePicture(*thin, 1920);
}

TEST_F(Buried, KeepsWhatIsSeenThroughATranslucentLayer) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f});
    const std::size_t opaque = CountDrawn(*model, 1920);
    model->stack.layers[2]->alpha = 0.5f;
    EXPECT_GT(CountDrawn(*model, 1920), opaque + 15000);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Buried, KeepsWhatIsSeenUnderARoofThroughATranslucentHillBeforeIt) {
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

class Shadowed : public VisibleTest {
protected:
    Shadowed() : VisibleTest(Only(&HidingRules::shadowed)) {}
};

TEST_F(Shadowed, LeavesOutWhatAnOpaqueLayerHidesUnderATranslucentOne) {
    const auto model = MakeFilms({1.0f, 0.5f, 0.5f});
    EXPECT_EQ(CountDrawn(*model, 1920), CountAll(*model)) << "nothing shows through";
    model->stack.layers[1]->alpha = 0.5f;
    EXPECT_LT(CountDrawn(*model, 1920), CountAll(*model) - sheetTriangles);
    ExpectSamePicture(*model, 1920);
}

TEST_F(Shadowed, LeavesOutWhatAHighOpaqueLayerHidesBehindIt) {
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
    EXPECT_LT(CountDrawn(*high, 1920) + hidden, CountDrawn(*low, 1920));
    ExpectSamePicture(*low, 1920);
    ExpectSamePicture(*high, 1920);
    ExpectSamePicture(*high, 333);
}

TEST_F(Shadowed, KeepsWhatIsSeenUnderARoofThroughATranslucentHillBeforeIt) {
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

class BetweenPixels : public VisibleTest {
protected:
    BetweenPixels() : VisibleTest(Only(&HidingRules::betweenPixels)) {}
};

TEST_F(BetweenPixels, LeavesOutTrianglesThatCoverNoPixelsCentre) {
    const auto model = MakeFilms({1.0f});
    const std::size_t large = CountDrawn(*model, 1920);
    EXPECT_GT(large, sheetTriangles);
    EXPECT_LT(CountDrawn(*model, 60), large / 3);
    ExpectSamePicture(*model, 60);
    ExpectSamePicture(*model, 333);
}

}  // namespace
}  // namespace zelmo
