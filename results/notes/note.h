#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zelmo {

/// Something that is probably not meant, though it can be run.
struct Note {
    std::string_view kind;       ///< what `--allow` calls it
    std::filesystem::path file;  ///< in which it is to be mended, as the user named it
    std::int32_t line = 0;       ///< of the file; 0: the file as a whole
    std::string text;            ///< what was seen, and a way out; one line of UTF-8
};

/// The line for the user: "note: process.txt:31: ... [kind]".
std::string NoteLine(const Note& note);

}  // namespace zelmo
