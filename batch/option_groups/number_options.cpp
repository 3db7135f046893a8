#include <fmt/format.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/number_argument.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

/// Reads each text into as many numbers; the reason why not, or nothing.
template <std::size_t count>
std::string TakeNumbers(const std::vector<std::string>& texts, const char* option, const char* form,
                        std::vector<std::array<double, count>>& taken) {
    for (const std::string& text : texts) {
        std::array<double, count> values{};
        if (!ReadNumbers(text, std::span(values))) {
            return fmt::format(
                "{}: \"{}\" is not {}: {} numbers in the unit of the process file's "
                "location, with commas and no blanks in between",
                option, text, form, count);
        }
        taken.push_back(values);
    }
    return {};
}

class NumberOptions : public OptionGroup {
public:
    void Add(CLI::App& app) override {
        app.add_option("--probe", probes_,
                       "The stack at this place, in the unit of the process file's location, after "
                       "each step, as a table behind the lines of the run; may be given again")
            ->type_name("X,Y")
            ->allow_extra_args(false);
        app.add_option("--csv", csv_, "File for the numbers of the probes")->type_name("FILE");
        app.add_option("--json", json_, "The same as JSON")->type_name("FILE");
        app.add_option("--cut", cuts_,
                       "The section along this line after each step, as an SVG picture and a CSV "
                       "file; may be given again")
            ->type_name("X0,Y0,X1,Y1")
            ->allow_extra_args(false);
        app.add_option("--cuts", cutFolder_, "Folder for the cuts (default: that of the pictures)")
            ->type_name("DIR");
        app.add_option("--stretch", stretch_,
                       "How many times the pictures of cuts stretch heights (default: 1, true "
                       "proportions)")
            ->type_name("FACTOR");
        app.add_option("--summary", summary_,
                       "File for what each layer measures after each step, with the inputs, times "
                       "and notes, as JSON")
            ->type_name("FILE");
    }

    std::string Take(const CLI::App& app, BatchOptions& options) override {
        NumberChoice& numbers = options.numbers;
        std::string failure = TakeNumbers(probes_, "--probe", "X,Y", numbers.probes);
        if (failure.empty()) {
            failure = TakeNumbers(cuts_, "--cut", "X0,Y0,X1,Y1", numbers.cuts);
        }
        if (failure.empty()) {
            failure = TakeStretch(app, numbers);
        }
        if (failure.empty()) {
            failure = WhatIsMissing(app);
        }
        const auto takeFile = [&](const char* option, const std::string& text,
                                  std::optional<std::filesystem::path>& file) {
            if (failure.empty()) {
                failure = TakePath(app, option, text, "file", file);
            }
        };
        takeFile("--csv", csv_, numbers.probeCsv);
        takeFile("--json", json_, numbers.probeJson);
        takeFile("--summary", summary_, numbers.summary);
        return failure.empty() ? TakeFolder(app, "--cuts", cutFolder_, numbers.cutFolder) : failure;
    }

private:
    std::string TakeStretch(const CLI::App& app, NumberChoice& numbers) const {
        if (app.count("--stretch") == 0) {
            return {};
        }
        const std::optional<double> factor = ReadNumber<double>(stretch_);
        constexpr double most = 1e6;
        if (!factor || *factor <= 0.0 || *factor > most) {
            return fmt::format("--stretch: \"{}\" is no number above 0, up to 1000000", stretch_);
        }
        numbers.stretch = *factor;
        return {};
    }

    /// An option that says something about another one, which is not there.
    std::string WhatIsMissing(const CLI::App& app) const {
        for (const char* const option : {"--csv", "--json"}) {
            if (app.count(option) > 0 && probes_.empty()) {
                return fmt::format("{} needs a --probe X,Y", option);
            }
        }
        for (const char* const option : {"--cuts", "--stretch"}) {
            if (app.count(option) > 0 && cuts_.empty()) {
                return fmt::format("{} needs a --cut X0,Y0,X1,Y1", option);
            }
        }
        return {};
    }

    std::vector<std::string> probes_;
    std::vector<std::string> cuts_;
    std::string csv_;
    std::string json_;
    std::string cutFolder_;
    std::string stretch_;
    std::string summary_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeNumberOptions() {
    return std::make_unique<NumberOptions>();
}

}  // namespace zelmo
