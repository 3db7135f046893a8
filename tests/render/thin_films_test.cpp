#include "render/thin_films.h"

#include <gtest/gtest.h>

#include "tests/render/made_stack.h"

namespace zelmo {
namespace {

constexpr float thick = 0.05f;  // 50 nm

/// Substrate, 3 nm of oxide and 200 nm on top.
std::unique_ptr<ProcessModel> MakeGate() {
    auto model = MakeEmptyModel(2.0f, 1.0f, 20);
    AddFilm(*model, 1.0f, {});
    AddFilm(*model, 0.003f, {});
    AddFilm(*model, 0.2f, {});
    SettleStack(model->stack, model->grid);
    return model;
}

float ThicknessAt(const Stack& stack, std::size_t slot, std::size_t cell) {
    return stack.layers[slot]->top[cell] - stack.layers[slot]->bottom[cell];
}

TEST(ThickenThinFilms, GivesAThinFilmTheThicknessAndLiftsWhatStandsOnIt) {
    const auto model = MakeGate();
    const std::optional<Stack> drawn = ThickenThinFilms(model->stack, thick);
    ASSERT_TRUE(drawn);
    for (std::size_t cell = 0; cell < model->grid.CellCount(); ++cell) {
        ASSERT_NEAR(ThicknessAt(*drawn, 1, cell), thick, 1e-6f);
        ASSERT_NEAR(ThicknessAt(*drawn, 2, cell), 0.2f, 1e-6f);
        ASSERT_EQ(drawn->layers[1]->bottom[cell], 1.0f);
        ASSERT_EQ(drawn->layers[2]->bottom[cell], drawn->layers[1]->top[cell]);
        ASSERT_EQ(drawn->coverMap[cell].height, drawn->layers[2]->top[cell]);
    }
    EXPECT_EQ(drawn->layerCount, 3);
}

TEST(ThickenThinFilms, LeavesTheModelAlone) {
    const auto model = MakeGate();
    const Stack before = CopyStack(model->stack);
    const std::optional<Stack> drawn = ThickenThinFilms(model->stack, thick);
    ASSERT_TRUE(drawn);
    for (std::size_t slot = 0; slot < 3; ++slot) {
        EXPECT_TRUE(model->stack.layers[slot]->top.SharesWith(before.layers[slot]->top));
        EXPECT_TRUE(model->stack.layers[slot]->bottom.SharesWith(before.layers[slot]->bottom));
        EXPECT_EQ(model->stack.layers[slot]->version, before.layers[slot]->version);
    }
    EXPECT_TRUE(model->stack.coverMap.SharesWith(before.coverMap));
    // What did not change is not copied, and what did is not taken for what it was.
    EXPECT_TRUE(drawn->layers[0]->top.SharesWith(before.layers[0]->top));
    EXPECT_EQ(drawn->layers[0]->version, before.layers[0]->version);
    EXPECT_NE(drawn->layers[2]->version, before.layers[2]->version);
}

TEST(ThickenThinFilms, DoesNothingWhereNothingIsThin) {
    EXPECT_FALSE(ThickenThinFilms(MakeGate()->stack, 0.002f));
    const auto model = MakeEmptyModel(2.0f, 1.0f, 20);
    EXPECT_FALSE(ThickenThinFilms(model->stack, thick));
}

TEST(ThickenThinFilms, LeavesOutWhatRoundingLeft) {
    const auto model = MakeEmptyModel(2.0f, 1.0f, 20);
    AddFilm(*model, 1.0f, {});
    AddFilm(*model, leastFilm * 0.5f, {});
    EXPECT_FALSE(ThickenThinFilms(model->stack, thick));
}

TEST(ThickenThinFilms, IsDoneAtEachCellByItself) {
    const auto model = MakeGate();
    Layer& film = *model->stack.layers[1];
    Layer& above = *model->stack.layers[2];
    MarkChanged(film);
    MarkChanged(above);
    film.top[7] = film.bottom[7];  // an opening, in which the layer above stands lower
    above.bottom[7] = film.top[7];
    film.top[8] = film.bottom[8] + 0.06f;  // thick enough
    above.bottom[8] = film.top[8];
    above.top[8] = above.bottom[8] + 0.2f;
    const std::optional<Stack> drawn = ThickenThinFilms(model->stack, thick);
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->layers[1]->top[7], film.top[7]);
    EXPECT_EQ(drawn->layers[2]->top[7], above.top[7]);
    EXPECT_EQ(drawn->layers[1]->top[8], film.top[8]);
    EXPECT_EQ(drawn->layers[2]->top[8], above.top[8]);
    EXPECT_NEAR(ThicknessAt(*drawn, 1, 9), thick, 1e-6f);
}

TEST(ThickenThinFilms, FindsFilmsThatStandInAnyOrderInTheStack) {
    // A doped region comes last in the stack and lies below what was there before.
    auto model = MakeEmptyModel(2.0f, 1.0f, 20);
    AddFilm(*model, 1.0f, {});
    AddFilm(*model, 0.2f, {});
    AppendLayer(model->stack, CreateLayer(model->grid));
    Layer& doped = *model->stack.layers[2];
    Layer& substrate = *model->stack.layers[0];
    for (std::size_t cell = 0; cell < model->grid.CellCount(); ++cell) {
        doped.top[cell] = 1.0f;
        doped.bottom[cell] = 0.99f;
        substrate.top[cell] = 0.99f;
    }
    const std::optional<Stack> drawn = ThickenThinFilms(model->stack, thick);
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->layers[0]->top[5], 0.99f);
    EXPECT_NEAR(ThicknessAt(*drawn, 2, 5), thick, 1e-6f);
    EXPECT_EQ(drawn->layers[1]->bottom[5], drawn->layers[2]->top[5]);
    EXPECT_NEAR(ThicknessAt(*drawn, 1, 5), 0.2f, 1e-6f);
}

}  // namespace
}  // namespace zelmo
