#include "process_run/result_files.h"

#include <utility>

#include "base/file.h"

namespace zelmo {

const ResultFile* FindResultFile(std::string_view result) {
    for (const ResultFile& row : resultFiles) {
        if (row.result == result) {
            return &row;
        }
    }
    return nullptr;
}

void WriteResult(const ProcessModel& model, std::string_view result) {
    const ResultFile* const row = FindResultFile(result);
    if (row == nullptr) {
        return;
    }
    // As text: the line ends are the platform's.
    const FilePointer file(std::fopen(row->fileName, "w"));
    if (file != nullptr) {
        row->write(model, file.get());
    }
}

bool WriteResultTo(const std::filesystem::path& folder, const ProcessModel& model,
                   std::string_view result) {
    const ResultFile* const row = FindResultFile(result);
    if (row == nullptr) {
        return true;
    }
    FilePointer file = OpenFile(folder / row->fileName, "w");
    if (file == nullptr) {
        return false;
    }
    row->write(model, file.get());
    return CloseWritten(std::move(file));
}

}  // namespace zelmo
