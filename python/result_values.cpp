#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/file_digest.h"
#include "base/sha256.h"
#include "base/version.h"
#include "command_line/reasons.h"
#include "model/grid/places.h"
#include "python/classes.h"
#include "python/python_run.h"
#include "python/texts.h"
#include "results/layer_measurer.h"
#include "results/readable_text.h"
#include "results/section.h"
#include "results/section_svg.h"
#include "results/stack_column.h"
#include "results/summary.h"
#include "results/window_places.h"

namespace zelmo {

namespace {

namespace py = pybind11;

void RefuseOutside(const ProcessSettings& settings, const Place& given) {
    if (const std::string reason = WhyOutside(settings, given); !reason.empty()) {
        throw py::value_error(reason);
    }
}

/// Number, material and label of a layer, each none in a gap, and from where to where it goes.
py::tuple PartTuple(const ColumnPart& part) {
    if (!part.layer) {
        return py::make_tuple(py::none(), py::none(), py::none(), part.from, part.to);
    }
    return py::make_tuple(part.layer->number, part.layer->material, part.layer->label, part.from,
                          part.to);
}

py::list Probe(const PythonRun& run, double x, double y) {
    const ProcessSettings& settings = run.Model().settings;
    RefuseOutside(settings, {x, y});
    const ProcessModel view = run.plan->View(run.position.stack);
    const GridPosition position = PositionOnGrid(view.grid, FromLayoutUnit(settings, {x, y}));
    py::list parts;
    for (const ColumnPart& part : ReadStackColumn(view, position)) {
        parts.append(PartTuple(part));
    }
    return parts;
}

/// The last executed step, as numbers are told under it.
StepName LastStep(const PythonRun& run) {
    const std::size_t done = run.position.done.size();
    return done > 0 ? NameOf(run.Model().steps[done - 1], done - 1) : StepName{};
}

/// A section with all that its files are made from.
struct PythonSection {
    Section section;
    std::vector<CutPoint> points;
    ProcessSettings settings;
    std::string name;
};

PythonSection TakeSection(const PythonRun& run, const std::array<double, 4>& ends) {
    const auto [x0, y0, x1, y1] = ends;
    const ProcessSettings& settings = run.Model().settings;
    RefuseOutside(settings, {x0, y0});
    RefuseOutside(settings, {x1, y1});
    if (x0 == x1 && y0 == y1) {
        throw py::value_error("the cut ends where it begins; Run.probe tells the stack at a place");
    }
    const ProcessModel view = run.plan->View(run.position.stack);
    StepName step = LastStep(run);
    const py::gil_scoped_release release;
    SectionTaker taker(view.grid,
                       {FromLayoutUnit(settings, {x0, y0}), FromLayoutUnit(settings, {x1, y1})});
    return {taker.Take(view, std::move(step)), taker.Points(), settings,
            CutName(1, ends, settings)};
}

template <typename Get>
py::array_t<double> PointArray(const PythonSection& cut, const Get& get) {
    py::array_t<double> array(static_cast<py::ssize_t>(cut.points.size()));
    double* out = array.mutable_data();
    for (const CutPoint& point : cut.points) {
        *out++ = get(point);
    }
    return array;
}

py::array_t<double> HeightArray(const std::vector<double>& heights) {
    return py::array_t<double>(static_cast<py::ssize_t>(heights.size()), heights.data());
}

py::list SectionLayers(const PythonSection& cut) {
    py::list layers;
    for (const CutLayer& layer : cut.section.layers) {
        const LayerFacts& facts = layer.facts;
        layers.append(py::make_tuple(
            facts.number, facts.material, facts.label, py::tuple(py::cast(facts.color)),
            facts.alpha, HeightArray(layer.heights->bottom), HeightArray(layer.heights->top)));
    }
    return layers;
}

py::str SectionSvgText(const PythonSection& cut, double stretch) {
    const SectionView view{HeightsOf({&cut.section, 1}), stretch, cut.name};
    return TextObject(SectionSvg(cut.section, cut.points, view));
}

std::vector<SummaryInput> InputsOf(const std::vector<std::array<std::string, 3>>& given) {
    std::vector<SummaryInput> inputs;
    inputs.reserve(given.size());
    for (const auto& [role, path, digest] : given) {
        inputs.push_back({role, ReadableText(path), digest});
    }
    return inputs;
}

/// What is told of the steps so far, with the layers of the last one.
std::vector<SummaryStep> StepsSoFar(const PythonRun& run) {
    std::vector<SummaryStep> steps;
    for (const DoneStep& done : run.position.done) {
        const std::size_t index = steps.size();
        const ProcessStep& step = run.Model().steps[index];
        steps.push_back({NameOf(step, index), step.line, done.seconds, 0.0, std::nullopt});
    }
    if (!steps.empty()) {
        LayerMeasurer measurer(run.Model().grid, run.Model().settings);
        const Stack stack = CopyStack(run.position.stack);
        const py::gil_scoped_release release;
        steps.back().layers = measurer.Measure(stack);
    }
    return steps;
}

/// The summary as the text of a JSON file. `inputs` are role, path and digest of each.
py::str SummaryText(const PythonRun& run, const std::vector<std::array<std::string, 3>>& inputs) {
    std::vector<Note> notes = run.plan->notes;
    for (const DoneStep& done : run.position.done) {
        notes.insert(notes.end(), done.notes.begin(), done.notes.end());
    }
    Summary summary{"zelmo", programVersion, run.position.done.size() == run.Model().steps.size(),
                    InputsOf(inputs), StepsSoFar(run)};
    return TextObject(SummaryJson(summary, run.Model().settings, notes, run.plan->ProcessName()));
}

}  // namespace

void AddResults(py::module_& module, RunClass& run) {
    py::class_<PythonSection>(module, "Section")
        .def("along",
             [](const PythonSection& cut) {
                 return PointArray(cut, [](const CutPoint& point) { return point.along; });
             })
        .def("x",
             [](const PythonSection& cut) {
                 return PointArray(cut, [](const CutPoint& point) { return point.place.x; });
             })
        .def("y",
             [](const PythonSection& cut) {
                 return PointArray(cut, [](const CutPoint& point) { return point.place.y; });
             })
        .def("layers", SectionLayers)
        .def("csv",
             [](const PythonSection& cut) {
                 return TextObject(SectionCsv(cut.section, cut.points, cut.settings));
             })
        .def("svg", SectionSvgText);
    run.def("probe", Probe).def("section", TakeSection).def("summary", SummaryText);
    module.def("text_digest", [](const py::bytes& text) {
        const auto bytes = static_cast<std::string_view>(text);
        Sha256 hash;
        hash.Add({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        return hash.Digest();
    });
    module.def("file_digest",
               [](const py::bytes& path) { return FileDigest(static_cast<std::string>(path)); });
}

}  // namespace zelmo
