#include "process_run/common_steps.h"

#include <gtest/gtest.h>

#include <memory>

#include "model/process_model.h"
#include "tests/process_run/small_run.h"

namespace zelmo {
namespace {

TEST(CommonSteps, AreAllOfEqualRuns) {
    EXPECT_EQ(CommonSteps(*MakeRun(), *MakeRun()), 4u);
}

TEST(CommonSteps, EndAtTheFirstThatDiffers) {
    const auto now = MakeRun();
    now->steps[1].thickness = 0.25f;
    EXPECT_EQ(CommonSteps(*MakeRun(), *now), 1u);
}

TEST(CommonSteps, EndAtAStepThatIsInsertedOrGone) {
    const auto more = MakeRun();
    more->steps.insert(more->steps.begin() + 2, ProcessStep());
    EXPECT_EQ(CommonSteps(*MakeRun(), *more), 2u);
    const auto fewer = MakeRun();
    fewer->steps.pop_back();
    EXPECT_EQ(CommonSteps(*MakeRun(), *fewer), 3u);
}

TEST(CommonSteps, DoNotCareForTheLinesOfTheFile) {
    const auto now = MakeRun();
    for (ProcessStep& step : now->steps) {
        step.line += 5;
    }
    EXPECT_EQ(CommonSteps(*MakeRun(), *now), 4u);
}

TEST(CommonSteps, EndAtAPhotoWhoseMaskIsDrawnOtherwise) {
    const auto now = MakeRun();
    now->polygons[0].points[1].x = 2.0;
    EXPECT_EQ(CommonSteps(*MakeRun(), *now), 2u);
    now->polygons.erase(now->polygons.begin());
    EXPECT_EQ(CommonSteps(*MakeRun(), *now), 2u);
}

TEST(CommonSteps, DoNotCareForLayersThatNoMaskHas) {
    const auto now = MakeRun();
    now->polygons.pop_back();
    EXPECT_EQ(CommonSteps(*MakeRun(), *now), 4u);
}

TEST(CommonSteps, AreNoneOnAnotherGridOrWindow) {
    const auto finer = MakeRun();
    finer->grid.columns = 13;
    EXPECT_EQ(CommonSteps(*MakeRun(), *finer), 0u);
    const auto moved = MakeRun();
    moved->grid.originX = 1.0f;
    EXPECT_EQ(CommonSteps(*MakeRun(), *moved), 0u);
    const auto wider = MakeRun();
    wider->settings.windowWidth = 5.0f;
    EXPECT_EQ(CommonSteps(*MakeRun(), *wider), 0u);
}

TEST(SameView, IsOneOfTheSameCameraAndTexts) {
    EXPECT_TRUE(HaveSameView(*MakeRun(), *MakeRun()));
    const auto turned = MakeRun();
    turned->settings.cameraAngle = 10.0f;
    EXPECT_FALSE(HaveSameView(*MakeRun(), *turned));
    const auto marked = MakeRun();
    marked->settings.showHeights = true;
    EXPECT_FALSE(HaveSameView(*MakeRun(), *marked));
    const auto legend = MakeRun();
    legend->settings.showLegend = true;
    EXPECT_FALSE(HaveSameView(*MakeRun(), *legend));
}

}  // namespace
}  // namespace zelmo
