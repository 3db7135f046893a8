#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <vector>

namespace zelmo {

/// The numbers that are asked for. Coordinates are those of the layout in the unit of the process
/// file.
struct NumberChoice {
    std::vector<std::array<double, 2>> probes;      ///< x, y
    std::vector<std::array<double, 4>> cuts;        ///< x0, y0, x1, y1
    std::optional<std::filesystem::path> probeCsv;  ///< files of the probes' numbers
    std::optional<std::filesystem::path> probeJson;
    std::optional<std::filesystem::path> cutFolder;  ///< none: where the pictures go
    double stretch = 1.0;                            ///< of heights in the pictures of cuts
    std::optional<std::filesystem::path> summary;
};

}  // namespace zelmo
