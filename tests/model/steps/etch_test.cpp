#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/cover_map.h"
#include "model/offset/surface_offset.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

ProcessStep EtchStep(std::vector<std::string> targets, float depth, float iso = 0.0f) {
    ProcessStep step;
    step.kind = StepKind::Etch;
    step.targets = std::move(targets);
    step.depth = depth;
    step.iso = iso;
    return step;
}

/// A stack of flat layers on a grid of 6 by 5: a substrate of 10 micrometres, and what is appended.
class Etch : public testing::Test {
protected:
    void SetUp() override {
        SetUpGrid(model, 6, 5, 1.0f);
        Append(10.0f, "_SUB_");
    }

    Layer& Append(float thickness, const std::string& material) {
        Layer& layer = AppendFlatLayer(model, surface, thickness, material);
        surface += thickness;
        UpdateCoverMap(model.stack, model.grid);
        return layer;
    }

    Layer& AppendResist(float thickness) {
        Layer& layer = Append(thickness, "PR");
        layer.isPhotoresist = true;
        return layer;
    }

    void Run(const ProcessStep& step) { ExecuteEtch(model.stack, model.grid, step); }

    /// The layer's top, expected to be the same everywhere.
    float TopOf(std::size_t id) const {
        const Layer& layer = *model.stack.layers[id];
        for (const float top : layer.top) {
            EXPECT_EQ(top, layer.top[0]);
        }
        return layer.top[0];
    }

    ProcessModel model;
    float surface = 0.0f;
};

TEST_F(Etch, LowersTheTargetByTheDepth) {
    Append(4.0f, "ox");
    Run(EtchStep({"ox"}, 1.5f));
    EXPECT_EQ(TopOf(1), 12.5f);
    EXPECT_EQ(model.stack.coverMap[7].layerId, 1);
    EXPECT_EQ(model.stack.coverMap[7].height, 12.5f);
}

TEST_F(Etch, OnOpenGroundSetsTheTopToTheFront) {
    Layer& oxide = Append(4.0f, "ox");
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        oxide.top[cell] += static_cast<float>(cell % 7) * 0.1f;
    }
    UpdateCoverMap(model.stack, model.grid);
    const std::vector<float> before(oxide.top.begin(), oxide.top.end());
    std::vector<float> front(model.grid.CellCount());
    OffsetSurface(model.grid, front, before, -1.0f, 0.0f);
    Run(EtchStep({"ox"}, 1.0f));
    EXPECT_EQ(BitsOf(oxide.top), BitsOf(front));
    for (std::size_t cell = 0; cell < before.size(); ++cell) {
        EXPECT_NEAR(oxide.top[cell], before[cell] - 1.0f, 1e-5f);
    }
}

TEST_F(Etch, EatsIntoAWallByTheIsotropy) {
    ProcessModel fine;
    SetUpGrid(fine, 60, 7, 0.1f);
    AppendFlatLayer(fine, 0.0f, 5.0f, "_SUB_");
    Layer& oxide = AppendFlatLayer(fine, 5.0f, 1.0f, "ox");
    for (std::size_t cell = 0; cell < fine.grid.CellCount(); ++cell) {
        if (cell % 60 < 30) {
            oxide.top[cell] = 25.0f;
        }
    }
    UpdateCoverMap(fine.stack, fine.grid);
    const auto cellsAbove = [&] {
        int count = 0;
        for (std::int32_t col = 0; col < 60; ++col) {
            count += oxide.top[CellAt(fine, col, 3)] > 15.0f ? 1 : 0;
        }
        return count;
    };
    ASSERT_EQ(cellsAbove(), 30);
    ExecuteEtch(fine.stack, fine.grid, EtchStep({"ox"}, 1.0f, 0.8f));
    EXPECT_NEAR(cellsAbove(), 22, 1);
}

