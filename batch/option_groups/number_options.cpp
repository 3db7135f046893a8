#include <fmt/format.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
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
    void Add(Arguments& arguments) override {
        arguments.AddTexts(
            "--probe", probes_,
            "The stack at this place, in the unit of the process file's location, after "
            "each step, as a table behind the lines of the run; may be given again",
            "X,Y");
        arguments.AddText("--csv", csv_, "File for the numbers of the probes", "FILE");
        arguments.AddText("--json", json_, "The same as JSON", "FILE");
        arguments.AddTexts(
            "--cut", cuts_,
            "The section along this line after each step, as an SVG picture and a CSV "
            "file; may be given again",
            "X0,Y0,X1,Y1");
        arguments.AddText("--cuts", cutFolder_,
                          "Folder for the cuts (default: that of the pictures)", "DIR");
        arguments.AddText("--stretch", stretch_,
                          "How many times the pictures of cuts stretch heights (default: 1, true "
                          "proportions)",
                          "FACTOR");
        arguments.AddText(
            "--summary", summary_,
            "File for what each layer measures after each step, with the inputs, times "
            "and notes, as JSON",
            "FILE");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        NumberChoice& numbers = options.numbers;
        std::string failure = TakeNumbers(probes_, "--probe", "X,Y", numbers.probes);
        if (failure.empty()) {
            failure = TakeNumbers(cuts_, "--cut", "X0,Y0,X1,Y1", numbers.cuts);
        }
        if (failure.empty()) {
            failure = TakeStretch(arguments, numbers);
        }
        if (failure.empty()) {
            failure = WhatIsMissing(arguments);
        }
        const auto takeFile = [&](const char* option, const std::string& text,
                                  std::optional<std::filesystem::path>& file) {
            if (failure.empty()) {
                failure = TakePath(arguments, option, text, "file", file);
            }
        };
        takeFile("--csv", csv_, numbers.probeCsv);
        takeFile("--json", json_, numbers.probeJson);
        takeFile("--summary", summary_, numbers.summary);
        return failure.empty() ? TakeFolder(arguments, "--cuts", cutFolder_, numbers.cutFolder)
                               : failure;
    }

private:
    std::string TakeStretch(const Arguments& arguments, NumberChoice& numbers) const {
        if (arguments.Count("--stretch") == 0) {
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
    std::string WhatIsMissing(const Arguments& arguments) const {
        for (const char* const option : {"--csv", "--json"}) {
            if (arguments.Count(option) > 0 && probes_.empty()) {
                return fmt::format("{} needs a --probe X,Y", option);
            }
        }
        for (const char* const option : {"--cuts", "--stretch"}) {
            if (arguments.Count(option) > 0 && cuts_.empty()) {
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
