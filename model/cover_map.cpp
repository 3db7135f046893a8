#include "model/cover_map.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/row_bands.h"
#include "model/cover_map_lanes.h"
#include "model/grid/grid.h"
#include "model/stack.h"

// Tile by tile, and in each from the topmost layer down: one bit for each cell where the layer has
// thickness, dilated by one cell to all sides in whole words, gives the cells that it covers. A
// cell that is covered is done with, and where all cells are, the layers below are not read any
// more. The bits of a tile need no memory that could be lacking when a step has changed the layers.

namespace zelmo {

namespace {

constexpr std::int32_t wordBits = 64;
constexpr std::int32_t tileWords = 16;
constexpr std::int32_t tileCols = tileWords * wordBits;
constexpr std::int32_t tileRows = 32;
constexpr std::uint64_t allBits = std::numeric_limits<std::uint64_t>::max();

class CoverTile {
public:
    // NOLINTNEXTLINE(*-member-init): of large arrays only as much is set as is read
    CoverTile(Stack& stack, const Grid& grid, std::int32_t firstCol, std::int32_t firstRow)
        : stack_(stack),
          grid_(grid),
          firstCol_(firstCol),
          firstRow_(firstRow),
          cols_(std::min(tileCols, grid.columns - firstCol)),
          rows_(std::min(tileRows, grid.rows - firstRow)),
          words_((cols_ - 1) / wordBits + 1) {
        for (std::int32_t row = 0; row < rows_; ++row) {
            std::fill(open_[row], open_[row] + words_, allBits);
            open_[row][words_ - 1] >>= words_ * wordBits - cols_;
            openWords_[row] = (1U << words_) - 1U;
        }
    }

    void Update() {
        bool isOpen = true;
        for (std::size_t id = stack_.layers.size(); id-- > 0 && isOpen;) {
            if (stack_.layers[id] != nullptr) {
                isOpen = CoverWith(static_cast<std::int32_t>(id));
            }
        }
    }

private:
    /// Returns whether cells remain open.
    bool CoverWith(std::int32_t id) {
        const Layer& layer = *stack_.layers[static_cast<std::size_t>(id)];
        for (std::int32_t row = -1; row <= rows_; ++row) {
            DilateThickness(layer, row);
        }
        bool isOpen = false;
        for (std::int32_t row = 0; row < rows_; ++row) {
            for (std::int32_t word = 0; word < words_; ++word) {
                const std::uint64_t around =
                    layer.coversAround ? dilated_[row][word] | dilated_[row + 2][word] : 0;
                const std::uint64_t covered = open_[row][word] & (dilated_[row + 1][word] | around);
                if (covered != 0) {
                    SetCover(id, layer, row, word, covered);
                    Close(row, word, covered);
                }
            }
            isOpen = isOpen || openWords_[row] != 0;
        }
        return isOpen;
    }

    void Close(std::int32_t row, std::int32_t word, std::uint64_t cells) {
        open_[row][word] &= ~cells;
        if (open_[row][word] == 0) {
            openWords_[row] &= ~(1U << word);
        }
    }

    /// Finds where the layer has thickness in a row of the tile or next to it, dilated by one
    /// column to either side if the layer covers around.
    void DilateThickness(const Layer& layer, std::int32_t row) {
        std::uint64_t* const dilated = dilated_[row + 1];
        const std::uint32_t wanted = WordsNearOpenCells(row);
        if (wanted == 0) {
            std::fill(dilated, dilated + words_, 0);
            return;
        }
        const std::ptrdiff_t first =
            static_cast<std::ptrdiff_t>(firstRow_ + row) * grid_.columns + firstCol_;
        const float* const top = layer.top.data() + first;
        const float* const bottom = layer.bottom.data() + first;
        const auto isThick = [top, bottom](std::int32_t col) -> std::uint64_t {
            return top[col] - bottom[col] != 0.0f ? 1 : 0;
        };
        std::uint64_t edged[tileWords + 2];  // with a word for the tiles to the left and right
        std::uint64_t* const thick = edged + 1;
        ZELMO_PICK_LANES(MarkThickCells)(top, bottom, cols_, wanted, thick);
        const bool startsGrid = firstCol_ == 0;
        const bool endsGrid = firstCol_ + cols_ == grid_.columns;
        thick[-1] = startsGrid ? 0 : isThick(-1) << (wordBits - 1);
        thick[words_] = endsGrid ? 0 : isThick(cols_);
        for (std::int32_t word = 0; word < words_; ++word) {
            const std::uint64_t here = thick[word];
            if (!layer.coversAround) {
                dilated[word] = here;
                continue;
            }
            dilated[word] = here | here << 1 | here >> 1 | thick[word - 1] >> (wordBits - 1) |
                            thick[word + 1] << (wordBits - 1);
        }
    }

    /// One bit for each word of a row: whether cells are open in it or next to it. None outside the
    /// grid.
    std::uint32_t WordsNearOpenCells(std::int32_t row) const {
        if (firstRow_ + row < 0 || firstRow_ + row >= grid_.rows) {
            return 0;
        }
        std::uint32_t words = 0;
        for (std::int32_t near = std::max(row - 1, 0); near <= std::min(row + 1, rows_ - 1);
             ++near) {
            words |= openWords_[near];
        }
        return words | words << 1 | words >> 1;
    }

    void SetCover(std::int32_t id, const Layer& layer, std::int32_t row, std::int32_t word,
                  std::uint64_t cells) {
        const std::size_t first =
            static_cast<std::size_t>(firstRow_ + row) * static_cast<std::size_t>(grid_.columns) +
            static_cast<std::size_t>(firstCol_ + word * wordBits);
        CoverCell* const cover = stack_.coverMap.data() + first;
        const float* const top = layer.top.data() + first;
        if (cells == allBits) {
            for (std::int32_t i = 0; i < wordBits; ++i) {
                cover[i] = {id, top[i]};
            }
            return;
        }
        for (; cells != 0; cells &= cells - 1) {
            const std::int32_t i = std::countr_zero(cells);
            cover[i] = {id, top[i]};
        }
    }

    Stack& stack_;
    const Grid& grid_;
    std::int32_t firstCol_;
    std::int32_t firstRow_;
    std::int32_t cols_;
    std::int32_t rows_;
    std::int32_t words_;                              ///< in use
    std::uint64_t open_[tileRows][tileWords];         ///< cells that no layer covers so far
    std::uint32_t openWords_[tileRows];               ///< words of `open_` that are not 0
    std::uint64_t dilated_[tileRows + 2][tileWords];  ///< from the row before the tile on
};

}  // namespace

void UpdateCoverMap(Stack& stack, const Grid& grid) {
    const std::int32_t rows = grid.rows;
    ForRowBands((rows + tileRows - 1) / tileRows, 1, [&](std::int32_t first, std::int32_t end) {
        for (std::int32_t tile = first; tile < end; ++tile) {
            for (std::int32_t col = 0; col < grid.columns; col += tileCols) {
                CoverTile(stack, grid, col, tile * tileRows).Update();
            }
        }
    });
}

}  // namespace zelmo