TEST_F(Etch, GoesOnIntoTheNextEtchableLayer) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    Append(1.0f, "ox");
    Run(EtchStep({"nit", "ox"}, 2.5f));
    EXPECT_EQ(TopOf(3), 13.0f);
    EXPECT_EQ(TopOf(2), 12.0f);
    EXPECT_EQ(TopOf(1), 11.5f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 1);
}

TEST_F(Etch, StopsAtTheFirstLayerThatStands) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    Append(1.0f, "ox");
    Run(EtchStep({"ox"}, 3.5f));
    EXPECT_EQ(TopOf(3), 13.0f);
    EXPECT_EQ(TopOf(2), 13.0f);
    EXPECT_EQ(TopOf(1), 12.0f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 2);
}

TEST_F(Etch, DoesNotReachATargetUnderAnotherMaterial) {
    Append(2.0f, "ox");
    Layer& nitride = Append(1.0f, "nit");
    // Open in one cell.
    nitride.top[8] = nitride.bottom[8];
    UpdateCoverMap(model.stack, model.grid);
    Run(EtchStep({"ox"}, 1.0f));
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        EXPECT_EQ(nitride.top[cell], cell == 8 ? 12.0f : 13.0f);
        EXPECT_EQ(model.stack.layers[1]->top[cell], cell == 8 ? 11.0f : 12.0f);
    }
}

TEST_F(Etch, NeverReachesTheSubstrate) {
    Append(1.0f, "ox");
    Run(EtchStep({"ox", "_SUB_"}, 5.0f));
    EXPECT_EQ(TopOf(1), 10.0f);
    EXPECT_EQ(TopOf(0), 10.0f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 0);
    // A column in which only the substrate remains is left as it is.
    Run(EtchStep({"ox", "_SUB_"}, 5.0f));
    EXPECT_EQ(TopOf(1), 10.0f);
    EXPECT_EQ(TopOf(0), 10.0f);
}

TEST_F(Etch, NeverLowersATopUnderItsBottom) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    for (const float depth : {0.5f, 1.0f, 3.0f, 1000.0f}) {
        Run(EtchStep({"ox", "nit"}, depth));
        for (const auto& layer : model.stack.layers) {
            for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
                EXPECT_GE(layer->top[cell], layer->bottom[cell]);
            }
        }
    }
}

TEST_F(Etch, ThatEndsExactlyAtABottomDoesNotGoOn) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    Run(EtchStep({"ox", "nit"}, 1.0f));
    EXPECT_EQ(TopOf(2), 12.0f);
    EXPECT_EQ(TopOf(1), 12.0f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 1);
}

TEST_F(Etch, ThatEndsExactlyAtABottomIsFinishedThere) {
    // What lies under the film reaches above the front, but the front ended inside the film.
    Append(5.0f, "ox");
    Layer& film = Append(1.0f, "ox");
    film.bottom.assign(model.grid.CellCount(), 13.0f);
    UpdateCoverMap(model.stack, model.grid);
    Run(EtchStep({"ox"}, 3.0f));
    EXPECT_EQ(TopOf(2), 13.0f);
    EXPECT_EQ(TopOf(1), 15.0f);
}

TEST_F(Etch, LowersResistAsMuchAsTheTarget) {
    Append(2.0f, "ox");
    AppendResist(3.0f);
    Run(EtchStep({"ox"}, 1.0f));
    EXPECT_EQ(TopOf(2), 14.0f);
    EXPECT_EQ(TopOf(1), 12.0f);
}

TEST_F(Etch, GoesThroughThinResistIntoWhatLiesBeneath) {
    Append(2.0f, "ox");
    AppendResist(1.0f);
    Run(EtchStep({"ox"}, 1.5f));
    EXPECT_EQ(TopOf(2), 12.0f);
    EXPECT_EQ(TopOf(1), 11.5f);
}

