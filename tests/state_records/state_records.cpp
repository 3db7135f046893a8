#include "tests/state_records/state_records.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>

#include <fmt/format.h>

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "model/grid/shown_window.h"
#include "model/process_model.h"
#include "process_run/prepare_run.h"
#include "render/camera.h"
#include "render/height_markers.h"
#include "render/highest_surface.h"
#include "render/mesh/layer_mesh.h"
#include "tests/state_records/fnv_hash.h"

namespace zelmo {

namespace {

/// What is told of a mesh.
struct MeshRecord {
    std::size_t indexCount = 0;
    std::size_t vertexCount = 0;
    std::string vertexHash;
    std::string indexHash;
};

template <typename Values>
std::string HashOf(const Values& values) {
    FnvHash hash;
    hash.AddAll(values);
    return hash.Text();
}

MeshRecord RecordMesh(const LayerMesh& mesh) {
    FnvHash vertexHash;
    for (const MeshVertex& vertex : mesh.vertices) {
        vertexHash.AddAll(vertex.position);
        vertexHash.AddAll(vertex.normal);
    }
    return {mesh.indices.size(), mesh.vertices.size(), vertexHash.Text(), HashOf(mesh.indices)};
}

/// A number with all its bits, as C's "%a" writes it.
std::string HexFloat(double value) {
    if (value != value) {
        return "nan";
    }
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   value < 0.0 ? -value : value, std::chars_format::hex);
    return fmt::format("{}0x{}", value < 0.0 ? "-" : "", std::string_view(digits.data(), end.ptr));
}

std::string PolygonsHash(const ProcessModel& model) {
    FnvHash hash;
    for (const MaskPolygon& polygon : model.polygons) {
        hash.Add(fmt::format("L{};", polygon.layer));
        for (const MaskPoint& point : polygon.points) {
            hash.Add(fmt::format("{},{};", HexFloat(point.x), HexFloat(point.y)));
        }
    }
    return hash.Text();
}

std::string NeighboursHash(const NeighbourTable& table) {
    FnvHash hash;
    for (const NeighbourOffset& entry : table.entries) {
        hash.Add(entry.dx);
        hash.Add(entry.dy);
        hash.Add(entry.distance);
    }
    return hash.Text();
}

std::string CoverHash(const ProcessModel& model) {
    FnvHash hash;
    for (const CoverCell& cell : model.stack.coverMap) {
        hash.Add(cell.layerId);
        hash.Add(cell.height);
    }
    return hash.Text();
}

std::string MarkersHash(const HeightMarkers& markers) {
    FnvHash hash;
    for (const MarkerVertex& vertex : markers.vertices) {
        hash.AddAll(vertex.position);
        hash.AddAll(vertex.normal);
        hash.Add(vertex.weight);
    }
    return hash.Text();
}

/// "<index>:<bottom>/<top>" of cells that are spread over the grid.
std::string CellsText(const Layer& layer) {
    constexpr std::size_t sampleCount = 24;
    std::string text;
    for (std::size_t sample = 0; sample < sampleCount; ++sample) {
        const std::size_t i = (12345 + sample * 35761) % layer.top.size();
        text += fmt::format(" {}:{}/{}", i, HexFloat(layer.bottom[i]), HexFloat(layer.top[i]));
    }
    return text;
}

void TellHead(const ProcessModel& model, const RecordSink& sink) {
    sink(fmt::format("grid {} x {} spacing {} polygons {}", model.grid.columns, model.grid.rows,
                     HexFloat(model.grid.spacing), model.polygons.size()));
    sink(fmt::format("polygons-hash {} (text L<layer>; then <x>,<y>; of each point, C hex floats)",
                     PolygonsHash(model)));
    sink(fmt::format("neighbours {} hash {}", model.grid.neighbours.count,
                     NeighboursHash(model.grid.neighbours)));
    sink(fmt::format("distance-index hash {}", HashOf(model.grid.distanceIndex)));
}

void TellState(const ProcessModel& model, const RecordSink& sink) {
    const float top = HighestSurface(model.stack.coverMap);
    const ShownWindow window = FindShownWindow(model.grid);
    const Camera camera(model.settings.windowWidth, model.settings.windowHeight, top,
                        model.settings.cameraAngle);
    sink(
        fmt::format("  top {} aspect {} picture-height {} layers {} cover {} transform {} "
                    "markers {}",
                    HexFloat(top), HexFloat(camera.aspect),
                    PictureHeight(camera, model.settings.showLegend, model.stack.layerCount),
                    model.stack.layerCount, CoverHash(model), HashOf(camera.transform),
                    MarkersHash(SampleHeightMarkers(model.grid, model.stack.coverMap))));
    for (std::size_t id = 0; id < model.stack.layers.size(); ++id) {
        if (!model.stack.layers[id]) {
            continue;
        }
        const Layer& layer = *model.stack.layers[id];
        const MeshRecord mesh =
            RecordMesh(MakeLayerMesh(layer, window.marginCols, window.marginRows));
        sink(fmt::format("  layer {} {} top {} bottom {} indices {} vertices {} mesh {} {}", id,
                         layer.label, HashOf(layer.top), HashOf(layer.bottom), mesh.indexCount,
                         mesh.vertexCount, mesh.vertexHash, mesh.indexHash));
        sink(fmt::format("    cells{}", CellsText(layer)));
    }
}

}  // namespace

void TellStateRecords(const std::filesystem::path& layout, const std::filesystem::path& process,
                      const ColorTable& colors, LogConsole* console, const RecordSink& sink) {
    GdsDatabase database;
    if (const auto error = ReadGdsFile(database, layout, console)) {
        throw std::runtime_error(
            fmt::format("the layout did not load: code {}", LayoutErrorCode(error->kind)));
    }
    const PreparedRun run = PrepareRun(process, database, colors, console);
    if (run.model == nullptr) {
        throw std::runtime_error("the run cannot be prepared");
    }
    ProcessModel& model = *run.model;
    TellHead(model, sink);
    for (std::size_t i = 0; i < model.steps.size(); ++i) {
        sink("");
        sink(fmt::format("step {} {}", i + 1, model.steps[i].description));
        ExecuteStep(model, model.steps[i], console);
        TellState(model, sink);
    }
}

}  // namespace zelmo
