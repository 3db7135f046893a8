#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "gds/gds_point.h"
#include "model/layer_graphics.h"

// The records of the emulation. Lengths are micrometres in single precision; height 0 is the
// underside of the substrate. Arrays over the grid are row-major: index = row * gridColumns + col,
// columns run along x, rows along y, and a cell lies at (col * gridSpacing, row * gridSpacing).

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// The exposed layer at a cell, and the height of that layer's upper surface there.
struct CoverCell {
    std::int32_t layerId = 0;
    float height = 0.0f;
};

/// A grid offset and its length in micrometres.
struct NeighbourOffset {
    std::int32_t dx = 0;
    std::int32_t dy = 0;
    float distance = 0.0f;
};

/// All grid offsets, nearest first; equal distances in order of dy, then dx.
struct NeighbourTable {
    std::vector<NeighbourOffset> entries;
    std::int32_t count = 0;
};

/// A polygon selected from the layout, in database units from the grid's corner.
struct RawPolygon {
    std::vector<GdsPoint> points;
    std::uint16_t layer = 0;
};

struct MaskPoint {
    double x = 0.0;
    double y = 0.0;
};

/// The same polygon in micrometres from the grid's corner, with its bounding box.
struct MaskPolygon {
    std::vector<MaskPoint> points;
    std::uint32_t layer = 0;
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;
};

/// The kinds of step. The numbers are fixed.
enum StepKind : std::int32_t {
    StepCoating = 0,
    StepDeposition = 2,
    StepSubstrate = 3,
    StepDump = 4,
    StepPhoto = 7,
    StepEtch = 8,
    StepStrip = 9,
    StepRelease = 10,
};

/// One step of a run, as the process file gives it. Lengths in micrometres.
struct ProcessStep {
    bool maskDark = false;         ///< photo: resist stays inside the mask's polygons
    std::int32_t kind = 0;         ///< a StepKind
    float alpha = 0.0f;            ///< opacity of the new layer, 0 to 1
    std::array<float, 3> color{};  ///< red, green, blue, 0 to 1
    float depth = 0.0f;            ///< etch
    float dop = 0.0f;              ///< coating: degree of planarisation, 0 to 1
    float iso = 0.0f;              ///< etch: sideways share of the depth
    float res = 0.0f;              ///< photo: diameter of the disc that rounds the pattern
    float stepCoverage = 0.0f;     ///< deposition: sideways share of the thickness, 0.1 to 1
    float taper = 0.0f;            ///< photo: slope of the resist's edge in degrees
    float thickness = 0.0f;
    std::uint32_t maskId = 0;  ///< photo: GDS layer number
    std::string label;         ///< text in the legend
    std::string photoName;
    std::string material;              ///< what etch and release targets are matched with
    std::string materialType;          ///< what `-targets` selects by
    std::string description;           ///< text for the console and the picture
    std::string processName;           ///< name of an etch, release or strip
    std::vector<std::string> targets;  ///< etch, release: names of the materials to remove
};

/// A material layer: two surfaces over the grid. Where `top` equals `bottom` exactly, the layer
/// does not exist. Its GL objects, if it has any, live and die with it.
struct Layer {
    Layer() = default;
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;
    ~Layer();

    std::vector<float> top;
    std::vector<float> bottom;
    std::string material;
    std::string label;
    bool isPhotoresist = false;
    std::array<float, 3> color{};
    float alpha = 1.0f;
    bool meshDirty = true;
    std::uint32_t vertexBuffer = 0;
    std::uint32_t indexBuffer = 0;
    std::uint32_t vertexArray = 0;
    std::int32_t indexCount = 0;
    std::int32_t cols = 0;
    std::int32_t rows = 0;
    float spacing = 0.0f;
    LayerGraphics* graphics = nullptr;  ///< who made the GL objects; null without GL
};

/// A sampled point of the exposed surface. 28 bytes, uploaded as they stand.
struct MarkerVertex {
    float position[3] = {0.0f, 0.0f, 0.0f};
    float normal[3] = {0.0f, 0.0f, 0.0f};
    float weight = 0.95f;
};
static_assert(sizeof(MarkerVertex) == 28);

