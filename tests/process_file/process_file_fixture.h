#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_file/reader.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

using Lines = std::vector<std::string>;

/// The three commands that every file needs, as lines 1 to 3.
inline const std::string preamble =
    "settings -version 4\n"
    "location -x 0 -y 0 -dx 10 -dy 10\n"
    "gds -cell TOP\n";

/// Puts a table of a few colours in place of the process-wide one, for as long as it lives.
class TestColors {
public:
    TestColors() {
        saved_ = std::exchange(GetColorTable(),
                               {{"navy", 0, 0, 128}, {"orange", 255, 165, 0}, {"navy", 1, 2, 3}});
    }
    ~TestColors() { GetColorTable() = std::move(saved_); }
    TestColors(const TestColors&) = delete;
    TestColors& operator=(const TestColors&) = delete;

private:
    ColorTable saved_;
};

/// Reads process files given as texts, and keeps what came of the last one.
class ProcessFileTest : public testing::Test {
protected:
    /// Reads a whole file; returns the console's lines. The file is deleted again: writing over an
    /// existing one makes some file systems wait for the disk.
    Lines Read(std::string_view text) {
        const std::filesystem::path path = folder.Write("process.txt", text);
        const Lines lines = ReadPath(path);
        std::filesystem::remove(path);
        return lines;
    }

    Lines ReadPath(const std::filesystem::path& path) {
        model = std::make_unique<ProcessModel>();
        RecordingConsole console;
        result = ReadProcessFile(*model, path, &console);
        return console.lines;
    }

    /// Reads a file of the preamble and these lines, the first of which is line 4.
    Lines ReadSteps(std::string_view lines) { return Read(preamble + std::string(lines)); }

    /// The step of that number, counted without the substrate.
    const ProcessStep& Step(std::size_t number) const { return model->steps.at(number); }

    TestColors colors;
    TempFolder folder;
    std::unique_ptr<ProcessModel> model;
    std::int32_t result = -1;
};

}  // namespace zelmo
