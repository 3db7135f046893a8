#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "examples/gds_writer.h"
#include "tests/state_records/fnv_hash.h"
#include "tests/state_records/state_records.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// Strange numbers that the process file's reader accepts, each run to its end: nothing is
// undefined, and every platform and build comes to the same state after every step.

namespace zelmo {
namespace {

std::vector<std::uint8_t> MakeSmallLayout() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 700, -500, 1500, 500);
    writer.Boundary(1, {{2000, -300}, {3100, 20}, {2500, 400}});
    writer.Rectangle(65535, 100, 0, 900, 300);
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

constexpr std::string_view usual = R"(settings -version 4 -N 200 -angle 30 -heights -legend
location -x 0 -y 0 -dx 4 -dy 0.2
gds -cell TOP
deposition -name Ox -type oxide -thickness 300 -sc 0.5 -color 190 215 255 100 -alpha 0.5
photo -name HOLE -mask_id 1 -type 1 -res 0.1 -thickness 800 -taper 78
etch -name HOLE -targets oxide -depth 250 -iso 0.4
strip -name HOLE
coating -name Sog -type glass -thickness 350 -dop 0.7 -color 150 60 60 100
deposition -name Al -type metal -thickness 120 -sc 0.2 -color 230 200 60 90
etch -name BACK -targets glass metal -depth 200 -iso 0
release -name FREE -targets oxide
)";

/// What stands in place of what, and the hash of the records; "refused" where the run cannot be
/// prepared.
struct StrangeNumber {
    const char* place;
    const char* number;
    const char* records;
};

void PrintTo(const StrangeNumber& strange, std::ostream* out) {
    *out << strange.place << " becomes " << strange.number;
}

constexpr StrangeNumber strangeNumbers[] = {
#include "tests/state_records/strange_numbers.inc"
};

std::string WithNumber(const StrangeNumber& strange) {
    std::string process(usual);
    const std::string_view place = strange.place;
    const std::size_t at = process.find(place);
    if (at == std::string::npos) {
        throw std::logic_error("no such place");
    }
    return process.replace(at, place.size(), strange.number);
}

class StrangeNumbers : public testing::TestWithParam<StrangeNumber> {};

TEST_P(StrangeNumbers, GiveTheSameStatesEverywhere) {
    const TempFolder folder;
    RecordingConsole console;
    FnvHash hash;
    std::string records;
    try {
        TellStateRecords(folder.Write("layout.gds", MakeSmallLayout()),
                         folder.Write("process.txt", WithNumber(GetParam())), {}, &console,
                         [&](std::string_view line) { hash.Add(std::string(line) + "\n"); });
        records = hash.Text();
    } catch (const std::runtime_error&) {
        // A number that was read and then found to be of no use; never one that is not read.
        EXPECT_TRUE(console.lines.back().starts_with("ERROR: ")) << console.lines.back();
        records = "refused";
    }
    EXPECT_EQ(records, GetParam().records);
}

INSTANTIATE_TEST_SUITE_P(AcceptedArguments, StrangeNumbers, testing::ValuesIn(strangeNumbers));

}  // namespace
}  // namespace zelmo
