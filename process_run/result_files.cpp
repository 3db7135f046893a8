#include "process_run/result_files.h"

#include <memory>

namespace zelmo {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

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
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(row->fileName, "w"));
    if (file != nullptr) {
        row->write(model, file.get());
    }
}

}  // namespace zelmo
