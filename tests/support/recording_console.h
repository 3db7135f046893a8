#pragma once

#include <string>
#include <vector>

#include "base/log_console.h"
#include "base/text.h"

namespace zelmo {

/// A console that keeps its lines, as UTF-8.
class RecordingConsole : public LogConsole {
public:
    std::vector<std::string> lines;

protected:
    void AppendLine(std::wstring line) override { lines.push_back(Utf8FromWide(line)); }
};

}  // namespace zelmo
