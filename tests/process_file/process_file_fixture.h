#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "process_file/color_table.h"
#include "process_file/reader.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

using Lines = std::vector<std::string>;

/// The errors of a line as they are told.
inline Lines InLine(int number, const Lines& errors) {
    Lines lines;
    for (const std::string& error : errors) {
        lines.push_back("Error in line " + std::to_string(number) + ": " + error);
    }
    return lines;
}

/// The three commands that every file needs, as lines 1 to 3.
inline const std::string preamble =
    "settings -version 4\n"
    "location -x 0 -y 0 -dx 10 -dy 10\n"
    "gds -cell TOP\n";

inline const std::string oxideLine =
    "deposition -name Ox -type oxide -thickness 1 -color 1 2 3 4\n";

inline const ColorTable testColors = {
    {"navy", 0, 0, 128}, {"orange", 255, 165, 0}, {"navy", 1, 2, 3}};

/// Reads process files given as texts, and keeps what came of the last one.
class ProcessFileTest : public testing::Test {
protected:
    /// Reads a whole file; returns its errors as a console shows them. The file is deleted again:
    /// writing over an existing one makes some file systems wait for the disk.
    Lines Read(std::string_view text) {
        const std::filesystem::path path = folder.Write("process.txt", text);
        const Lines lines = ReadPath(path);
        std::filesystem::remove(path);
        return lines;
    }

    Lines ReadPath(const std::filesystem::path& path) {
        file = ReadProcessFile(path, colors, values ? &*values : nullptr);
        RecordingConsole console;
        for (const ProcessFileError& error : file.errors) {
            console.Write(ErrorLine(error));
        }
        return console.lines;
    }

    /// Reads a file of the preamble and these lines, the first of which is line 4.
    Lines ReadSteps(std::string_view lines) { return Read(preamble + std::string(lines)); }

    /// Whether the last file can be run.
    bool Accepted() const { return file.opened && file.errors.empty(); }

    /// The step of that number, counted without the substrate.
    const ProcessStep& Step(std::size_t number) const { return file.steps.at(number); }

    ColorTable colors = testColors;
    std::optional<VariableValues> values;  ///< none: variables are not replaced
    TempFolder folder;
    ProcessFile file;
};

}  // namespace zelmo
