#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "model/grid/places.h"
#include "process_run/foreign_stack.h"
#include "python/classes.h"
#include "python/python_run.h"
#include "python/raise.h"
#include "python/texts.h"
#include "results/layer_facts.h"
#include "results/notes/note_kinds.h"

namespace zelmo {

namespace {

namespace py = pybind11;

/// Values of a shared array over the grid, without a copy: the array that Python gets holds the
/// values, which steps do not write as long as somebody does.
template <typename Value, typename Item>
py::array ViewOf(const SharedArray<Item>& array, const Value* first, const Grid& grid) {
    auto held = std::make_unique<SharedArray<Item>>(array);
    const py::capsule owner(held.get(),
                            [](void* values) { delete static_cast<SharedArray<Item>*>(values); });
    static_cast<void>(held.release());
    const py::ssize_t step = sizeof(Item);
    py::array view(py::dtype::of<Value>(), std::vector<py::ssize_t>{grid.rows, grid.columns},
                   std::vector<py::ssize_t>{step * grid.columns, step}, first, owner);
    view.attr("setflags")(py::arg("write") = false);
    return view;
}

py::array SurfaceView(const SharedArray<float>& surface, const Grid& grid) {
    return ViewOf(surface, surface.data(), grid);
}

/// Slot, material, label, colour, opacity and surfaces of each layer, the lowest first.
py::list Layers(const PythonRun& run) {
    const Stack& stack = run.position.stack;
    const Grid& grid = run.Model().grid;
    py::list layers;
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        if (const Layer* const layer = stack.layers[slot].get()) {
            const LayerFacts facts = FactsOf(stack, slot);
            layers.append(py::make_tuple(
                facts.number, facts.material, facts.label,
                py::make_tuple(facts.color[0], facts.color[1], facts.color[2]), facts.alpha,
                SurfaceView(layer->top, grid), SurfaceView(layer->bottom, grid)));
        }
    }
    return layers;
}

py::tuple Cover(const PythonRun& run) {
    const SharedArray<CoverCell>& cover = run.position.stack.coverMap;
    const Grid& grid = run.Model().grid;
    return py::make_tuple(ViewOf(cover, &cover.data()->layerId, grid),
                          ViewOf(cover, &cover.data()->height, grid));
}

/// The places of the grid's columns and rows in the layout.
py::tuple Axes(const PythonRun& run) {
    const Grid& grid = run.Model().grid;
    py::array_t<double> x(grid.columns);
    py::array_t<double> y(grid.rows);
    for (std::int32_t col = 0; col < grid.columns; ++col) {
        x.mutable_at(col) = PlaceOnLayout(grid, {static_cast<double>(col), 0.0}).x;
    }
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        y.mutable_at(row) = PlaceOnLayout(grid, {0.0, static_cast<double>(row)}).y;
    }
    return py::make_tuple(x, y);
}

/// Arrays by the memory that they are in, each once.
class ArrayTable {
public:
    explicit ArrayTable(const Grid& grid) : grid_(grid) {}

    std::size_t Add(const SharedArray<float>& surface) {
        const auto [entry, isNew] = numbers_.try_emplace(surface.data(), arrays_.size());
        if (isNew) {
            arrays_.append(SurfaceView(surface, grid_));
        }
        return entry->second;
    }
    py::list Take() { return std::move(arrays_); }

private:
    const Grid& grid_;
    std::map<const float*, std::size_t> numbers_;
    py::list arrays_;
};

py::object LayerState(const Layer* layer, ArrayTable& arrays) {
    if (layer == nullptr) {
        return py::none();
    }
    return py::make_tuple(py::bytes(layer->material), py::bytes(layer->label), layer->isPhotoresist,
                          layer->coversAround, layer->color, layer->alpha, arrays.Add(layer->top),
                          arrays.Add(layer->bottom));
}

py::list DoneState(const std::vector<DoneStep>& done) {
    py::list steps;
    for (const DoneStep& step : done) {
        py::list notes;
        for (const Note& note : step.notes) {
            notes.append(py::make_tuple(std::string(note.kind), py::bytes(note.file.native()),
                                        note.line, py::bytes(note.text)));
        }
        py::list console;
        for (const std::string& line : step.console) {
            console.append(py::bytes(line));
        }
        steps.append(py::make_tuple(step.seconds, notes, console));
    }
    return steps;
}

/// The position as plain values and arrays: substrate, layers, steps and photos, then the surfaces
/// and the cover map.
py::tuple State(const PythonRun& run) {
    const Stack& stack = run.position.stack;
    const Grid& grid = run.Model().grid;
    ArrayTable arrays(grid);
    py::list layers;
    for (const auto& layer : stack.layers) {
        layers.append(LayerState(layer.get(), arrays));
    }
    return py::make_tuple(stack.substrateThickness, layers, DoneState(run.position.done),
                          run.position.stepNotes.KnownPhotos(), arrays.Take(),
                          ViewOf(stack.coverMap, &stack.coverMap.data()->layerId, grid),
                          ViewOf(stack.coverMap, &stack.coverMap.data()->height, grid));
}

template <typename Value>
using GivenArray = py::array_t<Value, py::array::c_style>;

/// An array of the grid's shape, of exactly this type.
template <typename Value>
GivenArray<Value> Given(const py::object& object, const Grid& grid, const char* what) {
    if (!py::isinstance<py::array>(object)) {
        RaiseError("StateError", std::string(what) + " is no array");
    }
    const auto array = py::reinterpret_borrow<py::array>(object);
    if (!array.dtype().equal(py::dtype::of<Value>()) || array.ndim() != 2 ||
        array.shape(0) != grid.rows || array.shape(1) != grid.columns) {
        RaiseError("StateError", std::string(what) + " has another type or shape than the grid");
    }
    return GivenArray<Value>::ensure(array);
}

