// The layouts and process files that the build puts into examples/. The tests run in the folder
// above it.

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "examples/layouts.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/prepare_run.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

const std::filesystem::path kExampleFolder = "examples";

void ExpectNoWarnings(const RecordingConsole& console) {
    for (const std::string& line : console.lines) {
        EXPECT_EQ(line.find("WARNING"), std::string::npos) << line;
        EXPECT_EQ(line.find("ERROR"), std::string::npos) << line;
    }
}

/// A prepared example, with another number of columns where one is given.
std::unique_ptr<ProcessModel> PrepareExample(const std::string& example,
                                             const std::string& columns = "") {
    ColorTable colors;
    EXPECT_TRUE(LoadColorTable(colors, "colors.txt"));
    RecordingConsole console;
    GdsDatabase database;
    EXPECT_EQ(ReadGdsFile(database, kExampleFolder / (example + ".gds"), &console), std::nullopt);
    const TempFolder folder;
    std::string text = FileBytes(kExampleFolder / (example + ".txt"));
    if (!columns.empty()) {
        const std::size_t at = text.find("-N 500");
        EXPECT_NE(at, std::string::npos);
        text.replace(at, 6, "-N " + columns);
    }
    PreparedRun run = PrepareRun(folder.Write("process.txt", text), database, colors, &console);
    EXPECT_EQ(run.errors, std::vector<std::string>{});
    if (columns.empty()) {
        ExpectNoWarnings(console);
    }
    return std::move(run.model);
}

class Example : public testing::TestWithParam<const char*> {};

TEST_P(Example, IsReadyToRunWithoutAWarning) {
    const std::unique_ptr<ProcessModel> model = PrepareExample(GetParam());
    EXPECT_GT(model->polygons.size(), 0u);
    EXPECT_TRUE(model->settings.showLegend);
}

TEST_P(Example, HasPolygonsInReachForEveryMaskThatItsProcessUses) {
    const std::unique_ptr<ProcessModel> model = PrepareExample(GetParam());
    std::set<std::uint32_t> drawn;
    for (const MaskPolygon& polygon : model->polygons) {
        drawn.insert(polygon.layer);
    }
    for (const ProcessStep& step : model->steps) {
        if (step.kind == StepKind::Photo) {
            for (const MaskLayer& layer : step.mask) {
                EXPECT_EQ(drawn.count(layer.layer), 1u) << step.description;
            }
        }
    }
}

TEST_P(Example, NamesItsStepsSoThatFilesCanBeNamedAfterThem) {
    const std::unique_ptr<ProcessModel> model = PrepareExample(GetParam());
    for (const ProcessStep& step : model->steps) {
        EXPECT_EQ(step.description.find_first_of("\\/:*?\"<>|"), std::string::npos)
            << step.description;
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, Example,
                         testing::Values("cmos_inverter", "mems_release", "array"),
                         [](const auto& example) { return std::string(example.param); });

TEST(CmosInverter, HasWellsGatesContactsAndTwoMetalsInAtLeast25Steps) {
    const std::unique_ptr<ProcessModel> model = PrepareExample("cmos_inverter");
    EXPECT_GE(model->steps.size(), 25u);
    std::set<std::string> materials;
    for (const ProcessStep& step : model->steps) {
        materials.insert(step.material);
    }
    for (const char* material :
         {"NWell", "STI", "Poly", "NPlus", "PPlus", "Contacts", "Metal1", "Vias", "Metal2"}) {
        EXPECT_EQ(materials.count(material), 1u) << material;
    }
}

TEST(CrossbarLayout, UsesEveryKindOfReferenceAndBothKindsOfPath) {
    RecordingConsole console;
    GdsDatabase database;
    ASSERT_EQ(ReadGdsFile(database, kExampleFolder / "array.gds", &console), std::nullopt);
    bool reflected = false;
    bool turned = false;
    bool scaled = false;
    bool turnedArray = false;
    for (const GdsCell& cell : database.cells) {
        for (const GdsSref& reference : cell.srefs) {
            reflected |= reference.strans != 0 && (reference.strans & 0x8000) != 0;
            turned |= reference.angle != 0.0;
            scaled |= reference.mag != 1.0;
        }
        for (const GdsAref& array : cell.arefs) {
            turnedArray |= array.angle != 0.0;
        }
    }
    EXPECT_TRUE(reflected && turned && scaled && turnedArray);

    const std::vector<std::uint8_t> stream = CrossbarLayout().Bytes();
    const std::string bytes(stream.begin(), stream.end());
    EXPECT_NE(bytes.find(std::string("\x21\x02\x00\x00", 4)), std::string::npos);
    EXPECT_NE(bytes.find(std::string("\x21\x02\x00\x02", 4)), std::string::npos);
}

float TopOf(const ProcessModel& model, const std::string& material, std::size_t cell) {
    for (const auto& layer : model.stack.layers) {
        if (layer && layer->material == material) {
            return layer->top[cell];
        }
    }
    ADD_FAILURE() << "no layer " << material;
    return 0.0f;
}

float BottomOf(const ProcessModel& model, const std::string& material, std::size_t cell) {
    for (const auto& layer : model.stack.layers) {
        if (layer && layer->material == material) {
            return layer->bottom[cell];
        }
    }
    ADD_FAILURE() << "no layer " << material;
    return 0.0f;
}

TEST(Micromotor, HangsFreeAfterTheRelease) {
    const std::unique_ptr<ProcessModel> model = PrepareExample("mems_release", "200");
    RecordingConsole console;
    ASSERT_EQ(model->steps.back().kind, StepKind::Release);
    for (const ProcessStep& step : model->steps) {
        ExecuteStep(*model, step, &console);
    }
    for (const auto& layer : model->stack.layers) {
        EXPECT_TRUE(!layer || layer->material.find("Oxide") == std::string::npos);
    }
    const auto cellAt = [&](float x, float y) {
        const auto column =
            static_cast<std::size_t>((x - model->grid.originX) / model->grid.spacing + 0.5f);
        const auto row =
            static_cast<std::size_t>((y - model->grid.originY) / model->grid.spacing + 0.5f);
        return row * static_cast<std::size_t>(model->grid.columns) + column;
    };
    // The rotor over its ground plane, lower at a dimple; the hub's flange over the rotor
    const std::size_t rotor = cellAt(16.0f, 0.0f);
    EXPECT_NEAR(BottomOf(*model, "Poly1", rotor) - TopOf(*model, "Poly0", rotor), 2.0f, 0.05f);
    const std::size_t dimple = cellAt(11.5f, 0.0f);
    EXPECT_NEAR(BottomOf(*model, "Poly1", dimple) - TopOf(*model, "Poly0", dimple), 1.0f, 0.05f);
    const std::size_t flange = cellAt(7.5f, 0.0f);
    EXPECT_NEAR(BottomOf(*model, "Poly2", flange) - TopOf(*model, "Poly1", flange), 0.6f, 0.05f);
    // The hub stands on the ground plane
    const std::size_t hub = cellAt(0.0f, 0.0f);
    EXPECT_NEAR(BottomOf(*model, "Poly2", hub), TopOf(*model, "Poly0", hub), 0.001f);
}

}  // namespace
}  // namespace zelmo
