#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/batch/program.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// A folder with a small layout, "square.gds", and a process file for it, "flow.txt"; the program
/// is run in it.
class BatchTest : public testing::Test {
protected:
    BatchTest();

    /// Runs the program in the folder, with these arguments.
    Ended Run(const std::vector<std::string>& arguments, const Launch& launch = {}) const;
    /// Writes a process file with these steps behind its first three commands.
    void WriteProcess(const std::string& steps, const std::string& name = "flow.txt") const;
    void WriteLayout(const std::vector<std::uint8_t>& bytes) const;

    std::filesystem::path InFolder(const std::string& name) const { return folder_.Path() / name; }
    std::string FileText(const std::string& name) const;
    /// Names of the files in a folder below, sorted.
    std::vector<std::string> FilesIn(const std::string& name) const;

    TempFolder folder_;
};

/// The program under test.
std::filesystem::path BatchProgram();

/// A layout with the cell TOP: a square of 4 um on layer 1, which can be made wider or narrower.
std::vector<std::uint8_t> SquareLayout(std::int32_t width = 4000);

/// The text with every number of seconds as "#".
std::string MaskTimes(const std::string& text);

/// Expects the exit status, and on standard error one line that holds all of `pieces`. Notes may
/// come with it.
void ExpectRefusal(const Ended& ended, int status, const std::vector<std::string>& pieces);

}  // namespace zelmo
