#include "render/visible/visible_triangles.h"

#include <cstdint>
#include <limits>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "tests/render/visible/random_stacks.h"
#include "tests/render/visible/visible_fixture.h"
#include "tests/support/case_count.h"

// A frame that leaves out what cannot be seen is to have the bytes of one that draws everything.

namespace zelmo {
namespace {

class VisibleTriangles : public VisibleTest {};

TEST_F(VisibleTriangles, GiveThePictureOfWholeMeshesOnRandomStacks) {
    const std::uint32_t cases = CaseCount(250);
    for (std::uint32_t i = 0; i < cases && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        StackMaker maker(i);
        AllowWideLanes(i % 2 == 0);
        SetRowThreads(1 + static_cast<std::int32_t>(i % 3));
        const auto model = maker.Make();
        ExpectSamePicture(*model, maker.Chance(0.2f) ? 1920 : maker.Whole(40, 700));
    }
    AllowWideLanes(true);
    SetRowThreads(0);
}

TEST_F(VisibleTriangles, GiveThePictureOfWholeMeshesBySomeOfTheRules) {
    const std::uint32_t cases = CaseCount(100);
    for (std::uint32_t i = 0; i < cases && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        StackMaker maker(i + 1000);
        const auto model = maker.Make();
        const HidingRules rules{maker.Chance(0.5f), maker.Chance(0.5f), maker.Chance(0.5f),
                                maker.Chance(0.5f)};
        ExpectSamePicture(*model, maker.Whole(40, 700), rules);
    }
}

TEST_F(VisibleTriangles, AreNotChosenWhereTheViewIsNoneOfTheWindow) {
    const auto model = MakeFilms({1.0f});
    const Camera camera = Prepare(*model);
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

TEST_F(VisibleTriangles, AreNotChosenWhereAHeightIsNoNumber) {
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        const auto model = MakeFilms({1.0f, 0.5f});
        model->stack.layers[0]->top[60 * 120 + 60] = bad;
        const Camera camera = Prepare(*model);
        const PictureView view{camera.transform, 0, 0, 1920, 900, 8};
        EXPECT_FALSE(ChooseTriangles(model->stack, model->grid, view));
    }
}

TEST_F(VisibleTriangles, AreNotChosenWhereALayerIsOfAnotherGrid) {
    const auto model = MakeFilms({1.0f, 0.5f});
    const Camera camera = Prepare(*model);
    const PictureView view{camera.transform, 0, 0, 1920, 900, 8};
    EXPECT_TRUE(ChooseTriangles(model->stack, model->grid, view));
    model->stack.layers[1]->spacing *= 2.0f;
    EXPECT_FALSE(ChooseTriangles(model->stack, model->grid, view));
}

}  // namespace
}  // namespace zelmo
