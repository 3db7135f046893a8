#include "layout_tool/svg_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/xml_text.h"
#include "layout_tool/shown_text.h"

namespace zelmo {

std::string ShownXmlText(std::string_view bytes) {
    return XmlText(ShownText(bytes));
}

std::string ShortXmlText(std::string_view bytes, std::size_t most) {
    const std::string text = ShownText(bytes);
    if (CharacterCount(text) <= most) {
        return XmlText(text);
    }
    std::size_t characters = 0;
    const auto end = std::find_if(text.begin(), text.end(), [&](char byte) {
        characters += (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u ? 1 : 0;
        return characters == most;
    });
    return XmlText(std::string(text.begin(), end)) + "\xE2\x80\xA6";
}

std::string SvgColor(const std::array<float, 3>& color) {
    const auto byte = [](float share) {
        return static_cast<int>(std::round(std::clamp(share, 0.0f, 1.0f) * 255.0f));
    };
    return fmt::format("#{:02X}{:02X}{:02X}", byte(color[0]), byte(color[1]), byte(color[2]));
}

std::string SvgPath(const std::vector<GdsPoint>& points) {
    std::string path;
    GdsPoint last = points.at(0);
    fmt::format_to(std::back_inserter(path), "M{} {}", last.x, last.y);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const GdsPoint point = points[i];
        const std::int64_t dx = point.x - last.x;
        const std::int64_t dy = point.y - last.y;
        last = point;
        if (i + 1 == points.size() && point == points[0]) {
            break;
        }
        if (dy == 0) {
            fmt::format_to(std::back_inserter(path), "h{}", dx);
        } else if (dx == 0) {
            fmt::format_to(std::back_inserter(path), "v{}", dy);
        } else {
            fmt::format_to(std::back_inserter(path), "l{} {}", dx, dy);
        }
    }
    return path + "z";
}

}  // namespace zelmo
