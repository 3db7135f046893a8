#include <fmt/format.h>

#include <cstddef>
#include <cstdio>
#include <iterator>
#include <memory>

#include "model/grid/grid.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A text file that is written in large pieces: at 1000 columns it gets gigabytes long.
class DumpFile {
public:
    explicit DumpFile(const char* name) : file_(std::fopen(name, "w")) {}
    ~DumpFile() { Flush(); }
    DumpFile(const DumpFile&) = delete;
    DumpFile& operator=(const DumpFile&) = delete;

    bool IsOpen() const { return file_ != nullptr; }

    template <typename... Values>
    void Print(fmt::format_string<Values...> format, const Values&... values) {
        fmt::vformat_to(std::back_inserter(text_), format, fmt::make_format_args(values...));
        if (text_.size() > flushSize) {
            Flush();
        }
    }

private:
    static constexpr std::size_t flushSize = 1 << 16;

    void Flush() {
        if (file_ != nullptr) {
            std::fwrite(text_.data(), 1, text_.size(), file_.get());
        }
        text_.clear();
    }

    std::unique_ptr<std::FILE, FileCloser> file_;
    fmt::memory_buffer text_;
};

// Heights are widened before they are printed: the digits are those of the float's exact value.
void DumpCell(DumpFile& file, const Stack& stack, const Grid& grid, std::int32_t row,
              std::int32_t col) {
    const std::size_t cell =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
        static_cast<std::size_t>(col);
    const CoverCell& cover = stack.coverMap[cell];
    file.Print("\nCOVER LAYER ID: {}\tHEIGHT: {:.10f}\n", cover.layerId,
               static_cast<double>(cover.height));
    for (std::size_t id = 0; id < stack.layers.size(); ++id) {
        const Layer* layer = stack.layers[id].get();
        if (layer == nullptr) {
            continue;
        }
        const float thickness = layer->top[cell] - layer->bottom[cell];
        file.Print("M: {}\tN: {}\tL: {}\tBOT: {:.12f}\tTOP: {:.12f}\tTHI: {:.12f}\n", row, col, id,
                   static_cast<double>(layer->bottom[cell]), static_cast<double>(layer->top[cell]),
                   static_cast<double>(thickness));
    }
    file.Print("\n");
}

}  // namespace

void ExecuteDump(const Stack& stack, const Grid& grid, const ProcessStep&) {
    DumpFile file("VertexData.txt");
    if (!file.IsOpen()) {
        return;
    }
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t col = 0; col < grid.columns; ++col) {
            DumpCell(file, stack, grid, row, col);
        }
        file.Print("\n\n");
    }
}

}  // namespace zelmo
