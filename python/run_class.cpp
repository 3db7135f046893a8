#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include "base/stop_scope.h"
#include "command_line/reasons.h"
#include "command_line/window_argument.h"
#include "model/grid/places.h"
#include "process_file/settings_limits.h"
#include "process_file/substitution.h"
#include "process_run/step_choice.h"
#include "python/classes.h"
#include "python/python_run.h"
#include "python/raise.h"
#include "python/texts.h"
#include "report/argument_meanings.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

namespace py = pybind11;

/// How long Ctrl-C may go unseen.
constexpr std::chrono::milliseconds lookInterval(50);

/// Steps that nobody waits for any more. The module's end waits for them: what they use must not
/// go before they do.
class LeftSteps {
public:
    void Add(std::shared_ptr<StepTask> task) {
        Forget();
        process_ = getpid();
        tasks_.push_back(std::move(task));
    }
    void WaitForAll() {
        Forget();
        for (const auto& task : tasks_) {
            while (!task->WaitFor(std::chrono::seconds(1))) {
            }
        }
        tasks_.clear();
    }

private:
    /// Those that have ended, and in a forked child, which has none of its parent's threads, all.
    void Forget() {
        if (process_ != getpid()) {
            // Their locks may be held for ever.
            new std::vector<std::shared_ptr<StepTask>>(std::move(tasks_));
            tasks_.clear();
        }
        std::erase_if(tasks_,
                      [](const auto& task) { return task->WaitFor(std::chrono::seconds(0)); });
    }

    int process_ = 0;
    std::vector<std::shared_ptr<StepTask>> tasks_;
};

/// One for the process, as threads are.
LeftSteps& TheLeftSteps() {
    static auto* const steps = new LeftSteps;  // the end of the process is not its end
    return *steps;
}

/// What Python gives for a window: nothing, a text, or four numbers.
WindowChoice WindowOf(const py::object& window) {
    if (window.is_none()) {
        return {};
    }
    if (py::isinstance<py::str>(window)) {
        WindowArgument argument = ParseWindowArgument(window.cast<std::string>());
        if (!argument.failure.empty()) {
            throw py::value_error(argument.failure.substr(argument.failure.find("window")));
        }
        return argument.window;
    }
    const auto [x, y, width, height] = window.cast<std::array<float, 4>>();
    if (!(width > 0.0f) || !(height > 0.0f)) {
        throw py::value_error("window: its width and its height are to be above 0");
    }
    return GivenWindow{x, y, width, height};
}

VariableValues ValuesOf(const py::dict& given) {
    VariableValues values;
    for (const auto& [key, value] : given) {
        const auto name = key.cast<std::string>();
        auto text = value.cast<std::string>();
        if (!IsVariableName(name)) {
            throw py::value_error("set: \"" + name +
                                  "\" is no name of a variable, which has letters, digits and "
                                  "underscores, no digit first");
        }
        if (const auto why = WhyNoValue(text)) {
            throw py::value_error("set: the value of " + name + " " + std::string(*why));
        }
        values.emplace(name, std::move(text));
    }
    return values;
}

ViewChoice ViewOf(const py::dict& set, const py::object& cell, const py::object& window,
                  const std::optional<std::int32_t>& columns, const std::optional<float>& angle) {
    ViewChoice view;
    view.variables = ValuesOf(set);
    if (!cell.is_none()) {
        view.cell = cell.cast<std::string>();
    }
    view.window = WindowOf(window);
    if (columns && !IsGridColumns(*columns)) {
        throw py::value_error("columns: a whole number from 200 to 2000");
    }
    view.gridColumns = columns;
    if (angle && !IsCameraAngle(*angle)) {
        throw py::value_error("angle: degrees from 0 to 90");
    }
    view.cameraAngle = angle;
    return view;
}