/// A lattice of ten columns of sample points over the location window.
/// Vertex j * 10 + i is marker column i, marker row j.
struct HeightMarkers {
    HeightMarkers() = default;
    HeightMarkers(const HeightMarkers&) = delete;
    HeightMarkers& operator=(const HeightMarkers&) = delete;
    ~HeightMarkers();

    float marginX = 0.0f;
    float marginY = 0.0f;
    const CoverCell* cover = nullptr;  ///< the model's cover map, not owned
    std::uint32_t rowCount = 0;
    std::int32_t columns = 0;  ///< of the grid, as `rows`
    std::int32_t rows = 0;
    float spacing = 0.0f;
    float pitch = 0.0f;  ///< distance between markers, in cells
    std::vector<MarkerVertex> vertices;
    std::uint32_t vertexCount = 0;
    std::uint32_t vertexArray = 0;
    std::uint32_t vertexBuffer = 0;
    LayerGraphics* graphics = nullptr;
};

/// The one object of a run: the process file's settings, the grid, and the stack of layers.
/// A layer's position in `layers` is its id; a deleted layer leaves an empty slot, and slots are
/// only ever appended. Slot 0 is the substrate.
struct ProcessModel {
    /// An empty model, to be filled by hand.
    ProcessModel();
    /// A model that is ready to run: reads the process file, sizes the grid, extracts the cell's
    /// polygons and builds the tables. Reports to `console`; throws when the run cannot be
    /// prepared. `graphics` may be null; otherwise the GL context must be current.
    ProcessModel(const std::filesystem::path& path, const GdsDatabase& gds, LogConsole* console,
                 LayerGraphics* graphics);
    ProcessModel(const ProcessModel&) = delete;
    ProcessModel& operator=(const ProcessModel&) = delete;
    ~ProcessModel();

    LayerGraphics* graphics = nullptr;  ///< handed to every layer; null without GL

    std::vector<CoverCell> coverMap;
    NeighbourTable neighbours;
    std::vector<std::int32_t>
        distanceIndex;  ///< truncated distance in cells -> last table position
    std::vector<MaskPolygon> polygons;
    std::int32_t gridColumns = 0;
    float windowWidth = 0.0f;
    float windowHeight = 0.0f;
    float windowX = 0.0f;
    float windowY = 0.0f;
    float cameraAngle = 0.0f;  ///< degrees, 0 to 89
    float showHeights = 0.0f;  ///< 1.0 or 0.0
    float showLegend = 0.0f;   ///< 1.0 or 0.0
    std::string cellName;
    std::int32_t gridRows = 0;
    float gridSpacing = 0.0f;
    float gridWidth = 0.0f;
    float gridHeight = 0.0f;
    float gridOriginX = 0.0f;
    float gridOriginY = 0.0f;
    float marginX = 0.0f;
    float marginY = 0.0f;
    std::vector<ProcessStep> steps;  ///< the substrate step first
    std::vector<RawPolygon> rawPolygons;
    std::vector<std::unique_ptr<Layer>> layers;
    HeightMarkers heightMarkers;
    float substrateThickness = 0.0f;
    std::int32_t layerCount = 0;  ///< non-empty slots, counted by UpdateMeshes

    std::size_t CellCount() const {
        return static_cast<std::size_t>(gridRows) * static_cast<std::size_t>(gridColumns);
    }
};

/// A layer with zero-filled surfaces of rows * cols cells, and its GL objects where `graphics` is
/// given.
std::unique_ptr<Layer> CreateLayer(std::int32_t rows, std::int32_t cols, float spacing,
                                   LayerGraphics* graphics);

/// Deletes the layer and its GL objects and leaves the pointer empty.
void DestroyLayer(std::unique_ptr<Layer>& layer);

/// Puts a layer on top of the stack.
void AppendLayer(ProcessModel& model, std::unique_ptr<Layer> layer);

}  // namespace zelmo
