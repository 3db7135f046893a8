#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "gds/polygon_extraction.h"
#include "tests/batch/program.h"
#include "tests/damage/checked_files.h"
#include "tests/support/gzip_writer.h"
#include "tests/support/temp_folder.h"

// zelmo-damage [COUNT [FIRST]]: cuts every example's layout, plain and compressed, and process file
// at every byte, damages it COUNT times (1000) from the FIRST damage on (0), and checks each. Every
// check has to end with 0, or with the one line of a refusal that names the file, within bounds of
// time and memory that follow from the file's size. Now and then the real program is run in the
// check's place. The examples lie in examples/ of the current directory. With a single argument of
// 0, cuts are made at a few hundred bytes only.

namespace {

namespace fs = std::filesystem;
using namespace zelmo;

#ifdef ZELMO_SLOW_BUILD
constexpr double slowness = 30.0;
#else
constexpr double slowness = 1.0;
#endif

std::string BytesOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// One to eight bytes changed: side by side or anywhere, to anything or by a bit.
std::string Damaged(std::string bytes, std::uint32_t seed) {
    std::mt19937 random(seed);
    const bool sideBySide = random() % 2 == 0;
    const bool flips = random() % 2 == 0;
    std::size_t at = random() % bytes.size();
    for (std::uint32_t left = 1 + random() % 8; left > 0; --left) {
        const auto value = static_cast<std::uint8_t>(random());
        char& byte = bytes[at];
        byte = static_cast<char>(flips ? byte ^ (1 << (value % 8)) : value);
        at = sideBySide ? (at + 1) % bytes.size() : random() % bytes.size();
    }
    return bytes;
}

/// One file that is damaged, beside another that stays whole.
struct Subject {
    std::string name;   ///< of the file that is damaged
    std::string bytes;  ///< of that file
    fs::path whole;     ///< the other
    bool isLayout = false;
};

/// What all checks of a subject came to.
struct Summary {
    std::map<int, std::size_t> statuses;
    double seconds = 0.0;
    std::size_t peakBytes = 0;
};

class Examiner {
public:
    explicit Examiner(const Subject& subject) : subject_(subject) {}

    void Check(const std::string& bytes, bool withTheProgram) {
        const fs::path file = folder_.Write(subject_.name, bytes);
        const fs::path& layout = subject_.isLayout ? file : subject_.whole;
        const fs::path& process = subject_.isLayout ? subject_.whole : file;
        const CheckOutcome outcome = CheckFiles(layout, process);
        Judge(outcome, bytes);
        if (withTheProgram) {
            const Ended ended = RunToEnd(fs::current_path() / ZELMO_BATCH_FILE,
                                         {"--quiet", "--check", layout.string(), process.string()});
            Demand(ended.status == outcome.status, bytes, "the program ends otherwise");
            Demand(ended.errors == outcome.errors, bytes, "the program writes other lines");
        }
        ++summary_.statuses[outcome.status];
        summary_.seconds = std::max(summary_.seconds, outcome.seconds);
        summary_.peakBytes = std::max(summary_.peakBytes, outcome.peakBytes);
    }

