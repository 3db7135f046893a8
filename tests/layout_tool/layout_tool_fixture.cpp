#include "tests/layout_tool/layout_tool_fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "base/text.h"

namespace zelmo {

namespace {

constexpr const char* flow =
    "settings -version 4 -N 200 -angle 30\n"
    "location -x 0 -y 0 -dx 4 -dy 3\n"
    "gds -cell TOP\n"
    "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
    "photo -name Hole -mask_id 1 -type 0 -res 0.0 -thickness 1000\n"
    "etch -name Hole -targets oxide -depth 600 -iso 0.0\n"
    "strip -name Hole\n"
    "photo -name Line -mask_id 2/3,9 -type 1 -res 0.0 -thickness 1000\n"
    "etch -name Line -targets oxide -depth 600 -iso 0.0\n"
    "strip -name Line\n";

void WriteText(GdsWriter& writer, std::uint16_t layer, std::int32_t x, std::int32_t y,
               std::string_view text) {
    writer.Record(0x0C00);
    writer.RecordU16(0x0D02, {layer});
    writer.RecordU16(0x1602, {0});
    writer.RecordI32(0x1003, {x, y});
    writer.RecordText(0x1906, text);
    writer.Record(0x1100);
}

}  // namespace

GdsWriter SmallLayout() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("PART");
    writer.Rectangle({2, 3}, 0, 0, 1000, 500);
    WriteText(writer, 5, 100, 200, "pin");
    writer.EndCell();
    writer.BeginCell("TOP");
    writer.Rectangle(1, -1000, 0, 2000, 2000);
    writer.Reference("PART", {0, 0}, {true, 1.0, 0.0});
    writer.Array("PART", 2, 1, {3000, 0}, {7000, 0}, {3000, 1000});
    WriteText(writer, 5, 0, 0, "name");
    writer.EndCell();
    writer.BeginCell("LONE");
    writer.Rectangle(7, 0, 0, 10, 10);
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

LayoutToolTest::LayoutToolTest() {
    folder_.Write("small.gds", SmallLayout().Bytes());
    folder_.Write("flow.txt", flow);
}

Ended LayoutToolTest::Run(const std::vector<std::string>& arguments) const {
    Launch here;
    here.workingFolder = folder_.Path();
    // Tests run in the build folder, where the programs lie.
    return RunToEnd(std::filesystem::current_path() / ZELMO_LAYOUT_FILE, arguments, here);
}

Ended LayoutToolTest::RunOn(const GdsWriter& layout, std::vector<std::string> arguments) const {
    folder_.Write("other.gds", layout.Bytes());
    arguments.insert(arguments.begin(), "other.gds");
    return Run(arguments);
}

std::string LayoutToolTest::FileText(const std::string& name) const {
    std::ifstream stream(folder_.Path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<std::string> LayoutToolTest::FilesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string SmallTopHead() {
    return "small.gds: 3 cells, 2 on top; database unit 0.001 um, user unit 1 um\n"
           "\n"
           "cell TOP: 4 shapes, 1 of its own; 4 texts\n"
           "box: -1.000 to 6.000 by -0.500 to 2.000 um\n"
           "contains: PART x 3\n"
           "used in: no other cell\n";
}

void ExpectPieces(const std::string& text, const std::vector<std::string>& pieces) {
    for (const std::string& piece : pieces) {
        EXPECT_NE(text.find(piece), std::string::npos) << piece << " in\n" << text;
    }
}

void ExpectError(const Ended& ended, int status, const std::vector<std::string>& pieces) {
    EXPECT_EQ(ended.status, status) << ended.errors;
    EXPECT_EQ(std::count(ended.errors.begin(), ended.errors.end(), '\n'), 1) << ended.errors;
    EXPECT_TRUE(ended.errors.starts_with("zelmo-layout: ")) << ended.errors;
    ExpectPieces(ended.errors, pieces);
}

}  // namespace zelmo
