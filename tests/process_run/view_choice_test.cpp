// What a run looks at in place of what its process file says.

#include "process_run/view_choice.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/process_model.h"
#include "process_run/prepare_run.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

const std::string firstLines = "settings -version 4 -N 200\nlocation -x 1 -y 2 -dx 4 -dy 2\n";
const std::string photoLine =
    "photo -name P -mask_id 5 -type 1 -res 0 -thickness 100\nstrip -name S\n"
    "photo -name Q -mask_id 6 -type 1 -res 0 -thickness 100\n";

/// Cell TOP draws on layers 5, 6 and 7; cell NARROW is higher than wide.
LoadedLayout MakeLayout() {
    return LoadCell([](GdsWriter& writer) {
        writer.Rectangle(5, 1000, 2000, 3000, 2500);
        writer.Rectangle(6, 4000, 1000, 5000, 2200);
        writer.Rectangle(7, -9000, -9000, 9000, 9000);
        writer.EndCell();
        writer.BeginCell("NARROW");
        writer.Rectangle(5, 1000, 0, 1500, 2000);
    });
}

class ViewChoiceTest : public testing::Test {
protected:
    PreparedRun Prepare(const std::string& text, const ViewChoice& view) {
        console.lines.clear();
        return PrepareRun(folder.Write("process.txt", text), layout.database, colors, &console,
                          view);
    }

    /// The settings of a file that is expected to be good.
    ProcessSettings SettingsWith(const ViewChoice& view,
                                 const std::string& text = firstLines + "gds -cell TOP\n" +
                                                           photoLine) {
        const PreparedRun run = Prepare(text, view);
        EXPECT_EQ(run.errors, Lines{});
        return run.model ? run.model->settings : ProcessSettings{};
    }

    LoadedLayout layout = MakeLayout();
    TempFolder folder;
    RecordingConsole console;
    ColorTable colors;
};

void ExpectWindow(const ProcessSettings& settings, const GivenWindow& window) {
    EXPECT_EQ(settings.windowX, window.x);
    EXPECT_EQ(settings.windowY, window.y);
    EXPECT_EQ(settings.windowWidth, window.width);
    EXPECT_EQ(settings.windowHeight, window.height);
}

TEST_F(ViewChoiceTest, WithoutOneTheProcessFileCounts) {
    const ProcessSettings settings = SettingsWith({});
    ExpectWindow(settings, {1, 2, 4, 2});
    EXPECT_EQ(settings.cellName, "TOP");
}

TEST_F(ViewChoiceTest, ColumnsAndAngleTakeThePlaceOfTheFiles) {
    ViewChoice view;
    EXPECT_EQ(SettingsWith(view).gridColumns, 200);
    EXPECT_EQ(SettingsWith(view).cameraAngle, 30.0f);
    view.gridColumns = 321;
    view.cameraAngle = 12.0f;
    EXPECT_EQ(SettingsWith(view).gridColumns, 321);
    EXPECT_EQ(SettingsWith(view).cameraAngle, 12.0f);
    const PreparedRun run = Prepare(firstLines + "gds -cell TOP\n" + photoLine, view);
    ASSERT_NE(run.model, nullptr);
    EXPECT_EQ(run.model->grid.columns, 321);
    view.cameraAngle = 90.0f;
    EXPECT_EQ(SettingsWith(view).cameraAngle, 89.0f);
}

TEST_F(ViewChoiceTest, AFileWithFaultyColumnsIsRefusedWhateverIsChosen) {
    ViewChoice view;
    view.gridColumns = 300;
    const PreparedRun run = Prepare(
        "settings -version 4 -N 100\nlocation -x 1 -y 2 -dx 4 -dy 2\ngds -cell TOP\n", view);
    EXPECT_EQ(run.errors,
              (Lines{"Error in line 1: Value of -N argument needs to be between 200 and 2000"}));
}

TEST_F(ViewChoiceTest, VariablesAreReplacedWhereTheyAreChosen) {
    const std::string text = firstLines + "gds -cell ${CELL:-TOP}\n" + photoLine;
    EXPECT_EQ(Prepare(text, {}).errors,
              (Lines{"ERROR: Cell name ${CELL:-TOP} was not found in the GDS database"}));
    ViewChoice view;
    view.variables = VariableValues{};
    EXPECT_EQ(SettingsWith(view, text).cellName, "TOP");
    view.variables = VariableValues{{"CELL", "NARROW"}};
    EXPECT_EQ(SettingsWith(view, text).cellName, "NARROW");
    view.variables = VariableValues{{"CEL", "NARROW"}};
    EXPECT_EQ(Prepare(text, view).errors,
              (Lines{"Error: CEL is set, but no variable of the file: did you mean CELL?"}));
    EXPECT_EQ(console.lines.back().find("Opening process file"), 0U);
}