TEST_F(Etch, ThroughThinResistStopsAtWhatIsNoTarget) {
    Append(2.0f, "ox");
    AppendResist(1.0f);
    Run(EtchStep({"nit"}, 1.5f));
    EXPECT_EQ(TopOf(2), 12.0f);
    EXPECT_EQ(TopOf(1), 12.0f);
}

TEST_F(Etch, OfATargetThatIsNotThereStillLowersResist) {
    Append(2.0f, "ox");
    AppendResist(3.0f);
    Run(EtchStep({"absent"}, 1.0f));
    EXPECT_EQ(TopOf(2), 14.0f);
}

TEST_F(Etch, WithoutTargetsLeavesResist) {
    Append(2.0f, "ox");
    Layer& resist = AppendResist(3.0f);
    resist.changed = false;
    Run(EtchStep({}, 1.0f));
    EXPECT_EQ(TopOf(2), 15.0f);
    EXPECT_FALSE(resist.changed);
}

/// An etch that takes resist more slowly.
ProcessStep SlowInResist(float depth, float rate, float iso = 0.0f) {
    ProcessStep step = EtchStep({"ox"}, depth, iso);
    step.resistRate = rate;
    return step;
}

class EtchOfSlowResist : public Etch {
protected:
    /// The tops of the resist, which was on an oxide that ends at 14, and of that oxide.
    std::array<float, 2> TopsAfter(float resistThickness, const ProcessStep& step) {
        Append(4.0f, "ox");
        AppendResist(resistThickness);
        Run(step);
        return {TopOf(2), TopOf(1)};
    }

    using Tops = std::array<float, 2>;
};

TEST_F(EtchOfSlowResist, LowersItByItsShareOfTheDepth) {
    EXPECT_EQ(TopsAfter(3.0f, SlowInResist(2.0f, 0.25f)), (Tops{16.5f, 14.0f}));
}

TEST_F(EtchOfSlowResist, LeavesItAsItIsAtRateZero) {
    EXPECT_EQ(TopsAfter(0.5f, SlowInResist(100.0f, 0.0f)), (Tops{14.5f, 14.0f}));
}

TEST_F(EtchOfSlowResist, IsTheSameAsWithoutARateAtRateOne) {
    EXPECT_EQ(TopsAfter(1.0f, SlowInResist(2.0f, 1.0f)), (Tops{14.0f, 13.0f}));
}

TEST_F(EtchOfSlowResist, GoesOnToItsDepthWhereItTakesAllOfIt) {
    EXPECT_EQ(TopsAfter(0.5f, SlowInResist(2.0f, 0.5f)), (Tops{14.0f, 12.5f}));
}

TEST_F(EtchOfSlowResist, IsFinishedWhereItEndsExactlyUnderIt) {
    EXPECT_EQ(TopsAfter(0.5f, SlowInResist(2.0f, 0.25f)), (Tops{14.0f, 14.0f}));
}

TEST_F(Etch, WithSlowResistLowersOpenTargetsByTheWholeDepth) {
    Append(4.0f, "ox");
    Layer& resist = AppendResist(1.0f);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); cell += 2) {
        resist.top[cell] = resist.bottom[cell];
    }
    UpdateCoverMap(model.stack, model.grid);
    Run(SlowInResist(3.0f, 0.125f));
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        const bool isOpen = cell % 2 == 0;
        EXPECT_EQ(model.stack.layers[1]->top[cell], isOpen ? 11.0f : 14.0f);
        EXPECT_EQ(resist.top[cell], isOpen ? 14.0f : 14.625f);
    }
}

