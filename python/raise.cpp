#include "python/raise.h"

#include <pybind11/pybind11.h>

#include "gds/layout_error.h"
#include "python/texts.h"

namespace zelmo {

namespace {

namespace py = pybind11;

[[noreturn]] void Raise(const char* name, const py::args& arguments) {
    const py::object type = py::module_::import("zelmo._errors").attr(name);
    PyErr_SetObject(type.ptr(), type(*arguments).ptr());
    throw py::error_already_set();
}

}  // namespace

void RaiseError(const char* name, const std::string& message) {
    Raise(name, py::args(py::make_tuple(TextObject(message))));
}

void RaiseLayoutError(const std::string& message, const std::string& file,
                      const LayoutError* error) {
    py::object code = py::none();
    py::object byte = py::none();
    py::object cell = py::none();
    if (error != nullptr) {
        code = py::int_(LayoutErrorCode(error->kind));
        byte = py::int_(error->byte);
        cell = TextObject(error->cell);
    }
    Raise("LayoutError",
          py::args(py::make_tuple(TextObject(message), TextObject(file), code, byte, cell)));
}

void RaiseProcessError(const std::string& message, const std::string& file,
                       const std::vector<std::pair<std::int32_t, std::string>>& errors) {
    py::list lines;
    for (const auto& [line, text] : errors) {
        lines.append(py::make_tuple(line, TextObject(text)));
    }
    Raise("ProcessError", py::args(py::make_tuple(TextObject(message), TextObject(file), lines)));
}

}  // namespace zelmo
