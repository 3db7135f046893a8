#include "gds/stream_blocks.h"

#include <algorithm>

#include "gds/record_codes.h"

namespace zelmo {

namespace {

/// Where a piece can begin.
struct Cut {
    std::size_t at = 0;
    PieceStart start;
};

/// Goes from record to record, and looks no closer than it must to know where pieces can begin.
class PieceCutter {
public:
    /// The block's bytes up to `end` begin in the file at `offset`.
    PieceCutter(StreamBlock& block, std::size_t end, std::uint64_t offset, std::size_t pieceSize,
                const PieceStart& start)
        : block_(block),
          end_(end),
          offset_(offset),
          pieceSize_(pieceSize),
          here_(start),
          begin_{0, start},
          lastCut_{0, start} {
        block.pieces.clear();
    }

    /// Passes whole records to the end of the bytes or of the library, and tells what follows.
    RecordStatus PassRecords() {
        while (end_ - at_ >= recordHeadSize) {
            const std::uint8_t* const bytes = block_.bytes.get() + at_;
            const std::size_t length = StreamU16(bytes);
            if (length < recordHeadSize) {
                return RecordStatus::BadLength;
            }
            if (end_ - at_ < length) {
                return RecordStatus::Read;
            }
            at_ += length;
            const std::uint16_t code = StreamU16(bytes + 2);
            if (code == record::endel || code == record::endstr) {
                PassEnd(code == record::endel);
            } else if (code == record::pathtype && length >= recordHeadSize + 2) {
                const std::uint16_t type = StreamU16(bytes + recordHeadSize);
                here_.type1Seen = here_.type1Seen || type == 1;
                here_.type4Seen = here_.type4Seen || type == 4;
            } else if (code == record::endlib) {
                return RecordStatus::EndOfFile;
            }
        }
        return RecordStatus::Read;
    }

    /// Fills a record that the file cuts short with zeros.
    void CompleteRecord() {
        if (end_ - at_ >= recordHeadSize) {
            const std::size_t end = at_ + StreamU16(block_.bytes.get() + at_);
            std::fill(block_.bytes.get() + end_, block_.bytes.get() + end, std::uint8_t{0});
            end_ = end;
        }
    }

    /// Makes all records that were passed the last piece.
    void EndWithRecords() { EndPiece({at_, here_}); }

    /// Leaves what follows the last good end to the next block, unless that is too much.
    void EndWithCut() {
        if (at_ - lastCut_.at > longestRecord) {
            EndWithRecords();
        } else {
            EndPiece(lastCut_);
        }
    }

    std::span<const std::uint8_t> Rest() const {
        return {block_.bytes.get() + begin_.at, end_ - begin_.at};
    }
    std::uint64_t RestOffset() const { return offset_ + begin_.at; }
    const PieceStart& NextStart() const { return begin_.start; }

private:
    void PassEnd(bool inStructure) {
        here_.inStructure = inStructure;
        lastCut_ = {at_, here_};
        if (at_ - begin_.at >= pieceSize_) {
            EndPiece(lastCut_);
        }
    }

    void EndPiece(const Cut& cut) {
        if (cut.at != begin_.at) {
            block_.pieces.push_back(
                {{block_.bytes.get() + begin_.at, cut.at - begin_.at}, RestOffset(), begin_.start});
        }
        begin_ = cut;
    }

    StreamBlock& block_;
    std::size_t end_;
    std::uint64_t offset_;
    std::size_t pieceSize_;
    std::size_t at_ = 0;  ///< behind the records that were passed
    PieceStart here_;
    Cut begin_;  ///< of the piece
    Cut lastCut_;
};

}  // namespace

StreamBlocks::StreamBlocks(LayoutBytes& bytes, const PieceSizes& sizes)
    : file_(bytes), sizes_(sizes) {}

void StreamBlocks::Read(StreamBlock& block) {
    block.pieces.clear();
    if (!block.bytes) {
        // A rest is at most a longest record and a part of one, which may have to be completed.
        block.bytes =
            std::make_unique_for_overwrite<std::uint8_t[]>(sizes_.block + 3 * longestRecord);
    }
    std::copy(rest_.begin(), rest_.end(), block.bytes.get());
    const std::size_t read = file_.Read(block.bytes.get() + rest_.size(), sizes_.block);
    block.next = CutIntoPieces(block, rest_.size() + read, read < sizes_.block);
}

RecordStatus StreamBlocks::CutIntoPieces(StreamBlock& block, std::size_t end, bool fileEnds) {
    PieceCutter cutter(block, end, restOffset_, sizes_.piece, start_);
    const bool unreadable = file_.Failed();
    RecordStatus next = cutter.PassRecords();
    if (next == RecordStatus::Read && fileEnds) {
        if (!unreadable) {
            cutter.CompleteRecord();
            next = cutter.PassRecords();
        }
        if (next == RecordStatus::Read) {
            next = unreadable ? RecordStatus::Unreadable : RecordStatus::EndOfFile;
        }
    }
    if (next == RecordStatus::Read) {
        cutter.EndWithCut();
    } else {
        cutter.EndWithRecords();
    }
    rest_ = cutter.Rest();
    restOffset_ = cutter.RestOffset();
    block.nextOffset = restOffset_;
    block.nextCode =
        next == RecordStatus::BadLength ? StreamU16(rest_.data() + 2) : std::uint16_t{0};
    start_ = cutter.NextStart();
    return next;
}

}  // namespace zelmo
