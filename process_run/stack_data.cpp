#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "base/fixed_decimal.h"
#include "base/text_pieces.h"
#include "model/process_model.h"
#include "process_run/result_files.h"

namespace zelmo {

namespace {

/// What a piece of the text holds at most, as far as the text of one cell allows.
constexpr std::size_t pieceSize = std::size_t{1} << 20;

/// More than the labels and the whole numbers of a line take.
constexpr std::size_t longestLabels = 96;
constexpr std::size_t longestLine = longestLabels + 3 * longestFixedDecimal;

struct LayerLine {
    const Layer* layer = nullptr;
    std::string start;  ///< behind the cell's place: "L: 3\tBOT: "
};

char* Write(std::string_view text, char* out) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

/// The text of a stack, cell by cell, for pieces of the same number of cells. Line ends are '\n'.
class StackText {
public:
    explicit StackText(const ProcessModel& model) : model_(model) {
        for (std::size_t id = 0; id < model.stack.layers.size(); ++id) {
            if (const Layer* layer = model.stack.layers[id].get()) {
                lines_.push_back({layer, fmt::format("L: {}\tBOT: ", id)});
            }
        }
        cellsInPiece_ = std::max<std::size_t>(1, pieceSize / LongestCell());
    }

    std::size_t LongestPiece() const { return cellsInPiece_ * LongestCell(); }

    std::size_t PieceCount() const {
        return (model_.grid.CellCount() + cellsInPiece_ - 1) / cellsInPiece_;
    }

    char* WritePiece(std::size_t piece, char* out) const {
        const std::size_t first = piece * cellsInPiece_;
        const std::size_t end = std::min(first + cellsInPiece_, model_.grid.CellCount());
        for (std::size_t cell = first; cell < end; ++cell) {
            out = WriteCell(cell, out);
        }
        return out;
    }

private:
    /// With the cover's line, and with the blank lines as another.
    std::size_t LongestCell() const { return (lines_.size() + 2) * longestLine; }

    char* WriteCell(std::size_t cell, char* out) const {
        const auto columns = static_cast<std::size_t>(model_.grid.columns);
        const CoverCell& cover = model_.stack.coverMap[cell];
        out = fmt::format_to(out, "\nCOVER LAYER ID: {}\tHEIGHT: ", cover.layerId);
        out = Write("\n", WriteFixedDecimal<10>(cover.height, out));
        char place[longestLabels];
        const char* const end =
            fmt::format_to(place, "M: {}\tN: {}\t", cell / columns, cell % columns);
        for (const LayerLine& line : lines_) {
            out = Write({place, static_cast<std::size_t>(end - place)}, out);
            out = WriteLayer(line, cell, out);
        }
        out = Write("\n", out);
        return (cell + 1) % columns == 0 ? Write("\n\n", out) : out;
    }

    static char* WriteLayer(const LayerLine& line, std::size_t cell, char* out) {
        const float bottom = line.layer->bottom[cell];
        const float top = line.layer->top[cell];
        out = WriteFixedDecimal<12>(bottom, Write(line.start, out));
        out = WriteFixedDecimal<12>(top, Write("\tTOP: ", out));
        out = WriteFixedDecimal<12>(top - bottom, Write("\tTHI: ", out));
        return Write("\n", out);
    }

    const ProcessModel& model_;
    std::vector<LayerLine> lines_;
    std::size_t cellsInPiece_ = 1;
};

}  // namespace

void WriteStackData(const ProcessModel& model, std::FILE* file) {
    const StackText text(model);
    WriteTextPieces(file, text.PieceCount(), text.LongestPiece(),
                    [&](std::size_t piece, char* out) { return text.WritePiece(piece, out); });
}

}  // namespace zelmo