std::shared_ptr<PythonRun> MakeRun(const std::shared_ptr<LoadedLayout>& layout,
                                   const py::bytes& text, const py::bytes& name,
                                   const std::vector<std::string>& dataFolders, const py::dict& set,
                                   const py::object& cell, const py::object& window,
                                   const std::optional<std::int32_t>& columns,
                                   const std::optional<float>& angle) {
    RunInputs inputs{layout, text, std::string(name), {}, {}};
    inputs.dataFolders.assign(dataFolders.begin(), dataFolders.end());
    inputs.view = ViewOf(set, cell, window, columns, angle);
    PlanResult result;
    {
        const py::gil_scoped_release release;
        result = MakePlan(std::move(inputs));
    }
    if (result.plan == nullptr) {
        RaiseProcessError(result.failure, name, result.errors);
    }
    return std::make_shared<PythonRun>(std::move(result.plan));
}

/// Marks a run as executing, for as long as it lives.
class Executing {
public:
    explicit Executing(PythonRun& run) : run_(run) {
        run.RefuseIfBusy();
        run.executingProcess = getpid();
        run.stopIsAsked = false;
    }
    ~Executing() { run_.executingProcess = 0; }
    Executing(const Executing&) = delete;
    Executing& operator=(const Executing&) = delete;

private:
    PythonRun& run_;
};

std::shared_ptr<StepTask> StartStep(const PythonRun& run) {
    try {
        return StepTask::Start(run.plan, run.position, run.dumps);
    } catch (const std::system_error& error) {
        throw std::runtime_error(std::string("no thread can be started for a step: ") +
                                 error.what());
    }
}

/// Waits for a step; false where it was told to end before its end.
bool AwaitStep(const PythonRun& run, StepTask& task) {
    for (;;) {
        {
            const py::gil_scoped_release release;
            if (task.WaitFor(lookInterval)) {
                return true;
            }
        }
        if (run.stopIsAsked || PyErr_CheckSignals() != 0) {
            return false;
        }
    }
}

void DoStep(PythonRun& run) {
    if (run.position.done.size() >= run.Model().steps.size()) {
        return;
    }
    const Executing executing(run);
    const std::shared_ptr<StepTask> task = StartStep(run);
    if (!AwaitStep(run, *task)) {
        task->Stop();
        TheLeftSteps().Add(task);
        if (PyErr_Occurred() != nullptr) {
            throw py::error_already_set();
        }
        RaiseError("Stopped", "the step was stopped; the run stands behind the one before it");
    }
    try {
        run.position = task->Take();
    } catch (const std::filesystem::filesystem_error& error) {
        errno = error.code().value();
        PyErr_SetFromErrnoWithFilename(PyExc_OSError, error.path1().c_str());
        throw py::error_already_set();
    }
}

py::tuple NoteTuple(const Note& note) {
    return py::make_tuple(std::string(note.kind), TextObject(TextOf(note.file)), note.line,
                          TextObject(note.text));
}

py::list NoteList(const std::vector<Note>& notes) {
    py::list list;
    for (const Note& note : notes) {
        list.append(NoteTuple(note));
    }
    return list;
}

py::dict ArgumentsDict(const RunPlan& plan, const ProcessStep& step) {
    py::dict arguments;
    for (const CommandText& command : plan.commands) {
        if (command.line == step.line) {
            for (const PageArgument& argument : ArgumentsOf(command.text)) {
                arguments[TextObject(argument.name)] = TextObject(argument.value);
            }
        }
    }
    return arguments;
}

/// Number, name, kind, line and arguments of a step.
py::tuple StepTuple(const PythonRun& run, std::size_t index) {
    const ProcessStep& step = run.Model().steps.at(index);
    return py::make_tuple(index + 1, TextObject(ReadableText(step.description)),
                          std::string(CommandWord(step.kind)), step.line,
                          ArgumentsDict(*run.plan, step));
}

py::tuple Done(const PythonRun& run, std::size_t index) {
    const DoneStep& done = run.position.done.at(index);
    return py::make_tuple(done.seconds, NoteList(done.notes));
}

