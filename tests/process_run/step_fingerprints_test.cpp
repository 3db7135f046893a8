#include "process_run/step_fingerprints.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "model/process_model.h"
#include "process_run/common_steps.h"
#include "tests/process_run/small_run.h"

namespace zelmo {
namespace {

/// How many of the first fingerprints are equal.
std::size_t CommonFingerprints(const ProcessModel& before, const ProcessModel& now) {
    const std::vector<Fingerprint> a = StepFingerprints(before);
    const std::vector<Fingerprint> b = StepFingerprints(now);
    std::size_t common = 0;
    while (common < a.size() && common < b.size() && a[common] == b[common]) {
        ++common;
    }
    for (std::size_t i = common; i < a.size() && i < b.size(); ++i) {
        EXPECT_NE(a[i], b[i]) << "behind the first that differs";
    }
    return common;
}

using Change = std::function<void(ProcessModel&)>;

/// Everything that a step has, each changed in the one with this index.
std::vector<Change> ChangesOfStep(std::size_t index) {
    using Edit = std::function<void(ProcessStep&)>;
    const std::vector<Edit> edits{
        [](ProcessStep& step) { step.maskDark = true; },
        [](ProcessStep& step) { step.kind = StepKind::Strip; },
        [](ProcessStep& step) { step.line += 7; },
        [](ProcessStep& step) { step.alpha = 0.5f; },
        [](ProcessStep& step) { step.color[2] = 0.5f; },
        [](ProcessStep& step) { step.depth = 0.5f; },
        [](ProcessStep& step) { step.dop = 0.5f; },
        [](ProcessStep& step) { step.iso = 0.5f; },
        [](ProcessStep& step) { step.resistRate = 0.5f; },
        [](ProcessStep& step) { step.res = 0.5f; },
        [](ProcessStep& step) { step.stepCoverage = 0.5f; },
        [](ProcessStep& step) { step.taper = 0.5f; },
        [](ProcessStep& step) { step.thickness = 0.5f; },
        [](ProcessStep& step) { step.level = -0.0f; },
        [](ProcessStep& step) { step.level = -1.0f; },
        [](ProcessStep& step) { step.polishesToStop = true; },
        [](ProcessStep& step) {
            step.mask = {{3, 0u}};
        },
        [](ProcessStep& step) {
            step.mask = {{3, std::nullopt}, {4, std::nullopt}};
        },
        [](ProcessStep& step) { step.adjustment.bias = 0.5f; },
        [](ProcessStep& step) { step.adjustment.shiftX = 0.5f; },
        [](ProcessStep& step) { step.adjustment.shiftY = 0.5f; },
        [](ProcessStep& step) { step.label = "a"; },
        [](ProcessStep& step) { step.photoName = "a"; },
        [](ProcessStep& step) { step.material = "a"; },
        [](ProcessStep& step) { step.materialType = "a"; },
        [](ProcessStep& step) { step.description = "a"; },
        [](ProcessStep& step) { step.processName = "a"; },
        [](ProcessStep& step) { step.result = "a"; },
        [](ProcessStep& step) { step.targets = {"a"}; },
        [](ProcessStep& step) {
            step.targets = {"", "a"};
        },
    };
    std::vector<Change> changes;
    for (const Edit& edit : edits) {
        changes.emplace_back([edit, index](ProcessModel& model) { edit(model.steps[index]); });
    }
    return changes;
}

std::vector<Change> ChangesOfTheRest() {
    return {
        [](ProcessModel& model) { model.grid.columns = 13; },
        [](ProcessModel& model) { model.grid.rows = 11; },
        [](ProcessModel& model) { model.grid.spacing = 0.5f; },
        [](ProcessModel& model) { model.grid.width = 0.5f; },
        [](ProcessModel& model) { model.grid.height = 0.5f; },
        [](ProcessModel& model) { model.grid.originX = 0.5f; },
        [](ProcessModel& model) { model.grid.originY = 0.5f; },
        [](ProcessModel& model) { model.grid.marginX = 0.5f; },
        [](ProcessModel& model) { model.grid.marginY = 0.5f; },
        [](ProcessModel& model) { model.settings.windowWidth = 5.0f; },
        [](ProcessModel& model) { model.settings.windowHeight = 5.0f; },
        [](ProcessModel& model) { model.settings.cameraAngle = 5.0f; },
        [](ProcessModel& model) { model.polygons[0].points[1].x = 2.0; },
        [](ProcessModel& model) { model.polygons[0].points.pop_back(); },
        [](ProcessModel& model) { model.polygons[0].maxY = 2.0; },
        [](ProcessModel& model) { model.polygons[0].datatype = 2; },
        [](ProcessModel& model) { model.polygons.push_back(model.polygons[0]); },
        [](ProcessModel& model) { model.polygons.pop_back(); },
        [](ProcessModel& model) { model.polygons[1].layer = 5; },
        [](ProcessModel& model) { model.polygons.clear(); },
        [](ProcessModel& model) { model.steps.pop_back(); },
        [](ProcessModel& model) { model.steps.insert(model.steps.begin() + 1, ProcessStep()); },
    };
}

TEST(StepFingerprints, AgreeAsFarAsCommonStepsTells) {
    std::vector<Change> changes = ChangesOfTheRest();
    for (const std::size_t index : {std::size_t{0}, std::size_t{2}, std::size_t{3}}) {
        const std::vector<Change> more = ChangesOfStep(index);
        changes.insert(changes.end(), more.begin(), more.end());
    }
    const auto before = MakeRun();
    EXPECT_EQ(CommonFingerprints(*before, *MakeRun()), 4u);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto now = MakeRun();
        changes[i](*now);
        EXPECT_EQ(CommonFingerprints(*before, *now), CommonSteps(*before, *now)) << "change " << i;
    }
}

TEST(StepFingerprints, TellOneWordFromTwo) {
    const auto one = MakeRun();
    one->steps[3].targets = {"ab"};
    const auto two = MakeRun();
    two->steps[3].targets = {"a", "b"};
    EXPECT_EQ(CommonFingerprints(*one, *two), 3u);
    one->steps[3].targets.clear();
    two->steps[3].targets.clear();
    one->steps[3].label = "a";
    two->steps[3].photoName = "a";
    EXPECT_EQ(CommonFingerprints(*one, *two), 3u);
}

}  // namespace
}  // namespace zelmo
