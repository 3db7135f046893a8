// The reference processes on the layouts that the build puts beside them, in examples/processes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "model/mask/mask.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/prepare_run.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

const std::filesystem::path kProcessFolder = std::filesystem::path("examples") / "processes";

/// A height that is meant to be the same, in um: 0.01 nm.
constexpr float kSame = 1e-5f;

/// A process that is ready to run, with so many columns.
std::unique_ptr<ProcessModel> PrepareProcess(const std::string& process, const std::string& columns,
                                             const ViewChoice& view = {}) {
    ColorTable colors;
    EXPECT_TRUE(LoadColorTable(colors, "colors.txt"));
    RecordingConsole console;
    GdsDatabase database;
    EXPECT_EQ(ReadGdsFile(database, kProcessFolder / (process + ".gds"), &console), std::nullopt);
    std::string text = FileBytes(kProcessFolder / (process + ".txt"));
    const std::size_t at = text.find("-N 500");
    EXPECT_NE(at, std::string::npos);
    text.replace(at, 6, "-N " + columns);
    const TempFolder folder;
    PreparedRun run =
        PrepareRun(folder.Write("process.txt", text), database, colors, &console, view);
    EXPECT_EQ(run.errors, std::vector<std::string>{});
    return std::move(run.model);
}

void Execute(ProcessModel& model, const std::function<void(const ProcessStep&)>& then) {
    RecordingConsole console;
    for (const ProcessStep& step : model.steps) {
        ExecuteStep(model, step, &console);
        SettleStack(model.stack, model.grid);
        then(step);
    }
    for (const std::string& line : console.lines) {
        EXPECT_EQ(line.find("Note"), std::string::npos) << line;
    }
}

std::unique_ptr<ProcessModel> RunToEnd(const std::string& process) {
    std::unique_ptr<ProcessModel> model = PrepareProcess(process, "240");
    Execute(*model, [](const ProcessStep&) {});
    return model;
}

const Layer* FindLayer(const ProcessModel& model, const std::string& material) {
    for (const auto& layer : model.stack.layers) {
        if (layer && layer->material == material) {
            return layer.get();
        }
    }
    return nullptr;
}

/// The cells of the window, without the grid's margin.
std::vector<std::size_t> WindowCells(const Grid& grid) {
    const std::int32_t marginCols = grid.columns / 10;
    const std::int32_t marginRows = grid.rows / 10;
    std::vector<std::size_t> cells;
    for (std::int32_t row = marginRows; row < grid.rows - marginRows; ++row) {
        for (std::int32_t col = marginCols; col < grid.columns - marginCols; ++col) {
            cells.push_back(static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                            static_cast<std::size_t>(col));
        }
    }
    return cells;
}

/// The cell at a point of the layout, in um.
std::size_t CellAt(const Grid& grid, float x, float y) {
    const auto column = static_cast<std::size_t>((x - grid.originX) / grid.spacing + 0.5f);
    const auto row = static_cast<std::size_t>((y - grid.originY) / grid.spacing + 0.5f);
    return row * static_cast<std::size_t>(grid.columns) + column;
}

/// The lowest bottom and the highest top of a material in the window, from the substrate up.
struct Extent {
    float bottom = std::numeric_limits<float>::max();
    float top = std::numeric_limits<float>::lowest();
};

Extent ExtentOf(const ProcessModel& model, const std::string& material) {
    Extent extent;
    const Layer* const layer = FindLayer(model, material);
    if (layer == nullptr) {
        ADD_FAILURE() << "no layer " << material;
        return extent;
    }
    for (const std::size_t cell : WindowCells(model.grid)) {
        if (layer->top[cell] > layer->bottom[cell]) {
            extent.bottom =
                std::min(extent.bottom, layer->bottom[cell] - model.stack.substrateThickness);
            extent.top = std::max(extent.top, layer->top[cell] - model.stack.substrateThickness);
        }
    }
    return extent;
}

