#include "layout_tool/layer_choice.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include "command_line/number_argument.h"

namespace zelmo {

namespace {

std::optional<MaskLayer> ReadLayer(std::string_view text) {
    const std::size_t slash = text.find('/');
    const auto layer = ReadNumber<std::uint16_t>(text.substr(0, slash));
    if (!layer) {
        return std::nullopt;
    }
    if (slash == std::string_view::npos) {
        return MaskLayer{*layer, std::nullopt};
    }
    const auto datatype = ReadNumber<std::uint16_t>(text.substr(slash + 1));
    return datatype ? std::optional(MaskLayer{*layer, *datatype}) : std::nullopt;
}

}  // namespace

LayerListArgument ParseLayerList(std::string_view text) {
    LayerListArgument argument;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string_view part = text.substr(begin, end - begin);
        const std::optional<MaskLayer> layer = ReadLayer(part);
        if (!layer) {
            return {{},
                    fmt::format("--layers: \"{}\" is neither a layer, such as 22, nor a layer with "
                                "a datatype, such as 33/0: numbers go up to 65535, and commas "
                                "without blanks stand between layers",
                                part)};
        }
        argument.layers.push_back(*layer);
        begin = end + 1;
    }
    return argument;
}

std::string LayerListText(std::span<const MaskLayer> layers) {
    std::string text;
    for (const MaskLayer& layer : layers) {
        text += fmt::format("{}{}", text.empty() ? "" : ",", layer.layer);
        text += layer.datatype ? fmt::format("/{}", *layer.datatype) : "";
    }
    return text;
}

std::vector<MaskLayer> UnknownLayers(std::span<const MaskLayer> wanted, const CellLayers& layers) {
    std::vector<MaskLayer> unknown;
    std::copy_if(
        wanted.begin(), wanted.end(), std::back_inserter(unknown), [&](const MaskLayer& layer) {
            return std::none_of(layers.layers.begin(), layers.layers.end(),
                                [&](const LayerContents& known) {
                                    return IsPartOf({&layer, 1}, known.layer, known.datatype);
                                });
        });
    return unknown;
}

std::string KnownLayersText(const CellLayers& layers) {
    constexpr std::size_t most = 30;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(most, layers.layers.size()); ++i) {
        names.push_back(fmt::format("{}/{}", layers.layers[i].layer, layers.layers[i].datatype));
    }
    const std::string rest = layers.layers.size() > most
                                 ? fmt::format(" and {} more", layers.layers.size() - most)
                                 : std::string();
    return names.empty() ? "no layers" : fmt::format("{}{}", fmt::join(names, ", "), rest);
}

}  // namespace zelmo
