#include "process_file/mask_argument.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "process_file/arguments.h"
#include "process_file/reader_state.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

constexpr std::uint32_t largestNumber = 65535;

/// The part of `rest` in front of the next separator, which is taken off with it. Nothing is left
/// behind the last part.
std::string_view TakePart(std::optional<std::string_view>& rest, char separator) {
    const std::size_t end = rest->find(separator);
    const std::string_view part = rest->substr(0, end);
    rest = end == std::string_view::npos ? std::nullopt : std::optional(rest->substr(end + 1));
    return part;
}

std::optional<std::uint32_t> NumberOf(std::string_view text) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), IsAsciiDigit)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(WholeNumber(text));
}

std::optional<MaskLayer> MaskLayerOf(std::string_view text) {
    std::optional<std::string_view> rest = text;
    const std::optional<std::uint32_t> layer = NumberOf(TakePart(rest, '/'));
    if (!layer) {
        return std::nullopt;
    }
    if (!rest) {
        return MaskLayer{*layer, std::nullopt};
    }
    const std::optional<std::uint32_t> datatype = NumberOf(*rest);
    return datatype ? std::optional(MaskLayer{*layer, datatype}) : std::nullopt;
}

std::vector<MaskLayer> MaskOf(std::string_view text) {
    std::vector<MaskLayer> mask;
    for (std::optional<std::string_view> rest = text; rest;) {
        const std::optional<MaskLayer> layer = MaskLayerOf(TakePart(rest, ','));
        if (!layer) {
            return {};
        }
        mask.push_back(*layer);
    }
    return mask;
}

bool IsTooLarge(const MaskLayer& layer) {
    return std::max(layer.layer, layer.datatype.value_or(0)) > largestNumber;
}

}  // namespace

std::vector<MaskLayer> ReadMask(ReaderState& state, std::string_view line,
                                std::string_view argument) {
    std::vector<MaskLayer> mask = MaskOf(BlankSeparatedValue(line, argument));
    if (mask.empty()) {
        ReadInteger(state, line, argument);  // and reports why it is none
    }
    if (std::any_of(mask.begin(), mask.end(), IsTooLarge)) {
        ReportError(state, "Invalid %s value", argument);
    }
    return mask;
}

}  // namespace zelmo
