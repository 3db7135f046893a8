#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/main_window_logic.h"
#include "desktop/null/null_platform.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// Pictures of 2 by 3 pixels without GL.
std::unique_ptr<PictureMaker> CreateTinyPictureMaker();

/// A main window on a desktop without windows, with a small layout and process files to run.
class Desktop {
public:
    Desktop();

    /// Chooses the layout in the dialog of Load GDS.
    void LoadLayout();
    /// Chooses this process file in the dialog of Run Process and returns with the first step under
    /// way, or with the refusal reported.
    void StartRun(const std::filesystem::path& processFile);
    /// Runs messages until the run is over.
    void FinishRun();
    /// Calls `action` on the user interface thread while the step with this description runs.
    void DuringStep(const std::wstring& description, std::function<void()> action);

    /// A process file of `steps` step commands: depositions layer1, layer2, ...
    std::filesystem::path ProcessFile(int steps, const std::string& name = "flow.txt");
    std::filesystem::path LayoutFile() const { return layout_; }
    const std::filesystem::path& Folder() const { return folder_.Path(); }
    std::vector<std::wstring> Lines() { return platform.ConsoleLines(); }
    bool HasLine(const std::wstring& text);
    std::vector<std::wstring> PictureNames() const;

private:
    TempFolder folder_;
    std::filesystem::path layout_;

public:
    NullPlatform platform;
    MainWindowLogic window;
};

}  // namespace zelmo
