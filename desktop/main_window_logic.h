#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "desktop/picture_list.h"
#include "desktop/picture_maker.h"
#include "desktop/platform.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "process_file/color_table.h"

namespace zelmo {

/// The logic of the program's one window, the same on every desktop: the commands of the menu, the
/// run of a process, its pictures, browsing and closing. It owns every long-lived object of the
/// program; what it needs of the desktop it asks of its Platform.
///
/// All members are called on the user interface thread, but for RunStepThread. The worker of a step
/// and the user interface thread alternate strictly: the model and the GL context are the worker's
/// from StartThread to SendStepDone, and the user interface's otherwise.
class MainWindowLogic {
public:
    explicit MainWindowLogic(Platform& platform);
    ~MainWindowLogic();
    MainWindowLogic(const MainWindowLogic&) = delete;
    MainWindowLogic& operator=(const MainWindowLogic&) = delete;

    // At start, in this order, with the GL context current where there is one.

    /// Loads the colour table. False if it cannot be loaded.
    bool LoadColors(const std::filesystem::path& path = "colors.txt");
    /// Takes what draws the pictures, sets the menu and writes the welcome.
    void FinishCreation(std::unique_ptr<PictureMaker> pictureMaker);

    // The commands of the menu.
    void HandleRun();
    void HandleStop();
    void HandleSaveImages();
    void HandleLoadGds();
    void HandleAbout();

    // Keys and the close button. Browsing throws std::out_of_range where there is no picture.
    void HandleLeftKey();
    void HandleRightKey();
    void HandleClose();

    /// The platform's answer to Platform::SendStepDone.
    void RunStepDone(const ProcessStep& step);

    /// Sets each entry of the menu by the state of the run.
    void UpdateMenus();

    const PictureList& Pictures() const { return pictures_; }
    bool Running() const { return running_; }
    const ProcessModel* Model() const { return model_.get(); }

private:
    void DisableMenus();
    /// Replaces the model by one that is ready to run. False if the run cannot be prepared.
    bool PrepareModel(const std::filesystem::path& path);
    void RunNext(bool first);
    void RunStepThread(const ProcessStep& step);
    void CaptureStepPicture(const ProcessStep& step);
    void ShowCurrentPicture();

    Platform& platform_;
    PictureList pictures_;
    ColorTable colors_;
    std::unique_ptr<GdsDatabase> gds_;
    std::filesystem::path gdsFileName_;
    std::filesystem::path processFileName_;
    std::unique_ptr<PictureMaker> pictureMaker_;
    bool stopRequested_ = false;   ///< set by Stop and close, read between steps
    bool closeRequested_ = false;  ///< a close during a run; never cleared
    bool running_ = false;
    std::unique_ptr<ProcessModel> model_;
    std::int32_t stepIndex_ = 0;      ///< the step to start next
    std::int32_t runStartClock_ = 0;  ///< milliseconds
    std::int32_t imageCounter_ = 1;   ///< number of the next picture; never reset
};

}  // namespace zelmo
