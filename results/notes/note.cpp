#include "results/notes/note.h"

#include <fmt/format.h>

#include "base/text.h"

namespace zelmo {

std::string NoteLine(const Note& note) {
    const std::string file = Utf8FromWide(PathText(note.file));
    const std::string place = note.line > 0 ? fmt::format("{}:{}", file, note.line) : file;
    return fmt::format("note: {}: {} [{}]", place, note.text, note.kind);
}

}  // namespace zelmo
