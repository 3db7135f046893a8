#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "gds/layout_bytes.h"
#include "gds/stream_records.h"

// A stream file in large blocks, each cut into pieces that can be read at the same time.

namespace zelmo {

/// What is known where a piece begins, provided that the records before it are in order: no element
/// is open there.
struct PieceStart {
    bool inStructure = false;
    bool type1Seen = false;  ///< a path of that type
    bool type4Seen = false;

    bool operator==(const PieceStart&) const = default;
};

/// A run of whole records. All but the last of a file end behind an element or a structure where
/// there is one to be found.
struct StreamPiece {
    std::span<const std::uint8_t> bytes;
    std::uint64_t offset = 0;  ///< of the first of them in the file, unpacked
    PieceStart start;
};

struct StreamBlock {
    std::vector<StreamPiece> pieces;
    /// What follows the pieces: a record in the next block, the end, or one that is not readable.
    RecordStatus next = RecordStatus::Read;
    std::uint64_t nextOffset = 0;  ///< of that in the file
    std::uint16_t nextCode = 0;    ///< of a record of bad length
    std::unique_ptr<std::uint8_t[]> bytes;
};

/// About how many bytes a block and its pieces have.
struct PieceSizes {
    std::size_t block = std::size_t{1} << 21;
    std::size_t piece = std::size_t{1} << 18;
};

/// Reads the blocks of a file, one after the other.
class StreamBlocks {
public:
    /// A file that cannot be opened shows as an unreadable first record. The bytes live longer.
    StreamBlocks(LayoutBytes& bytes, const PieceSizes& sizes);

    /// Reads the next block, into any but the one that was read last: that one's end may be the
    /// beginning of this. Nothing follows a record that ends the library.
    void Read(StreamBlock& block);

private:
    RecordStatus CutIntoPieces(StreamBlock& block, std::size_t end, bool fileEnds);

    LayoutBytes& file_;
    PieceSizes sizes_;
    std::span<const std::uint8_t> rest_;  ///< behind the pieces of the last block
    std::uint64_t restOffset_ = 0;        ///< in the file
    PieceStart start_;                    ///< of the next piece
};

}  // namespace zelmo
