#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/layer_box.h"
#include "gds/layout_contents.h"
#include "gds/layout_error.h"
#include "gds/layout_repairs.h"
#include "gds/polygon_extraction.h"
#include "process_run/mask_polygons.h"
#include "python/classes.h"
#include "python/raise.h"
#include "python/run_plan.h"
#include "python/texts.h"

namespace zelmo {

namespace {

namespace py = pybind11;

using LayoutPointer = std::shared_ptr<const LoadedLayout>;
/// Layers as Python has them: a datatype below 0 stands for all.
using LayerChoice = std::optional<std::vector<std::pair<std::int64_t, std::int64_t>>>;

constexpr std::int64_t everywhere = std::int64_t{1} << 40;  // beyond what a file can hold

bool IsChosen(const LayerChoice& layers, const RawPolygon& polygon) {
    return !layers || std::any_of(layers->begin(), layers->end(), [&](const auto& layer) {
        return layer.first == polygon.layer &&
               (layer.second < 0 || layer.second == polygon.datatype);
    });
}

LayoutPointer MakeLayout(const std::string& path, bool repair) {
    LayoutReading reading;
    {
        const py::gil_scoped_release release;
        reading = ReadLayout(path, repair);
    }
    if (reading.layout == nullptr) {
        RaiseLayoutError(reading.failure, path, reading.error.get());
    }
    return reading.layout;
}

py::list CellNames(const LoadedLayout& layout) {
    py::list names;
    for (const GdsCell& cell : layout.database->cells) {
        names.append(TextObject(NameText(cell.name)));
    }
    return names;
}

py::list TopCells(const LoadedLayout& layout) {
    std::vector<CellContents> contents;
    {
        const py::gil_scoped_release release;
        contents = CountCells(*layout.database);
    }
    py::list names;
    for (std::size_t i = 0; i < contents.size(); ++i) {
        if (contents[i].isTop) {
            names.append(TextObject(NameText(layout.database->cells[i].name)));
        }
    }
    return names;
}

std::size_t CellIndex(const GdsDatabase& database, const std::string& name) {
    for (std::size_t i = 0; i < database.cells.size(); ++i) {
        if (NameText(database.cells[i].name) == name) {
            return i;
        }
    }
    throw py::key_error("the layout has no cell " + name);
}

py::list LayersOf(const LoadedLayout& layout, const std::string& cell) {
    const std::size_t index = CellIndex(*layout.database, cell);
    CellLayers found;
    {
        const py::gil_scoped_release release;
        found = CountLayers(*layout.database, index);
    }
    py::list layers;
    for (const LayerContents& layer : found.layers) {
        if (!(layer.shapes == FlatCount{})) {
            layers.append(py::make_tuple(layer.layer, layer.datatype));
        }
    }
    return layers;
}

[[noreturn]] void RefuseExtraction(const LoadedLayout& layout, ExtractionRefusal refusal,
                                   const std::string& cell) {
    if (refusal == ExtractionRefusal::UnknownCell) {
        throw py::key_error("the layout has no cell " + cell);
    }
    RaiseLayoutError(ExtractionFailureLine(refusal, cell), layout.path.string(), nullptr);
}

py::object BoxOf(const LoadedLayout& layout, const std::string& cell, const LayerChoice& layers) {
    LayerBox found;
    {
        const py::gil_scoped_release release;
        found = FindLayerBox(*layout.database, cell,
                             [&](const RawPolygon& polygon) { return IsChosen(layers, polygon); });
    }
    if (found.refusal) {
        RefuseExtraction(layout, *found.refusal, cell);
    }
    if (!found.box) {
        return py::none();
    }
    const double unit = layout.database->micronsPerUnit;
    const auto microns = [&](std::int64_t units) { return static_cast<double>(units) * unit; };
    return py::make_tuple(microns(found.box->xmin), microns(found.box->ymin),
                          microns(found.box->xmax), microns(found.box->ymax));
}

/// The window in units of the layout; all of the layout where none is given.
ExtractionWindow WindowInUnits(const std::optional<std::array<double, 4>>& window, double unit) {
    if (!window) {
        return {-everywhere, -everywhere, everywhere, everywhere, 0};
    }
    const auto [x, y, width, height] = *window;
    const auto units = [&](double microns) {
        return std::clamp(TruncateToI64(std::round(microns / unit)), -everywhere, everywhere);
    };
    return {units(x), units(y), units(x + width), units(y + height), 0};
}

py::object PolygonObject(const RawPolygon& polygon, const ExtractionWindow& window, double unit) {
    py::array_t<double> points(
        std::vector<py::ssize_t>{static_cast<py::ssize_t>(polygon.points.size()), 2});
    double* out = points.mutable_data();
    for (const GdsPoint& point : polygon.points) {
        *out++ = static_cast<double>(SaturatingAdd(point.x, window.x0)) * unit;
        *out++ = static_cast<double>(SaturatingAdd(point.y, window.y0)) * unit;
    }
    return py::make_tuple(polygon.layer, polygon.datatype, points);
}

py::list PolygonsOf(const LoadedLayout& layout, const std::string& cell, const LayerChoice& layers,
                    const std::optional<std::array<double, 4>>& given) {
    const double unit = layout.database->micronsPerUnit;
    const ExtractionWindow window = WindowInUnits(given, unit);
    PolygonExtraction found;
    {
        const py::gil_scoped_release release;
        found = ExtractPolygons(*layout.database, cell, window);
        std::erase_if(found.polygons,
                      [&](const RawPolygon& polygon) { return !IsChosen(layers, polygon); });
    }
    if (found.refusal) {
        RefuseExtraction(layout, *found.refusal, cell);
    }
    py::list polygons;
    for (const RawPolygon& polygon : found.polygons) {
        polygons.append(PolygonObject(polygon, window, unit));
    }
    return polygons;
}

}  // namespace

void AddLayoutClass(py::module_& module) {
    py::class_<LoadedLayout, std::shared_ptr<LoadedLayout>>(module, "Layout")
        .def(py::init([](const py::bytes& path, bool repair) {
                 return std::const_pointer_cast<LoadedLayout>(MakeLayout(path, repair));
             }),
             py::arg("path"), py::arg("repair"))
        .def("cells", CellNames)
        .def("top_cells", TopCells)
        .def("layers", LayersOf)
        .def("box", BoxOf)
        .def("polygons", PolygonsOf)
        .def("repairs",
             [](const LoadedLayout& layout) { return RepairLines(layout.database->repairs); })
        .def("um_per_unit",
             [](const LoadedLayout& layout) { return layout.database->micronsPerUnit; });
}

}  // namespace zelmo
