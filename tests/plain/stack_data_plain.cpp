#include "tests/plain/stack_data_plain.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// Text that is written in large pieces: at 1000 columns it gets gigabytes long.
class TextWriter {
public:
    explicit TextWriter(std::FILE* file) : file_(file) {}
    ~TextWriter() { Flush(); }
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

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
        std::fwrite(text_.data(), 1, text_.size(), file_);
        text_.clear();
    }

    std::FILE* file_;
    fmt::memory_buffer text_;
};

// Heights are widened before they are printed: the digits are those of the float's exact value.
void WriteCell(TextWriter& file, const Stack& stack, const Grid& grid, std::int32_t row,
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

void WriteStackDataPlain(const ProcessModel& model, std::FILE* file) {
    TextWriter writer(file);
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            WriteCell(writer, model.stack, model.grid, row, col);
        }
        writer.Print("\n\n");
    }
}

}  // namespace zelmo
