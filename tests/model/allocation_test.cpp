// Steps when memory runs out: the allocations of a step are made to fail one after the other.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <set>
#include <vector>

#include "model/cover_map.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"

namespace {

/// How many more allocations succeed; below zero there is no limit.
long long allocationsLeft = -1;

void* Allocate(std::size_t size) {
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0) {
        --allocationsLeft;
    }
    if (void* memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace zelmo {
namespace {

/// Counts the layers that have GL objects.
class CountingGraphics : public LayerGraphics {
public:
    void CreateLayerObjects(Layer&) override { ++alive; }
    void UploadLayerMesh(const Layer&, std::span<const MeshVertex>,
                         std::span<const std::uint32_t>) override {}
    void DestroyLayerObjects(Layer&) noexcept override { --alive; }
    void CreateMarkerObjects(HeightMarkers&) override {}
    void UploadMarkers(const HeightMarkers&) override {}
    void DestroyMarkerObjects(HeightMarkers&) noexcept override {}

    int alive = 0;
};

void SetUpStack(ProcessModel& model, CountingGraphics& graphics) {
    model.graphics = &graphics;
    SetUpGrid(model, 9, 7, 0.5f);
    AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    Layer& oxide = AppendFlatLayer(model, 1.0f, 1.0f, "ox");
    for (std::size_t cell = 0; cell < 30; ++cell) {
        oxide.top[cell] = 1.25f;
    }
    MaskPolygon polygon;
    polygon.layer = 1;
    polygon.maxX = 2.0;
    polygon.maxY = 2.0;
    polygon.points = {{0.0, 0.0}, {2.0, 0.0}, {2.0, 2.0}};
    model.polygons.push_back(polygon);
    UpdateCoverMap(model);
    model.stack.layers.shrink_to_fit();
}

ProcessStep MakeStep() {
    ProcessStep step;
    step.thickness = 0.5f;
    step.stepCoverage = 0.5f;
    step.depth = 0.5f;
    step.iso = 0.5f;
    step.res = 1.0f;
    step.taper = 60.0f;
    step.maskId = 1;
    step.maskDark = true;
    step.material = "a material with a name that does not fit into the string itself";
    step.targets = {"ox"};
    return step;
}

/// Runs the step with fewer allocations than it needs, from none on, until it succeeds. After each
/// failure the model is what it was, and no layer has been left behind.
void ExpectAllOrNothing(void (*execute)(ProcessModel&, const ProcessStep&), int layersAdded) {
    CountingGraphics graphics;
    const ProcessStep step = MakeStep();
    int failures = 0;
    for (long long allocations = 0;; ++allocations) {
        ProcessModel model;
        SetUpStack(model, graphics);
        const std::vector<float> oxide = model.stack.layers[1]->top;
        const std::vector<std::uint32_t> cover = BitsOf(model.stack.coverMap);
        bool failed = false;
        allocationsLeft = allocations;
        try {
            execute(model, step);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocationsLeft = -1;
        if (!failed) {
            EXPECT_EQ(model.stack.layers.size(), static_cast<std::size_t>(2 + layersAdded));
            EXPECT_NE(BitsOf(model.stack.coverMap), cover);
            break;
        }
        ++failures;
        ASSERT_LT(failures, 1000);
        ASSERT_EQ(model.stack.layers.size(), 2U) << allocations;
        ASSERT_EQ(graphics.alive, 2) << allocations;
        ASSERT_EQ(model.stack.layers[1]->top, oxide) << allocations;
        ASSERT_EQ(BitsOf(model.stack.coverMap), cover) << allocations;
    }
    EXPECT_EQ(graphics.alive, 0);
    EXPECT_GT(failures, 3);
}

TEST(ExhaustedMemory, LeavesTheModelAsItWasBeforeADeposition) {
    ExpectAllOrNothing(ExecuteDeposition, 1);
}

TEST(ExhaustedMemory, LeavesTheModelAsItWasBeforeAPhotoStep) {
    ExpectAllOrNothing(ExecutePhoto, 1);
}

TEST(ExhaustedMemory, LeavesTheModelAsItWasBeforeACoating) {
    ExpectAllOrNothing(ExecuteCoating, 1);
}

TEST(ExhaustedMemory, LeavesTheModelAsItWasBeforeAnEtch) {
    ExpectAllOrNothing(ExecuteEtch, 0);
}

}  // namespace
}  // namespace zelmo
