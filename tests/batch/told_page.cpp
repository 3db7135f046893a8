#include "tests/batch/told_page.h"

#include <cstddef>

#include "tests/batch/batch_fixture.h"

namespace zelmo {

namespace {

constexpr const char* beginOfRun = "id=\"run\">";

/// Where the JSON of a page begins and ends; both npos for a text that is no page.
struct Extent {
    std::size_t start = std::string::npos;
    std::size_t end = std::string::npos;
};

Extent FindRun(const std::string& page) {
    const std::size_t begin = page.find(beginOfRun);
    if (begin == std::string::npos) {
        return {};
    }
    const std::size_t start = begin + std::string(beginOfRun).size();
    const std::size_t end = page.find("</script>", start);
    return end == std::string::npos ? Extent() : Extent{start, end};
}

}  // namespace

nlohmann::json ToldPage(const std::string& page) {
    const auto [start, end] = FindRun(page);
    return end == std::string::npos ? nlohmann::json()
                                    : nlohmann::json::parse(page.substr(start, end - start));
}

std::string PageWithoutTimes(const std::string& page) {
    nlohmann::json run = ToldPage(page);
    if (run.is_null()) {
        return {};
    }
    for (nlohmann::json& step : run["steps"]) {
        step["seconds"] = 0;
        for (nlohmann::json& line : step["console"]) {
            line = MaskTimes(line.get<std::string>());
        }
    }
    const auto [start, end] = FindRun(page);
    return page.substr(0, start) + run.dump() + page.substr(end);
}

}  // namespace zelmo
