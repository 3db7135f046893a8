#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "gds/gds_point.h"

namespace zelmo {

/// Any bytes as text of an XML file: readable, and with its special characters replaced.
std::string ShownXmlText(std::string_view bytes);

/// The same with at most so many characters; the last is an ellipsis where there are more.
std::string ShortXmlText(std::string_view bytes, std::size_t most);

/// "#RRGGBB" for shares from 0 to 1.
std::string SvgColor(const std::array<float, 3>& color);

/// A closed polygon as commands of an SVG path.
std::string SvgPath(const std::vector<GdsPoint>& points);

}  // namespace zelmo