std::vector<SharedArray<float>> SurfacesOf(const py::list& given, const Grid& grid) {
    std::vector<SharedArray<float>> surfaces;
    for (const py::handle item : given) {
        const auto array =
            Given<float>(py::reinterpret_borrow<py::object>(item), grid, "a surface");
        surfaces.emplace_back(std::span<const float>(array.data(), grid.CellCount()));
    }
    return surfaces;
}

SharedArray<CoverCell> CoverOf(const py::object& layers, const py::object& heights,
                               const Grid& grid) {
    const auto ids = Given<std::int32_t>(layers, grid, "the cover map");
    const auto levels = Given<float>(heights, grid, "the cover map");
    SharedArray<CoverCell> cover;
    cover.assign(grid.CellCount(), CoverCell{});
    for (std::size_t i = 0; i < grid.CellCount(); ++i) {
        cover[i] = {ids.data()[i], levels.data()[i]};
    }
    return cover;
}

std::unique_ptr<Layer> LayerOf(const py::object& given,
                               const std::vector<SharedArray<float>>& surfaces, const Grid& grid) {
    if (given.is_none()) {
        return nullptr;
    }
    const auto [material, label, isPhotoresist, coversAround, color, alpha, top, bottom] =
        given.cast<std::tuple<std::string, std::string, bool, bool, std::array<float, 3>, float,
                              std::size_t, std::size_t>>();
    auto layer = std::make_unique<Layer>();
    layer->material = material;
    layer->label = label;
    layer->isPhotoresist = isPhotoresist;
    layer->coversAround = coversAround;
    layer->color = color;
    layer->alpha = alpha;
    layer->top = surfaces.at(top);
    layer->bottom = surfaces.at(bottom);
    layer->changed = false;
    layer->version = std::make_shared<const SurfaceVersion>();
    layer->cols = grid.columns;
    layer->rows = grid.rows;
    layer->spacing = grid.spacing;
    return layer;
}

std::string_view KindOf(const std::string& name) {
    for (const NoteKind& kind : noteKinds) {
        if (kind.name == name) {
            return kind.name;
        }
    }
    RaiseError("StateError", "there is no kind of note called " + name);
}

std::vector<DoneStep> DoneOf(const py::list& given) {
    using GivenNote = std::tuple<std::string, std::string, std::int32_t, std::string>;
    std::vector<DoneStep> done;
    for (const py::handle item : given) {
        auto [seconds, notes, console] =
            item.cast<std::tuple<double, std::vector<GivenNote>, std::vector<std::string>>>();
        DoneStep step{seconds, {}, std::move(console)};
        for (auto& [kind, file, line, text] : notes) {
            step.notes.push_back({KindOf(kind), std::move(file), line, std::move(text)});
        }
        done.push_back(std::move(step));
    }
    return done;
}

RunPosition PositionOf(const PythonRun& run, const py::tuple& state) {
    if (state.size() != 7) {
        RaiseError("StateError", "the state has other parts than this version's");
    }
    const Grid& grid = run.Model().grid;
    RunPosition position(*run.plan);
    Stack& stack = position.stack;
    stack.layers.clear();
    stack.substrateThickness = state[0].cast<float>();
    const auto surfaces = SurfacesOf(state[4].cast<py::list>(), grid);
    for (const py::handle item : state[1].cast<py::list>()) {
        stack.layers.push_back(LayerOf(py::reinterpret_borrow<py::object>(item), surfaces, grid));
        stack.layerCount += stack.layers.back() != nullptr ? 1 : 0;
    }
    position.done = DoneOf(state[2].cast<py::list>());
    position.stepNotes.SetKnownPhotos(state[3].cast<std::map<std::size_t, bool>>());
    stack.coverMap = CoverOf(state[5], state[6], grid);
    return position;
}

/// Takes over a position that State made, in this process or another.
void Restore(PythonRun& run, const py::tuple& state, const py::bytes& fingerprint) {
    run.RefuseIfBusy();
    std::optional<RunPosition> position;
    try {
        position.emplace(PositionOf(run, state));
    } catch (const py::cast_error&) {
        RaiseError("StateError", "the state has parts of other types than this version's");
    } catch (const std::out_of_range&) {
        RaiseError("StateError", "the state names surfaces that it does not have");
    }
    const std::size_t done = position->done.size();
    const auto& own = run.plan->fingerprints;
    const auto given = static_cast<std::string>(fingerprint);
    if (done == 0 || done > own.size() ||
        given != std::string(own[done - 1].begin(), own[done - 1].end())) {
        RaiseError("StateError",
                   "the state is of a run that differs from this one before its last executed "
                   "step, or of another version; Run.fingerprints tell how far runs agree");
    }
    if (const std::string why = WhyNoStack(position->stack, run.Model().grid); !why.empty()) {
        RaiseError("StateError", "the state is damaged: " + why);
    }
    run.position = std::move(*position);
}

}  // namespace

void AddStackViews(RunClass& run) {
    run.def("layers", Layers)
        .def("cover", Cover)
        .def("axes", Axes)
        .def("substrate_top",
             [](const PythonRun& self) { return self.position.stack.substrateThickness; })
        .def("state", State)
        .def("restore", Restore);
}

}  // namespace zelmo
