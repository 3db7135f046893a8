#include <pybind11/pybind11.h>

#include "base/row_bands.h"
#include "base/version.h"
#include "python/classes.h"
#include "python/python_run.h"

// The compiled part of the package `zelmo`: what the rooms below make, as plain Python values and
// arrays. What users see of it, with its texts, stands in python/zelmo/.

PYBIND11_MODULE(_zelmo, module) {
    module.attr("version") = zelmo::programVersion;
    module.def("threads", &zelmo::RowThreads);
    module.def("set_threads", &zelmo::SetRowThreads);
    zelmo::AddLayoutClass(module);
    zelmo::RunClass run = zelmo::AddRunClass(module);
    zelmo::AddStackViews(run);
    zelmo::AddResults(module, run);
    zelmo::AddPictures(module, run);
    zelmo::AddEnd(module);
}
