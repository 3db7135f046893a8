#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>

namespace zelmo {

/// Writes the pieces 0 to `count` - 1 of a text to a file, one behind the other. They are made on
/// all cores (base/row_bands.h), and while one of them is written others are made. `make` writes a
/// piece to `out`, at most `longest` bytes, and returns its end; it is called from several threads
/// at once and throws nothing. Each thread has memory for one piece. What cannot be written is
/// lost, without a word.
void WriteTextPieces(std::FILE* file, std::size_t count, std::size_t longest,
                     const std::function<char*(std::size_t piece, char* out)>& make);

}  // namespace zelmo
