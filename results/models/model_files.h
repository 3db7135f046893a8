#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "results/models/stack_model.h"

namespace zelmo {

// Writers of models. Each returns why the model was not written, or an empty text; `file` is open
// in binary mode and buffered, so a failure may show only when it is closed.

/// A binary glTF 2.0 file: one node with a mesh and a material for each layer, below a node that
/// leads from micrometres, z upwards, to the format's metres, y upwards. `name` is that of the
/// scene, in UTF-8.
std::string WriteGlb(const StackModel& model, const std::string& name, std::FILE* file);

/// A binary STL file: the triangles of all layers in micrometres, layer by layer. The format has no
/// room for names and colours, and `name` is cut to what its head holds.
std::string WriteStl(const StackModel& model, const std::string& name, std::FILE* file);

/// A kind of model file.
struct ModelFormat {
    std::string_view extension;  ///< of its files, without the dot
    std::string (*write)(const StackModel& model, const std::string& name, std::FILE* file);
};

/// All kinds.
inline constexpr ModelFormat modelFormats[] = {
    {"glb", WriteGlb},
    {"stl", WriteStl},
};

}  // namespace zelmo
