#pragma once

#include <pybind11/pybind11.h>

namespace zelmo {

struct PythonRun;

using RunClass = pybind11::class_<PythonRun, std::shared_ptr<PythonRun>>;

// What the module consists of, a file each.

void AddLayoutClass(pybind11::module_& module);
RunClass AddRunClass(pybind11::module_& module);

/// Layers and the cover map as arrays, and states that travel between processes.
void AddStackViews(RunClass& run);

/// Probes, sections, numbers.
void AddResults(pybind11::module_& module, RunClass& run);

/// Pictures, models and pages.
void AddPictures(pybind11::module_& module, RunClass& run);

/// Waits until no step that was left is executed any more.
void AddEnd(pybind11::module_& module);

}  // namespace zelmo
