#include "report/page_json.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <nlohmann/json.hpp>

#include "report/page.h"

namespace zelmo {

namespace {

using Json = nlohmann::ordered_json;

constexpr int formatNumber = 1;

/// Micrometres or seconds without what lies behind a millionth.
double Rounded(double value) {
    const double rounded = std::round(value * 1e6) / 1e6;
    return rounded == 0.0 ? 0.0 : rounded;  // no negative zero
}

Json RoundedList(const std::vector<double>& values) {
    Json json = Json::array();
    for (const double value : values) {
        json.push_back(Rounded(value));
    }
    return json;
}

Json PlaceJson(std::span<const std::uint8_t> bytes, PageData& data) {
    const auto [offset, length] = data.Add(bytes);
    return {{"offset", offset}, {"length", length}};
}

Json JsonOf(const PagePicture& picture, PageData& data) {
    if (picture.bytes.empty()) {
        return {};
    }
    Json json{{"type", "image/webp"}, {"width", picture.width}, {"height", picture.height}};
    json.update(PlaceJson(picture.bytes, data));
    return json;
}

Json JsonOf(const std::vector<PageNote>& notes, bool withFile) {
    Json json = Json::array();
    for (const PageNote& note : notes) {
        json.push_back({{"kind", note.kind}, {"text", note.text}, {"line", note.line}});
        if (withFile) {
            json.back()["file"] = note.file;
        }
    }
    return json;
}

Json JsonOf(const std::vector<PageArgument>& arguments) {
    Json json = Json::array();
    for (const PageArgument& argument : arguments) {
        json.push_back(
            {{"name", argument.name}, {"value", argument.value}, {"meaning", argument.meaning}});
    }
    return json;
}

/// A share as a number from 0 to 255.
int ByteOf(float share) {
    return static_cast<int>(std::lround(std::clamp(share, 0.0f, 1.0f) * 255.0f));
}

Json JsonOf(const PageLayer& layer) {
    const auto& [red, green, blue] = layer.facts.color;
    return {{"number", layer.facts.number},
            {"name", layer.facts.label},
            {"material", layer.facts.material},
            {"color", {ByteOf(red), ByteOf(green), ByteOf(blue), ByteOf(layer.facts.alpha)}},
            {"top", layer.top},
            {"bottom", layer.bottom}};
}

Json JsonOf(const PageStep& step, PageData& data) {
    Json json{{"number", step.number},
              {"name", step.name},
              {"kind", step.kind},
              {"line", step.line},
              {"seconds", Rounded(step.seconds)},
              {"arguments", JsonOf(step.arguments)},
              {"notes", JsonOf(step.notes, false)},
              {"console", step.console},
              {"picture", JsonOf(step.picture, data)},
              {"thumbnail", JsonOf(step.thumbnail, data)},
              {"layers", Json::array()},
              {"chunk", step.stack.chunk}};
    for (const PageLayer& layer : step.stack.layers) {
        json["layers"].push_back(JsonOf(layer));
    }
    return json;
}

Json JsonOf(const PageChunk& chunk, PageData& data) {
    Json json = PlaceJson(chunk.stream, data);
    json["fields"] = Json::array();
    for (const std::int32_t base : chunk.bases) {
        json["fields"].push_back({{"base", base}});
    }
    return json;
}

/// Everything that is told once.
Json HeadJson(const Page& page) {
    return {{"format", formatNumber},
            {"program", page.program},
            {"title", page.title},
            {"layout", page.layout},
            {"cell", page.cell},
            {"window",
             {{"x", Rounded(page.windowX)},
              {"y", Rounded(page.windowY)},
              {"dx", Rounded(page.windowWidth)},
              {"dy", Rounded(page.windowHeight)}}},
            {"unit", page.unit},
            {"zero", Rounded(page.zero)},
            {"quantum", pageQuantum},
            {"stepCount", page.stepCount},
            {"grid", {{"x", RoundedList(page.positions.x)}, {"y", RoundedList(page.positions.y)}}},
            {"processFile", page.processFile},
            {"notes", JsonOf(page.notes, true)}};
}

/// JSON in whose texts HTML finds nothing that ends or begins an element.
std::string WithoutMarkup(const std::string& json) {
    constexpr std::array escapes{std::pair('<', "\\u003c"), std::pair('>', "\\u003e"),
                                 std::pair('&', "\\u0026")};
    std::string text;
    text.reserve(json.size());
    for (const char character : json) {
        const auto* const escape =
            std::find_if(escapes.begin(), escapes.end(),
                         [&](const auto& pair) { return pair.first == character; });
        if (escape != escapes.end()) {
            text += escape->second;
        } else {
            text.push_back(character);
        }
    }
    return text;
}

}  // namespace

PageData::Place PageData::Add(std::span<const std::uint8_t> bytes) {
    const Place place{size_, bytes.size()};
    pieces_.push_back(bytes);
    size_ += bytes.size();
    return place;
}

std::string PageJson(const Page& page, PageData& data) {
    Json json = HeadJson(page);
    json["steps"] = Json::array();
    for (const PageStep& step : page.steps) {
        json["steps"].push_back(JsonOf(step, data));
    }
    json["chunks"] = Json::array();
    for (const PageChunk& chunk : page.chunks) {
        json["chunks"].push_back(JsonOf(chunk, data));
    }
    return WithoutMarkup(json.dump(-1, ' ', true, Json::error_handler_t::replace));
}

}  // namespace zelmo