/// Cells whose mask is the same over a square of seven by seven cells, by what the mask says there.
std::vector<std::int8_t> ClearOfEdges(const ProcessModel& model, const ProcessStep& photo) {
    const Grid& grid = model.grid;
    std::vector<std::uint8_t> mask(grid.CellCount());
    RasteriseMask(grid, model.polygons, mask, photo.mask, true);
    constexpr std::int32_t reach = 3;
    std::vector<std::int8_t> clear(grid.CellCount(), -1);
    for (std::int32_t row = reach; row < grid.rows - reach; ++row) {
        for (std::int32_t col = reach; col < grid.columns - reach; ++col) {
            std::int32_t inside = 0;
            for (std::int32_t y = row - reach; y <= row + reach; ++y) {
                for (std::int32_t x = col - reach; x <= col + reach; ++x) {
                    inside += mask[static_cast<std::size_t>(y * grid.columns + x)];
                }
            }
            const auto cell = static_cast<std::size_t>(row * grid.columns + col);
            clear[cell] = inside == 0 ? 0 : (inside == 49 ? 1 : -1);
        }
    }
    return clear;
}

class ReferenceProcess : public testing::TestWithParam<const char*> {};

TEST_P(ReferenceProcess, FindsSomethingDrawnForEveryMask) {
    const std::unique_ptr<ProcessModel> model = PrepareProcess(GetParam(), "500");
    for (const ProcessStep& step : model->steps) {
        if (step.kind == StepKind::Photo) {
            const bool isDrawn = std::any_of(
                model->polygons.begin(), model->polygons.end(), [&](const MaskPolygon& polygon) {
                    return std::any_of(
                        step.mask.begin(), step.mask.end(), [&](const MaskLayer& layer) {
                            return layer.layer == polygon.layer &&
                                   layer.datatype.value_or(polygon.datatype) == polygon.datatype;
                        });
                });
            EXPECT_TRUE(isDrawn) << step.description;
        }
    }
}

TEST_P(ReferenceProcess, GivesEveryMaterialATypeOfItsOwn) {
    const std::unique_ptr<ProcessModel> model = PrepareProcess(GetParam(), "500");
    std::map<std::string, std::string> materials;
    for (const ProcessStep& step : model->steps) {
        if (!step.materialType.empty()) {
            const auto [known, isNew] = materials.emplace(step.materialType, step.material);
            EXPECT_TRUE(isNew) << step.material << " and " << known->second;
        }
    }
}

// A film is named after the mask that it is cut with, a plug after its hole with "Plug" behind.
TEST_P(ReferenceProcess, HasFilmsAndPlugsWhereTheirMasksAreAndResistLeftToProtectThem) {
    const std::unique_ptr<ProcessModel> model = PrepareProcess(GetParam(), "240");
    const std::vector<std::size_t> window = WindowCells(model->grid);
    ProcessStep photo;
    bool isEtched = false;  // with this resist
    std::vector<std::int8_t> clear;
    std::size_t checked = 0;
    const auto check = [&](const Layer& layer, const std::string& what) {
        std::size_t missing = 0;
        std::size_t stray = 0;
        for (const std::size_t cell : window) {
            const bool isThere = layer.top[cell] > layer.bottom[cell];
            missing += clear[cell] == 1 && !isThere ? 1 : 0;
            stray += clear[cell] == 0 && isThere ? 1 : 0;
        }
        EXPECT_EQ(missing, 0u) << what;
        EXPECT_EQ(stray, 0u) << what;
        ++checked;
    };
    Execute(*model, [&](const ProcessStep& step) {
        if (step.kind == StepKind::Photo) {
            photo = step;
            isEtched = false;
            clear = ClearOfEdges(*model, photo);
        }
        isEtched |= step.kind == StepKind::Etch;
        const Layer* const film = FindLayer(*model, photo.photoName);
        if (step.kind == StepKind::Strip && isEtched && photo.maskDark && film != nullptr) {
            check(*film, photo.photoName);
        }
        const Layer* const plug = FindLayer(*model, photo.photoName + "Plug");
        if (step.kind == StepKind::Polish && plug != nullptr) {
            check(*plug, photo.photoName + "Plug");
        }
        const Layer* const resist = FindLayer(*model, "PR");
        if (step.kind == StepKind::Etch && resist != nullptr) {
            const std::int8_t keeps = photo.maskDark ? 1 : 0;
            const auto worn = std::count_if(window.begin(), window.end(), [&](std::size_t cell) {
                return clear[cell] == keeps && !(resist->top[cell] > resist->bottom[cell]);
            });
            EXPECT_EQ(worn, 0) << "resist gone at " << step.description;
        }
    });
    EXPECT_GE(checked, 2u);
}

