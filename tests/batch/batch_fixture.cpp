#include "tests/batch/batch_fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

#include "base/text.h"
#include "examples/gds_writer.h"

namespace zelmo {

namespace {

/// Whether this is a number with three decimals, and a unit of time.
bool IsSeconds(std::string_view number, std::string_view unit) {
    const std::size_t point = number.find('.');
    return (unit == "s" || unit == "sec") && point != 0 && point + 4 == number.size() &&
           number.find_first_not_of("0123456789.") == std::string_view::npos &&
           number.find('.', point + 1) == std::string_view::npos;
}

}  // namespace

std::filesystem::path BatchProgram() {
    // Tests run in the build folder, where the programs lie.
    return std::filesystem::current_path() / ZELMO_BATCH_FILE;
}

std::vector<std::uint8_t> SquareLayout(std::int32_t width) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 3000, 3000, 3000 + width, 7000);
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

std::string MaskTimes(const std::string& text) {
    std::istringstream lines(text);
    std::string masked;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t unit = line.rfind(' ');
        const std::size_t number = unit == std::string::npos ? unit : line.rfind(' ', unit - 1);
        const std::string_view whole = line;
        if (number != std::string::npos &&
            IsSeconds(whole.substr(number + 1, unit - number - 1), whole.substr(unit + 1))) {
            masked.append(whole.substr(0, number + 1)).append("#").append(whole.substr(unit));
        } else {
            masked.append(whole);
        }
        masked.push_back('\n');
    }
    return masked;
}

void ExpectRefusal(const Ended& ended, int status, const std::vector<std::string>& pieces) {
    EXPECT_EQ(ended.status, status) << ended.errors;
    std::string line;
    std::istringstream lines(ended.errors);
    for (std::string one; std::getline(lines, one);) {
        line += one.starts_with("note: ") ? "" : one + "\n";
    }
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << ended.errors;
    EXPECT_TRUE(line.starts_with("zelmo-batch: ")) << ended.errors;
    EXPECT_TRUE(ended.errors.ends_with("\n")) << ended.errors;
    for (const std::string& piece : pieces) {
        EXPECT_NE(line.find(piece), std::string::npos) << piece << " in " << ended.errors;
    }
}

BatchTest::BatchTest() {
    WriteLayout(SquareLayout());
    WriteProcess("deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n");
}

Ended BatchTest::Run(const std::vector<std::string>& arguments, const Launch& launch) const {
    Launch here = launch;
    here.workingFolder = folder_.Path();
    return RunToEnd(BatchProgram(), arguments, here);
}

void BatchTest::WriteProcess(const std::string& steps, const std::string& name) const {
    folder_.Write(name,
                  "settings -version 4 -N 200 -angle 30\n"
                  "location -x 0 -y 0 -dx 10 -dy 10\n"
                  "gds -cell TOP\n" +
                      steps);
}

void BatchTest::WriteLayout(const std::vector<std::uint8_t>& bytes) const {
    folder_.Write("square.gds", bytes);
}

std::string BatchTest::FileText(const std::string& name) const {
    std::ifstream stream(InFolder(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<std::string> BatchTest::FilesIn(const std::string& name) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(InFolder(name))) {
        names.push_back(Utf8FromWide(PathText(entry.path().filename())));
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace zelmo