std::vector<std::size_t> Choose(const PythonRun& run, const std::string& list) {
    const StepChoice choice = ChooseSteps(list, run.Model().steps);
    if (!choice.failure.empty()) {
        throw py::value_error(choice.failure);
    }
    std::vector<std::size_t> chosen;
    for (std::size_t index = 0; index < choice.chosen.size(); ++index) {
        if (choice.chosen[index]) {
            chosen.push_back(index);
        }
    }
    return chosen;
}

py::dict Settings(const PythonRun& run) {
    const ProcessSettings& settings = run.Model().settings;
    const Grid& grid = run.Model().grid;
    py::dict dict;
    dict["cell"] = TextObject(ReadableText(settings.cellName));
    dict["columns"] = grid.columns;
    dict["rows"] = grid.rows;
    dict["spacing"] = grid.spacing;
    dict["window"] = py::make_tuple(settings.windowX, settings.windowY, settings.windowWidth,
                                    settings.windowHeight);
    dict["angle"] = settings.cameraAngle;
    dict["unit"] = std::string(LayoutUnitName(settings));
    return dict;
}

py::tuple Fingerprints(const PythonRun& run) {
    py::list list;
    for (const Fingerprint& fingerprint : run.plan->fingerprints) {
        list.append(
            py::bytes(reinterpret_cast<const char*>(fingerprint.data()), fingerprint.size()));
    }
    return py::tuple(list);
}

/// Whether the run's fingerprint up to so many steps is this one. No step: the grid is to fit.
bool Agrees(const PythonRun& run, const PythonRun& other) {
    const std::size_t done = other.position.done.size();
    const auto& own = run.plan->fingerprints;
    return done > 0 && done <= own.size() && own[done - 1] == other.plan->fingerprints[done - 1];
}

void Adopt(PythonRun& run, const PythonRun& other) {
    const Executing notNow(run);
    if (!Agrees(run, other)) {
        throw py::value_error(
            "the runs differ before the other's last executed step, so that this one cannot go on "
            "there; Run.fingerprints tell how far they agree");
    }
    run.position = other.position;
}

std::shared_ptr<PythonRun> Copy(const PythonRun& run) {
    auto copy = std::make_shared<PythonRun>(run.plan);
    copy->position = run.position;
    copy->dumps = run.dumps;
    return copy;
}

void SetDumps(PythonRun& run, const std::optional<std::string>& folder) {
    run.dumps = folder ? std::optional<std::filesystem::path>(*folder) : std::nullopt;
}

}  // namespace

void PythonRun::RefuseIfBusy() const {
    if (executingProcess == getpid()) {
        throw std::runtime_error("the run is busy: another thread executes a step of it");
    }
}

RunClass AddRunClass(py::module_& module) {
    RunClass run(module, "Run");
    run.def(py::init(&MakeRun))
        .def("set_dumps", SetDumps)
        .def("step", DoStep)
        .def("stop", [](PythonRun& self) { self.stopIsAsked = true; })
        .def("done", [](const PythonRun& self) { return self.position.done.size(); })
        .def("step_count", [](const PythonRun& self) { return self.Model().steps.size(); })
        .def("step_facts", StepTuple)
        .def("step_done", Done)
        .def("notes", [](const PythonRun& self) { return NoteList(self.plan->notes); })
        .def("choose", Choose)
        .def("settings", Settings)
        .def("fingerprints", Fingerprints)
        .def("adopt", Adopt)
        .def("copy", Copy)
        .def("fresh", [](const PythonRun& self) { return std::make_shared<PythonRun>(self.plan); });
    return run;
}

void AddEnd(py::module_& module) {
    module.def("wait_for_left_steps", [] {
        const py::gil_scoped_release release;
        TheLeftSteps().WaitForAll();
    });
}

}  // namespace zelmo