TEST_P(ReferenceProcess, IsClosedUnlessItIsReleased) {
    const std::unique_ptr<ProcessModel> model = RunToEnd(GetParam());
    if (model->steps.back().kind == StepKind::Release) {
        return;
    }
    std::size_t gaps = 0;
    for (const std::size_t cell : WindowCells(model->grid)) {
        std::vector<std::pair<float, float>> solid;
        for (const auto& layer : model->stack.layers) {
            if (layer && layer->top[cell] > layer->bottom[cell]) {
                solid.emplace_back(layer->bottom[cell], layer->top[cell]);
            }
        }
        std::sort(solid.begin(), solid.end());
        for (std::size_t i = 1; i < solid.size(); ++i) {
            // A film that lay on thin oxide keeps its height where the oxide was etched away from
            // below its edge: less than 20 nm. A void would be higher.
            gaps += solid[i].first - solid[i - 1].second > 0.02f ? 1 : 0;
        }
    }
    EXPECT_EQ(gaps, 0u);
}

INSTANTIATE_TEST_SUITE_P(Processes, ReferenceProcess,
                         testing::Values("sky130", "gf180mcu", "sg13g2", "soi220",
                                         "mems_three_poly"),
                         [](const auto& process) { return std::string(process.param); });

/// A film between its underside and its upper side in nm above the silicon.
struct Level {
    const char* material;
    double bottom;
    double top;
};

void ExpectLevels(const ProcessModel& model, double silicon, const std::vector<Level>& levels) {
    for (const Level& level : levels) {
        const Extent extent = ExtentOf(model, level.material);
        EXPECT_NEAR(extent.bottom, (silicon + level.bottom) / 1000.0, kSame) << level.material;
        EXPECT_NEAR(extent.top, (silicon + level.top) / 1000.0, kSame) << level.material;
    }
}

TEST(ReferenceLevels, OfLocalInterconnectCmosAreThoseOfTheStackDrawing) {
    ExpectLevels(*RunToEnd("sky130"), 1300,
                 {{"LI1", 609.9, 709.9},
                  {"LiconPlug", 0, 609.9},
                  {"MconPlug", 709.9, 1049.9},
                  {"Met1", 1049.9, 1409.9},
                  {"Via1Plug", 1409.9, 1679.9},
                  {"Met2", 1679.9, 2039.9},
                  {"Via2Plug", 2039.9, 2459.9},
                  {"Met3", 2459.9, 3304.9},
                  {"CapPlate1", 3337.9, 3397.9},
                  {"Met4", 3694.9, 4539.9},
                  {"Met5", 5044.9, 6304.9}});
}

TEST(ReferenceLevels, Of180NanometreCmosAreThoseOfTheInterconnectTables) {
    ExpectLevels(*RunToEnd("gf180mcu"), 1500,
                 {{"ContactPlug", 0, 910},
                  {"Metal1", 910, 1460},
                  {"Via1Plug", 1460, 2060},
                  {"Metal2", 2060, 2610},
                  {"Metal3", 3210, 3760},
                  {"Metal4", 4360, 4910},
                  {"CapPlate", 4952, 5247},
                  {"Via4Plug", 4910, 5810},
                  {"Metal5", 5810, 7002.5},
                  {"PassNitride", 8202.5, 8502.5}});
}

TEST(ReferenceLevels, OfBicmosAreThoseOfTheSpecificationOfTheProcess) {
    ExpectLevels(*RunToEnd("sg13g2"), 1500,
                 {{"ContPlug", 0, 640},
                  {"Metal1", 640, 1060},
                  {"Via1Plug", 1060, 1600},
                  {"Metal2", 1600, 2090},
                  {"Metal3", 2630, 3120},
                  {"Metal4", 3660, 4150},
                  {"Metal5", 4690, 5180},
                  {"MIMPlate", 5220, 5370},
                  {"TopVia1Plug", 5180, 6030},
                  {"TopMetal1", 6030, 8030},
                  {"TopVia2Plug", 8030, 10830},
                  {"TopMetal2", 10830, 13830}});
}

