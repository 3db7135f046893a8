#include "report/process_file_lines.h"

#include "base/file.h"
#include "base/text_lines.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

std::string Shown(std::string_view line) {
    return ReadableText(line.substr(0, line.find('\n')));
}

}  // namespace

std::vector<std::string> ProcessFileLines(const std::filesystem::path& path) {
    std::vector<std::string> lines;
    const FilePointer stream = OpenFile(path, "rb");
    std::string line;
    while (stream && ReadTextLine(stream.get(), line)) {
        lines.push_back(Shown(line));
    }
    return lines;
}

std::vector<std::string> LinesOfProcessText(std::string_view text) {
    std::vector<std::string> lines;
    std::string line;
    while (TakeTextLine(text, line)) {
        lines.push_back(Shown(line));
    }
    return lines;
}

}  // namespace zelmo
