#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/win32/desktop_program.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// zelmo.exe in a fresh folder with its assets, a layout and process files. Tests run in the build
/// folder, where the programs lie.
class WindowTest : public testing::Test {
protected:
    WindowTest();

    /// Starts the program and waits for its window.
    void Start();
    /// Starts it, loads the layout.
    void StartWithLayout();
    DesktopProgram& Program() { return *program_; }

    std::filesystem::path File(const std::string& name) const { return folder_.Path() / name; }
    std::filesystem::path Layout() const { return File("square.gds"); }
    /// A process of a substrate and two depositions; their pictures are "001 Substrate", "002
    /// Oxide deposition" and "003 Nitride deposition".
    std::filesystem::path Process() const { return File("flow.txt"); }
    void WriteProcess(const std::string& name, const std::string& steps) const;
    std::vector<std::uint8_t> Bytes(const std::filesystem::path& file) const;
    std::vector<std::filesystem::path> FoldersBeside(const std::string& start) const;

    TempFolder folder_;
    std::unique_ptr<DesktopProgram> program_;
};

/// The lines with every "0.123 s" and "0.123 sec" replaced by "# s" and "# sec".
std::vector<std::wstring> MaskTimes(std::vector<std::wstring> lines);

/// Runs zelmo-batch.exe in a folder to its end; its standard output as lines.
std::vector<std::wstring> RunBatch(const std::filesystem::path& folder,
                                   const std::wstring& arguments);

}  // namespace zelmo