    const Summary& Result() const { return summary_; }

private:
    void Judge(const CheckOutcome& outcome, const std::string& bytes) const {
        // A layout that is damaged may lack the cell, and then the process cannot be run.
        const bool refused = outcome.status == 3 || (outcome.status == 2 && subject_.isLayout);
        Demand(outcome.status == 0 || refused, bytes, "it ended with another status");
        if (outcome.status == 0) {
            Demand(outcome.errors.empty(), bytes, "it succeeded and wrote an error");
        } else {
            Demand(outcome.errors.starts_with("zelmo-batch: ") &&
                       std::count(outcome.errors.begin(), outcome.errors.end(), '\n') == 1 &&
                       outcome.errors.ends_with('\n'),
                   bytes, "it did not write one line");
            const std::string named = outcome.status == 2 || !subject_.isLayout
                                          ? subject_.name
                                          : subject_.whole.filename().string();
            Demand(outcome.errors.find(named) != std::string::npos, bytes,
                   "it did not name the file");
        }
        const auto size = static_cast<double>(bytes.size());
        // A damaged process file may ask for the largest grid, a damaged array for as many polygons
        // as are taken, and points of them.
        const auto points = static_cast<double>(ExtractionLimits().points);
        const double seconds = 5.0 + (subject_.isLayout ? 10.0 + points * 3e-8 : 0.0) + size * 1e-6;
        const double peakBytes =
            (subject_.isLayout ? 2.4e9 + points * sizeof(GdsPoint) : 600e6) + size * 20.0;
        Demand(outcome.seconds < slowness * seconds, bytes, "it took too long");
        Demand(static_cast<double>(outcome.peakBytes) < peakBytes, bytes,
               "it took too much memory");
    }

    void Demand(bool holds, const std::string& bytes, const char* what) const {
        if (!holds) {
            const std::string kept = "damaged-" + subject_.name;
            std::ofstream(kept, std::ios::binary) << bytes;
            throw std::runtime_error(fmt::format("{}: {} (see {})", subject_.name, what, kept));
        }
    }

    const Subject& subject_;
    TempFolder folder_;
    Summary summary_;
};

void Examine(const Subject& subject, std::uint32_t count, std::uint32_t first) {
    Examiner examiner(subject);
    examiner.Check(subject.bytes, true);
    const std::size_t stride = count == 0 ? 1 + subject.bytes.size() / 300 : 1;
    std::size_t cuts = 0;
    for (std::size_t size = 0; size < subject.bytes.size(); size += stride) {
        examiner.Check(subject.bytes.substr(0, size), ++cuts % 1000 == 0);
    }
    for (std::uint32_t seed = first; seed < first + std::max(count, 300u); ++seed) {
        examiner.Check(Damaged(subject.bytes, seed), seed % 500 == 0);
    }
    const Summary& summary = examiner.Result();
    fmt::print("{}: {} bytes, {} cuts, {} damages;", subject.name, subject.bytes.size(), cuts,
               std::max(count, 300u));
    for (const auto& [status, times] : summary.statuses) {
        fmt::print(" {} times {},", times, status);
    }
    fmt::print(" at most {:.3f} s and {:.1f} MB\n", summary.seconds,
               static_cast<double>(summary.peakBytes) / 1e6);
    std::fflush(stdout);
}

/// The process file with the smallest grid that there is.
std::string WithSmallGrid(const std::string& process) {
    return std::regex_replace(process, std::regex("-N [0-9]+"), "-N 200");
}

/// The same with a flat window, where only the layout matters.
std::string WithFlatWindow(const std::string& process) {
    return std::regex_replace(WithSmallGrid(process), std::regex("-dy [0-9.]+"), "-dy 0.5");
}

void ExamineExample(const std::string& name, std::uint32_t count, std::uint32_t first) {
    const TempFolder folder;
    const fs::path layout = fs::current_path() / "examples" / (name + ".gds");
    const std::string process = BytesOf(fs::path("examples") / (name + ".txt"));
    const fs::path flat = folder.Write("flat.txt", WithFlatWindow(process));
    Examine({name + ".gds", BytesOf(layout), flat, true}, count, first);
    const std::string bytes = BytesOf(layout);
    const auto packed = Gzipped({bytes.begin(), bytes.end()});
    Examine({name + ".gds.gz", {packed.begin(), packed.end()}, flat, true}, count, first);
    Examine({name + ".txt", WithSmallGrid(process), layout, false}, count, first);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const auto argument = [&](int index, std::uint32_t otherwise) {
            return argc > index ? static_cast<std::uint32_t>(std::stoul(argv[index])) : otherwise;
        };
        for (const char* example : {"cmos_inverter", "mems_release", "array"}) {
            ExamineExample(example, argument(1, 1000), argument(2, 0));
        }
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
