#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gds/cell_places.h"
#include "gds/layout_contents.h"
#include "gds/text_places.h"
#include "layout_tool/layout_reading.h"
#include "model/mask/mask_layer.h"
#include "process_run/view_choice.h"

namespace zelmo {

struct ProcessFile;

/// What a window cuts of some shapes: how many have a share in it, and the sum of the shares' areas
/// in um2.
struct WindowCut {
    std::uint64_t shapes = 0;
    double area = 0.0;
};

/// A step that uses a mask.
struct MaskUse {
    std::string photo;
    std::int32_t line = 0;  ///< of the process file
    bool dark = false;      ///< resist stays inside the polygons
};

/// A mask of a process, which can have several steps.
struct MaskFacts {
    std::vector<MaskLayer> layers;
    std::string text;  ///< as the process file has it: "66/20,66/44"
    std::vector<MaskUse> uses;
    std::size_t number = 0;        ///< among the masks of the process, from 0
    std::array<float, 3> color{};  ///< of the film that it shapes, or that fills its openings
    bool hasColor = false;
    std::vector<std::size_t> rows;  ///< of the cell's layers, those with shapes
    WindowCut cut;
};

/// Where another cell is placed in a cell.
struct PlaceFacts {
    std::size_t cell = 0;  ///< that one
    CellPlaces places;
};

/// What is known of one cell.
struct CellFacts {
    std::size_t cell = 0;
    std::vector<MaskLayer> only;  ///< the layers that were chosen; none: all
    CellLayers layers;            ///< these alone
    /// Of the layers: how many with shapes come before it in the cell, chosen or not
    std::vector<std::size_t> numbers;
    std::vector<PlacedText> texts;  ///< by layer, type, string and place
    FlatCount allTexts;             ///< of the layers, listed or not
    std::optional<PlaceFacts> places;
    std::vector<ContainedCell> usedIn;
    std::vector<MaskFacts> masks;  ///< of the process, in the order of the first steps
    std::optional<GivenWindow> window;
    std::vector<WindowCut> cuts;  ///< of the layers, where there is a window
    std::string cutFailure;       ///< why there are no cuts, in words
};

/// Layers and texts of a cell that is not endless; at most `mostTexts` texts.
CellFacts FindCellFacts(const LayoutReading& reading, std::size_t cell, std::size_t mostTexts);

/// The same of chosen layers alone, which the cell has: `layers` are all of its layers.
CellFacts FindCellFacts(const LayoutReading& reading, std::size_t cell, std::size_t mostTexts,
                        const CellLayers& layers, std::vector<MaskLayer> only);

/// The masks of a process, each once, with the rows of the cell's layers that they have.
std::vector<MaskFacts> FindMasks(const ProcessFile& process, const CellLayers& layers);

/// Those of them that have a part on the chosen layers.
std::vector<MaskFacts> FindMasks(const ProcessFile& process, const CellFacts& facts);

/// Cuts the layers and the masks with the window.
void CutWithWindow(const LayoutReading& reading, CellFacts& facts);

/// The share of a polygon that lies in a rectangle, as an area; the units are those of the points.
/// Parts that go round the other way count as their own polygon's area does.
double AreaWithin(const std::vector<GdsPoint>& points, double x0, double y0, double x1, double y1);

}  // namespace zelmo
