#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace zelmo {

/// What a page tells (docs/report-format.md); null for a text that is no page.
nlohmann::json ToldPage(const std::string& page);

/// A page without the times of its run: two runs that do the same have the same.
std::string PageWithoutTimes(const std::string& page);

}  // namespace zelmo
