#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "examples/gds_writer.h"
#include "tests/batch/program.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// A folder with a small layout, "small.gds", and a process file for it, "flow.txt"; the program is
/// run in it.
class LayoutToolTest : public testing::Test {
protected:
    LayoutToolTest();

    Ended Run(const std::vector<std::string>& arguments) const;
    /// Runs it with these arguments behind the layout's.
    Ended RunOn(const GdsWriter& layout, std::vector<std::string> arguments = {}) const;
    std::string FileText(const std::string& name) const;
    std::vector<std::string> FilesInFolder() const;

    TempFolder folder_;
};

/// Cells TOP, PART (three times in TOP) and LONE; texts, and layers 1/0, 2/3 and 7/0.
GdsWriter SmallLayout();

/// What the program says of TOP in small.gds before anything of its layers.
std::string SmallTopHead();

/// Whether the text has each of the pieces.
void ExpectPieces(const std::string& text, const std::vector<std::string>& pieces);

/// Expects the exit status, and on standard error one line that holds all of `pieces`.
void ExpectError(const Ended& ended, int status, const std::vector<std::string>& pieces);

}  // namespace zelmo
