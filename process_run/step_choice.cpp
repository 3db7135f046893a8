#include "process_run/step_choice.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <system_error>

#include "base/nearest_name.h"
#include "base/text.h"
#include "model/process.h"

namespace zelmo {

namespace {

struct KindWord {
    StepKind kind;
    std::string_view word;
};

/// The process file's commands.
constexpr KindWord kindWords[] = {
    {StepKind::Substrate, "substrate"},
    {StepKind::Coating, "coating"},
    {StepKind::Deposition, "deposition"},
    {StepKind::Photo, "photo"},
    {StepKind::Etch, "etch"},
    {StepKind::Release, "release"},
    {StepKind::Strip, "strip"},
    {StepKind::Polish, "polish"},
    {StepKind::Implant, "implant"},
    {StepKind::Dump, "dump"},
};
constexpr std::string_view firstWord = "first";
constexpr std::string_view lastWord = "last";

/// What a step can be called, the command that makes it first. Some are empty.
std::vector<std::string_view> NamesOf(const ProcessStep& step) {
    const bool makesFilm = step.kind == StepKind::Deposition || step.kind == StepKind::Coating ||
                           step.kind == StepKind::Implant;
    return {CommandWord(step.kind), step.photoName, step.processName,
            makesFilm ? std::string_view(step.material) : std::string_view(), step.description};
}

bool Fits(std::string_view word, const ProcessStep& step) {
    const std::vector<std::string_view> names = NamesOf(step);
    return std::find(names.begin(), names.end(), word) != names.end();
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Text of a process file or a command line for a message.
std::string Shown(std::string_view text) {
    return Utf8FromWide(WideFromUtf8(text));
}

/// The first and the last number that an item stands for.
struct NumberRange {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

class ChoiceReader {
public:
    explicit ChoiceReader(std::span<const ProcessStep> steps) : steps_(steps) {
        choice_.chosen.resize(steps.size());
    }

    void Read(std::string_view item) {
        if (item.empty()) {
            Fail("an item of the list is empty");
        } else if (const std::optional<NumberRange> range = ReadRange(item)) {
            ChooseRange(item, *range);
        } else {
            ChooseNamed(item);
        }
    }

    StepChoice Take() { return std::move(choice_); }

private:
    /// The number of a step, whether or not there is such a step.
    std::optional<std::uint64_t> ReadNumber(std::string_view text) const {
        if (text == firstWord || text == lastWord) {
            return text == firstWord ? 1 : steps_.size();
        }
        std::uint64_t number = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        const bool isTooLarge = error == std::errc::result_out_of_range;
        const bool isNumber = stop == end && (error == std::errc() || isTooLarge);
        return isNumber ? std::optional(isTooLarge ? UINT64_MAX : number) : std::nullopt;
    }

    std::optional<NumberRange> ReadRange(std::string_view item) const {
        if (const std::optional<std::uint64_t> number = ReadNumber(item)) {
            return NumberRange{*number, *number};
        }
        const std::size_t dash = item.find('-');
        if (dash == std::string_view::npos) {
            return std::nullopt;
        }
        const std::optional<std::uint64_t> first = ReadNumber(Trimmed(item.substr(0, dash)));
        const std::optional<std::uint64_t> last = ReadNumber(Trimmed(item.substr(dash + 1)));
        return first && last ? std::optional(NumberRange{*first, *last}) : std::nullopt;
    }

    void ChooseRange(std::string_view item, const NumberRange& range) {
        if (range.first < 1 || std::max(range.first, range.last) > steps_.size()) {
            Fail(fmt::format("there is no step {}: they are numbered from 1, the substrate, to {}",
                             item, steps_.size()));
        } else if (range.first > range.last) {
            Fail(fmt::format("the range {} ends before it begins", item));
        } else {
            const auto begin = choice_.chosen.begin();
            std::fill(begin + static_cast<std::ptrdiff_t>(range.first - 1),
                      begin + static_cast<std::ptrdiff_t>(range.last), true);
        }
    }

    void ChooseNamed(std::string_view word) {
        bool fitsAny = false;
        for (std::size_t i = 0; i < steps_.size(); ++i) {
            if (Fits(word, steps_[i])) {
                choice_.chosen[i] = true;
                fitsAny = true;
            }
        }
        if (!fitsAny) {
            Fail(fmt::format("\"{}\" fits no step of the process; {}", Shown(word), WayOut(word)));
        }
    }

    /// What may have been meant in place of a word.
    std::string WayOut(std::string_view word) const {
        std::vector<std::string_view> known{firstWord, lastWord};
        for (const ProcessStep& step : steps_) {
            const std::vector<std::string_view> names = NamesOf(step);
            std::copy_if(names.begin(), names.end(), std::back_inserter(known),
                         [](std::string_view name) { return !name.empty(); });
        }
        if (const std::string_view nearest = NearestName(word, known); !nearest.empty()) {
            return fmt::format("the nearest name is \"{}\"", Shown(nearest));
        }
        return fmt::format(
            "it takes numbers (1 to {}), ranges, first, last, commands such as deposition, and the "
            "names of the process file",
            steps_.size());
    }

    void Fail(std::string reason) {
        if (choice_.failure.empty()) {
            choice_.failure = std::move(reason);
        }
    }

    std::span<const ProcessStep> steps_;
    StepChoice choice_;
};

}  // namespace

std::string_view CommandWord(StepKind kind) {
    return std::find_if(std::begin(kindWords), std::end(kindWords),
                        [&](const KindWord& row) { return row.kind == kind; })
        ->word;
}

StepChoice ChooseSteps(std::string_view list, std::span<const ProcessStep> steps) {
    if (list.empty()) {
        return {std::vector<bool>(steps.size(), true), {}};
    }
    ChoiceReader reader(steps);
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        reader.Read(Trimmed(list.substr(start, end - start)));
        start = end + 1;
    }
    return reader.Take();
}

}  // namespace zelmo