TEST_F(Etch, EatsIntoSlowResistFromItsSidesByTheShareOfItsDepth) {
    SetUpGrid(model, 40, 5, 0.25f);
    model.stack.layers.clear();
    surface = 0.0f;
    Append(1.0f, "_SUB_");
    Append(1.0f, "ox");
    Layer& resist = AppendResist(2.0f);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        resist.top[cell] = cell % 40 < 20 ? resist.bottom[cell] : resist.top[cell];
    }
    UpdateCoverMap(model.stack, model.grid);
    std::vector<float> before;
    for (const CoverCell& cell : model.stack.coverMap) {
        before.push_back(cell.height);
    }
    std::vector<float> front(before.size());
    OffsetSurface(model.grid, front, before, -0.5f, 1.0f);
    Run(SlowInResist(1.0f, 0.5f, 1.0f));
    for (std::size_t cell = 0; cell < front.size(); ++cell) {
        if (resist.top[cell] != resist.bottom[cell]) {
            EXPECT_EQ(resist.top[cell], front[cell]);
        }
    }
    EXPECT_EQ(resist.top[25], 3.5f);
}

TEST_F(Etch, ComparesWholeNames) {
    Append(2.0f, "ox");
    Run(EtchStep({"o", "oxide", "OX", "ox "}, 1.0f));
    EXPECT_EQ(TopOf(1), 12.0f);
    // A zero byte ends a name.
    Run(EtchStep({std::string("ox\0ide", 6)}, 1.0f));
    EXPECT_EQ(TopOf(1), 11.0f);
}

TEST_F(Etch, SkipsEmptySlotsAndEmptyLayers) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    Append(0.0f, "metal");
    model.stack.layers.push_back(nullptr);
    model.stack.layers[2].reset();
    UpdateCoverMap(model.stack, model.grid);
    // Under the empty metal and the empty slot the oxide is open.
    Run(EtchStep({"ox"}, 0.5f));
    EXPECT_EQ(TopOf(1), 11.5f);
}

TEST_F(Etch, LeavesALayerWhoseTopLiesUnderTheFront) {
    // The cover map tells of a surface far above.
    Append(2.0f, "ox");
    for (CoverCell& cell : model.stack.coverMap) {
        cell.height = 20.0f;
    }
    Run(EtchStep({"ox"}, 1.0f));
    EXPECT_EQ(TopOf(1), 12.0f);
}

TEST_F(Etch, PassesALayerUnderTheFrontByOnItsWayDown) {
    // A layer hangs below the front while the one under it, at this cell, reaches above.
    Append(5.0f, "ox");
    Layer& film = Append(1.0f, "ox");
    film.bottom.assign(model.grid.CellCount(), 11.0f);
    film.top.assign(model.grid.CellCount(), 12.0f);
    for (CoverCell& cell : model.stack.coverMap) {
        cell.height = 15.0f;
    }
    Run(EtchStep({"ox"}, 1.0f));
    EXPECT_EQ(TopOf(2), 12.0f);
    EXPECT_EQ(TopOf(1), 14.0f);
}

TEST_F(Etch, TreatsATopThatIsNoNumberAsOneUnderTheFront) {
    Append(2.0f, "ox");
    Layer& film = Append(1.0f, "ox");
    film.top[14] = nan;
    for (CoverCell& cell : model.stack.coverMap) {
        cell.height = 13.0f;
    }
    Run(EtchStep({"ox"}, 1.5f));
    EXPECT_TRUE(film.top[14] != film.top[14]);
    EXPECT_EQ(model.stack.layers[1]->top[14], 11.5f);
    EXPECT_EQ(film.top[13], 12.0f);
}

TEST_F(Etch, MarksTargetsAndResistForANewMesh) {
    Append(2.0f, "ox");
    Append(1.0f, "nit");
    AppendResist(1.0f);
    for (const auto& layer : model.stack.layers) {
        layer->changed = false;
    }
    // Nothing of the oxide changes under the nitride; its mesh is made again all the same.
    Run(EtchStep({"ox"}, 0.25f));
    EXPECT_FALSE(model.stack.layers[0]->changed);
    EXPECT_TRUE(model.stack.layers[1]->changed);
    EXPECT_FALSE(model.stack.layers[2]->changed);
    EXPECT_TRUE(model.stack.layers[3]->changed);
}

