#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

namespace zelmo {

/// Text that may hold bytes which are no UTF-8, as Python has them in file names.
inline pybind11::str TextObject(std::string_view text) {
    return pybind11::reinterpret_steal<pybind11::str>(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape"));
}

}  // namespace zelmo