TEST_F(ViewChoiceTest, AWindowIsInMicrometresWhateverTheFileUses) {
    const ViewChoice view{{}, GivenWindow{-0.5f, 0.25f, 3, 2}};
    ExpectWindow(SettingsWith(view), {-0.5f, 0.25f, 3, 2});
    ExpectWindow(SettingsWith(view,
                              "settings -version 4 -N 200 -use_nm\n"
                              "location -x 1 -y 2 -dx 4 -dy 2\ngds -cell TOP\n"),
                 {-0.5f, 0.25f, 3, 2});
}

TEST_F(ViewChoiceTest, AWindowHigherThanWideIsCutToASquareAsALocationIs) {
    ExpectWindow(SettingsWith({{}, GivenWindow{0, 0, 3, 5}}), {0, 0, 3, 3});
}

TEST_F(ViewChoiceTest, AFittedWindowGoesAroundTheMasksThatTheProcessUses) {
    ExpectWindow(SettingsWith({{}, FittedWindow{}}), {1, 1, 4, 1.5f});
    ExpectWindow(SettingsWith({{}, FittedWindow{0.5f}}), {0.5f, 0.5f, 5, 2.5f});
    EXPECT_EQ(console.lines.at(1), "Fitted location -x 0.5 -y 0.5 -dx 5 -dy 2.5");
}

TEST_F(ViewChoiceTest, AFittedWindowGoesAroundTheDatatypesThatTheProcessUses) {
    layout = LoadCell([](GdsWriter& writer) {
        writer.Rectangle({66, 20}, 0, 0, 4000, 3000);
        writer.Rectangle({66, 44}, 1000, 500, 2000, 1000);
        writer.Rectangle({65, 44}, 0, 0, 2500, 900);
    });
    const std::string text = firstLines +
                             "gds -cell TOP\n"
                             "photo -name P -mask_id 66/44,65/44 -type 0 -res 0 -thickness 100\n";
    ExpectWindow(SettingsWith({{}, FittedWindow{}}, text), {0, 0, 2.5f, 1});
}

TEST_F(ViewChoiceTest, AFittedWindowIsAtLeastAsWideAsHighWithTheDrawingInItsMiddle) {
    const ViewChoice view{"NARROW", FittedWindow{0.25f}};
    const ProcessSettings settings = SettingsWith(view);
    EXPECT_EQ(settings.cellName, "NARROW");
    ExpectWindow(settings, {0.0f, -0.25f, 2.5f, 2.5f});
}

TEST_F(ViewChoiceTest, WhereNothingIsDrawnNoWindowFits) {
    const PreparedRun run = Prepare(firstLines + "gds -cell NARROW\n", {{}, FittedWindow{}});
    EXPECT_EQ(run.model, nullptr);
    const std::string line =
        "ERROR: No window fits: cell NARROW draws nothing on the masks of the process; give a "
        "window, or another cell";
    EXPECT_EQ(run.errors, Lines{line});
    EXPECT_EQ(console.lines.back(), line);
}

TEST_F(ViewChoiceTest, ACellThatIsNotThereIsToldAsEver) {
    const Lines expected{"ERROR: Cell name OTHER was not found in the GDS database"};
    for (const WindowChoice& window : {WindowChoice{}, WindowChoice{FittedWindow{}}}) {
        EXPECT_EQ(Prepare(firstLines + "gds -cell TOP\n", {"OTHER", window}).errors, expected);
    }
}

TEST_F(ViewChoiceTest, TheProcessFileIsRefusedAsEver) {
    const ViewChoice view{"TOP", GivenWindow{0, 0, 3, 2}};
    EXPECT_EQ(Prepare("settings -version 4 -N 200\n", view).errors,
              Lines{"Error in line 1: Missing gds, location, or settings command"});
    EXPECT_EQ(
        Prepare("settings -version 4\nlocation -x 0 -y 0 -dx 0 -dy 1\ngds -cell X\n", view).errors,
        Lines{"Error in line 2: Invalid -dx argument"});
}

}  // namespace
}  // namespace zelmo