TEST_F(Etch, KeepsTheSlotOfALayerThatItHasEmptied) {
    Append(2.0f, "ox");
    Run(EtchStep({"ox"}, 3.0f));
    ASSERT_EQ(model.stack.layers.size(), 2U);
    ASSERT_NE(model.stack.layers[1], nullptr);
    EXPECT_EQ(model.stack.layers[1]->top, model.stack.layers[1]->bottom);
}

TEST_F(Etch, OfDepthZeroChangesNothing) {
    Append(2.0f, "ox");
    Run(EtchStep({"ox"}, 0.0f));
    EXPECT_EQ(TopOf(1), 12.0f);
}

class Release : public Etch {
protected:
    static ProcessStep ReleaseStep(std::vector<std::string> targets) {
        ProcessStep step;
        step.kind = StepKind::Release;
        step.targets = std::move(targets);
        return step;
    }
};

TEST_F(Release, EmptiesAllLayersOfAMaterial) {
    Append(2.0f, "sac");
    Append(1.0f, "poly");
    Append(2.0f, "sac");
    for (const auto& layer : model.stack.layers) {
        layer->changed = false;
    }
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"sac"}));
    EXPECT_EQ(TopOf(1), 10.0f);
    EXPECT_EQ(TopOf(2), 13.0f);
    EXPECT_EQ(TopOf(3), 13.0f);
    EXPECT_TRUE(model.stack.layers[1]->changed);
    EXPECT_FALSE(model.stack.layers[2]->changed);
    EXPECT_TRUE(model.stack.layers[3]->changed);
}

TEST_F(Release, LeavesWhatLaysOnItHanging) {
    Append(2.0f, "sac");
    Append(1.0f, "poly");
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"sac"}));
    EXPECT_EQ(model.stack.layers[2]->bottom, std::vector<float>(model.grid.CellCount(), 12.0f));
    EXPECT_EQ(TopOf(2), 13.0f);
    for (const CoverCell& cell : model.stack.coverMap) {
        EXPECT_EQ(cell.layerId, 2);
        EXPECT_EQ(cell.height, 13.0f);
    }
}

TEST_F(Release, OfTheTopmostLayerBaresTheNext) {
    Append(2.0f, "poly");
    Append(1.0f, "sac");
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"sac"}));
    for (const CoverCell& cell : model.stack.coverMap) {
        EXPECT_EQ(cell.layerId, 1);
        EXPECT_EQ(cell.height, 12.0f);
    }
}

TEST_F(Release, TakesSeveralMaterialsAndIgnoresAbsentOnes) {
    Append(2.0f, "a");
    Append(2.0f, "b");
    Append(2.0f, "c");
    model.stack.layers[2].reset();
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"c", "absent", "a", "b"}));
    EXPECT_EQ(TopOf(1), 10.0f);
    EXPECT_EQ(TopOf(3), 14.0f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 0);
}

TEST_F(Release, DoesNotTakeResistUnlessItIsNamed) {
    AppendResist(1.0f);
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"ox"}));
    EXPECT_EQ(TopOf(1), 11.0f);
    ExecuteRelease(model.stack, model.grid, ReleaseStep({"PR"}));
    EXPECT_EQ(TopOf(1), 10.0f);
}

TEST_F(Release, WithoutTargetsUpdatesTheCoverMapAlone) {
    Append(2.0f, "ox");
    model.stack.layers[1]->changed = false;
    model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{});
    ExecuteRelease(model.stack, model.grid, ReleaseStep({}));
    EXPECT_EQ(TopOf(1), 12.0f);
    EXPECT_FALSE(model.stack.layers[1]->changed);
    EXPECT_EQ(model.stack.coverMap[3].layerId, 1);
    EXPECT_EQ(model.stack.coverMap[3].height, 12.0f);
}

}  // namespace
}  // namespace zelmo
