#pragma once

#include <filesystem>
#include <string>

namespace zelmo {

/// The program and the style of every page, as texts.
struct PageBundle {
    std::string script;
    std::string style;
};

/// Reads both files. Returns an empty text, or the reason why no page can be made of them: a line
/// that names the file and a way out.
std::string ReadPageBundle(const std::filesystem::path& script, const std::filesystem::path& style,
                           PageBundle& bundle);

}  // namespace zelmo