// The coatings come to other heights in each window, the polished films to the same.
TEST(ReferenceLevels, AgreeBetweenThreeWindowsOfOneCell) {
    const std::vector<GivenWindow> windows{
        {-0.1f, 0.4f, 5.4f, 4.2f}, {0.3f, -0.5f, 2.4f, 2.4f}, {-6.0f, -5.0f, 16.0f, 12.0f}};
    const std::vector<std::string> films{"FieldOxide", "PSG",   "NILD2", "NILD3",
                                         "NILD4",      "NILD5", "NILD6"};
    std::vector<std::map<std::string, float>> coated;
    std::vector<std::map<std::string, Extent>> polished;
    for (const GivenWindow& window : windows) {
        const std::unique_ptr<ProcessModel> model = PrepareProcess("sky130", "240", {{}, window});
        auto& before = coated.emplace_back();
        Execute(*model, [&](const ProcessStep& step) {
            if (step.kind == StepKind::Coating) {
                before[step.material] = ExtentOf(*model, step.material).top;
            }
        });
        auto& after = polished.emplace_back();
        for (const std::string& film : films) {
            const Layer* const layer = FindLayer(*model, film);
            ASSERT_NE(layer, nullptr) << film;
            Extent& level = after[film];
            for (const std::size_t cell : WindowCells(model->grid)) {
                const float height = layer->top[cell] - model->stack.substrateThickness;
                if (layer->top[cell] > layer->bottom[cell]) {
                    level.top = std::max(level.top, height);
                    level.bottom = std::min(level.bottom, height);
                }
            }
        }
    }
    for (const std::string& film : films) {
        for (const auto& after : polished) {
            EXPECT_NEAR(after.at(film).top, polished[0].at(film).top, kSame) << film;
            EXPECT_NEAR(after.at(film).bottom, polished[0].at(film).top, kSame) << film;
        }
    }
    EXPECT_GT(std::abs(coated[1]["NILD5"] - coated[0]["NILD5"]), 0.01f);
}

TEST(ReferenceMasks, JoinPolygonsThatOnlyTouch) {
    const std::unique_ptr<ProcessModel> model = PrepareProcess("sg13g2", "240");
    Execute(*model, [&](const ProcessStep& step) {
        if (step.kind != StepKind::Strip || step.processName != "GatPoly") {
            return;
        }
        // Along a resistor, whose heads and body are drawn on two layers
        const Layer* const poly = FindLayer(*model, "GatPoly");
        ASSERT_NE(poly, nullptr);
        for (float x = 3.4f; x < 6.0f; x += 0.02f) {
            const std::size_t cell = CellAt(model->grid, x, 3.85f);
            EXPECT_NEAR(poly->top[cell] - poly->bottom[cell], 0.16f, kSame) << x;
        }
    });
}

TEST(ReferenceMems, IsFreeWhereItIsMeantToBeAndAnchoredElsewhere) {
    const std::unique_ptr<ProcessModel> model = RunToEnd("mems_three_poly");
    for (const auto& layer : model->stack.layers) {
        EXPECT_TRUE(!layer || (layer->material.find("Oxide") == std::string::npos &&
                               layer->material.find("HardMask") == std::string::npos));
    }
    const auto cellAt = [&](float x, float y) { return CellAt(model->grid, x, y); };
    const auto gap = [&](const std::string& upper, const std::string& lower, std::size_t cell) {
        return FindLayer(*model, upper)->bottom[cell] - FindLayer(*model, lower)->top[cell];
    };
    EXPECT_NEAR(gap("Poly1", "Poly0", cellAt(60, 6)), 2.0f, 0.01f);
    EXPECT_NEAR(gap("Poly1", "Poly0", cellAt(100.5f, 6)), 1.25f, 0.01f);
    EXPECT_NEAR(gap("Poly1", "Poly0", cellAt(5, 0)), 0.0f, 0.001f);
    EXPECT_NEAR(gap("Poly2", "Poly1", cellAt(90, 3)), 0.75f, 0.01f);
    EXPECT_NEAR(gap("Poly2", "Poly0", cellAt(90, 19)), 0.0f, 0.001f);
    EXPECT_NEAR(gap("Poly2", "Poly1", cellAt(5, 0)), 0.0f, 0.001f);
    EXPECT_NEAR(gap("Gold", "Poly2", cellAt(5, 0)), 0.0f, 0.001f);
}

}  // namespace
}  // namespace zelmo
