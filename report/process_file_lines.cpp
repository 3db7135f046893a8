#include "report/process_file_lines.h"

#include <string_view>

#include "base/file.h"
#include "results/readable_text.h"

namespace zelmo {

std::vector<std::string> ProcessFileLines(const std::filesystem::path& path) {
    std::vector<std::string> lines;
    const FilePointer stream = OpenFile(path, "rb");
    std::string line;
    while (stream && ReadTextLine(stream.get(), line)) {
        lines.push_back(ReadableText(std::string_view(line).substr(0, line.find('\n'))));
    }
    return lines;
}

}  // namespace zelmo
