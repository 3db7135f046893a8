#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/number_argument.h"
#include "command_line/path_argument.h"
#include "command_line/whole_number.h"
#include "pictures/webp_film.h"

namespace zelmo {

namespace {

constexpr std::int32_t mostSheetColumns = 100;
constexpr double millisecondsPerSecond = 1000.0;
constexpr double leastSeconds = 0.02;

class OverviewOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText("--sheet", sheet_,
                          "File for one sheet with the pictures of all steps, each with its number "
                          "and name; they are of one size then (--same-size)",
                          "FILE.png");
        arguments.AddText("--sheet-columns", columns_,
                          "Pictures side by side on the sheet, 1 to 100 (default: what suits a "
                          "screen)",
                          "N");
        arguments.AddText("--film", film_,
                          "File for a film of the pictures, an animated WebP, as wide as the "
                          "pictures (--width); they are of one size then (--same-size)",
                          "FILE.webp");
        arguments.AddText("--film-seconds", seconds_,
                          "How long the film shows each step, 0.02 to 60 (default: 0.8)", "S");
        arguments.AddText("--film-loops", loops_,
                          "How often the film is shown, up to 65535 (default: 0, without end)",
                          "N");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        OverviewChoice& overview = options.overview;
        std::string failure = WhatIsMissing(arguments);
        if (failure.empty()) {
            failure = TakePath(arguments, "--sheet", sheet_, "file", overview.sheet);
        }
        if (failure.empty()) {
            failure = TakePath(arguments, "--film", film_, "file", overview.film);
        }
        if (failure.empty()) {
            failure = TakeColumns(arguments, overview);
        }
        if (failure.empty()) {
            failure = TakeTiming(arguments, overview.timing);
        }
        if (failure.empty() && overview.film && options.picture.width > widestFilm) {
            failure = fmt::format(
                "--film: {} pixels (--width) are too wide for a film, which has "
                "at most {}",
                options.picture.width, widestFilm);
        }
        options.sameSize = options.sameSize || overview.sheet || overview.film;
        return failure;
    }

private:
    static std::string WhatIsMissing(const Arguments& arguments) {
        for (const char* const option : {"--sheet", "--film"}) {
            if (arguments.Count(option) > 0 && arguments.Count("--no-pictures") > 0) {
                return fmt::format(
                    "{} and --no-pictures exclude each other: it is made of the "
                    "pictures",
                    option);
            }
        }
        if (arguments.Count("--sheet-columns") > 0 && arguments.Count("--sheet") == 0) {
            return "--sheet-columns needs a --sheet FILE.png";
        }
        for (const char* const option : {"--film-seconds", "--film-loops"}) {
            if (arguments.Count(option) > 0 && arguments.Count("--film") == 0) {
                return fmt::format("{} needs a --film FILE.webp", option);
            }
        }
        return {};
    }

    std::string TakeColumns(const Arguments& arguments, OverviewChoice& overview) const {
        if (arguments.Count("--sheet-columns") == 0) {
            return {};
        }
        const WholeNumber columns =
            ReadWholeNumber("--sheet-columns", columns_, 1, mostSheetColumns);
        overview.sheetColumns = columns.value;
        return columns.failure;
    }

    std::string TakeTiming(const Arguments& arguments, FilmTiming& timing) const {
        if (arguments.Count("--film-seconds") > 0) {
            const std::optional<double> seconds = ReadNumber<double>(seconds_);
            if (!seconds || *seconds < leastSeconds ||
                *seconds * millisecondsPerSecond > longestFrame) {
                return fmt::format("--film-seconds: \"{}\" is no number of seconds from {} to {}",
                                   seconds_, leastSeconds, longestFrame / millisecondsPerSecond);
            }
            timing.millisecondsEach =
                static_cast<std::int32_t>(std::lround(*seconds * millisecondsPerSecond));
        }
        if (arguments.Count("--film-loops") > 0) {
            const WholeNumber loops = ReadWholeNumber("--film-loops", loops_, 0, mostLoops);
            timing.loops = loops.value;
            return loops.failure;
        }
        return {};
    }

    std::string sheet_;
    std::string columns_;
    std::string film_;
    std::string seconds_;
    std::string loops_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeOverviewOptions() {
    return std::make_unique<OverviewOptions>();
}

}  // namespace zelmo
