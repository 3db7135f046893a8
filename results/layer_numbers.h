#pragma once

#include <optional>
#include <vector>

namespace zelmo {

struct Grid;
struct Layer;
struct ProcessSettings;
struct Stack;

/// How much of the location window each cell of the grid stands for: that part of the square of the
/// grid's spacing around it that lies in the window. A product of two shares, in cells.
struct WindowShares {
    std::vector<double> cols;  ///< 0 to 1, by column of the grid
    std::vector<double> rows;
};
WindowShares FindWindowShares(const Grid& grid, const ProcessSettings& settings);

/// What a layer measures in the window. Each cell counts with its share of the window's area; a
/// layer is at a cell where its two surfaces differ there. Without such a cell there are areas and
/// volumes of 0 and nothing else.
struct LayerNumbers {
    double area = 0.0;    ///< square micrometres
    double volume = 0.0;  ///< cubic micrometres
    struct Heights {
        double leastThickness = 0.0;  ///< all in nanometres
        double greatestThickness = 0.0;
        double meanThickness = 0.0;  ///< volume by area
        double lowestLevel = 0.0;    ///< above the substrate's upper side
        double highestLevel = 0.0;
    };
    std::optional<Heights> heights;
};

/// Measures a layer. Sums are made in double precision row by row, so that they are the same
/// everywhere.
LayerNumbers MeasureLayer(const Layer& layer, const WindowShares& shares, const Stack& stack);

}  // namespace zelmo
