#include "gds/library_reading.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/log_console.h"
#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/library_state.h"
#include "gds/record_rules.h"
#include "gds/stream_records.h"

// With several cores, the pieces of a block are read at the same time, each as if its start were
// what it is supposed to be. One after the other they are then joined to what was read before. A
// piece whose start turns out to be another is read again, from the state that the pieces before it
// led to: only damaged and very odd files have one.

namespace zelmo {

namespace {

/// What ends the records of a file at a byte, where that is an error. `code` is that of a record
/// that is too short.
std::optional<LayoutError> ErrorOf(RecordStatus status, std::uint64_t byte, std::uint16_t code) {
    switch (status) {
        case RecordStatus::Read:
        case RecordStatus::EndOfFile:
            return std::nullopt;
        case RecordStatus::BadLength:
            return LayoutError{LayoutErrorKind::RecordTooShort, byte, code, {}};
        case RecordStatus::Unreadable:
            return LayoutError{LayoutErrorKind::FileUnreadable, byte, {}, {}};
    }
    return std::nullopt;
}

/// Reads all records, one after the other. Returns the error that ends the reading, without the
/// cell's name, as all functions here do.
std::optional<LayoutError> ReadFile(LibraryState& state, LayoutBytes& bytes) {
    StreamRecords records(bytes);
    StreamRecord record;
    while (!state.endSeen) {
        const RecordStatus status = records.Next(record);
        if (status != RecordStatus::Read) {
            return ErrorOf(status, records.Offset(), record.code);
        }
        if (const auto refusal = HandleRecord(state, record)) {
            return LayoutError{*refusal, records.OffsetOf(record), record.code, {}};
        }
    }
    return std::nullopt;
}

std::optional<LayoutError> ReadPiece(LibraryState& state, const StreamPiece& piece) {
    const std::uint8_t* bytes = piece.bytes.data();
    const std::uint8_t* const end = bytes + piece.bytes.size();
    while (bytes != end) {
        const StreamRecord record = RecordAt(bytes);
        if (const auto refusal = HandleRecord(state, record)) {
            const auto byte = static_cast<std::uint64_t>(bytes - piece.bytes.data());
            return LayoutError{*refusal, piece.offset + byte, record.code, {}};
        }
        bytes = record.data.data() + record.data.size();
    }
    return std::nullopt;
}

/// Holds back what a piece has to say until those before it have spoken.
class HeldLines : public LogConsole {
public:
    std::vector<std::wstring> lines;

protected:
    void AppendLine(std::wstring line) override { lines.push_back(std::move(line)); }
};

/// Reads one piece of every block, by itself.
struct PieceReader {
    PieceReader(ElementStore& store, const LayoutOptions& options)
        : state(store, &console, options) {}

    HeldLines console;
    LibraryState state;
    std::optional<LayoutError> error;
    std::exception_ptr problem;
};

void Clear(OpenCell& cell) {
    cell.name.reset();
    cell.boundaries.clear();
    cell.srefs.clear();
    cell.arefs.clear();
    cell.texts.clear();
}

/// Brings a reader into the state that is supposed of the piece's start.
void Restart(PieceReader& reader, const PieceStart& start) {
    LibraryState& state = reader.state;
    state.head = {};
    state.inStructure = start.inStructure;
    state.warnedType1 = start.type1Seen;
    state.warnedType4 = start.type4Seen;
    state.endSeen = false;
    state.flatSeen = false;
    state.repairs = {};
    state.skipped = {};
    state.cells.clear();
    state.texts.clear();
    Clear(state.cell);
    state.open = {};
    state.continuesCell = start.inStructure;
    state.continued.reset();
    reader.console.lines.clear();
    reader.error.reset();
    reader.problem = nullptr;
}

void ReadAlone(PieceReader& reader, const StreamPiece& piece) {
    Restart(reader, piece.start);
    try {
        reader.error = ReadPiece(reader.state, piece);
    } catch (...) {
        reader.problem = std::current_exception();
    }
}

/// Whether the state is what was supposed of the piece's start.
bool IsAt(const PieceStart& start, const LibraryState& state) {
    return state.open.kind == Element::None && state.open.path.width == 0 &&
           start == PieceStart{state.inStructure, state.warnedType1, state.warnedType4};
}

void Join(OpenCell& whole, OpenCell& part) {
    if (part.name) {
        whole.name = part.name;
    }
    whole.boundaries.Take(part.boundaries);
    whole.srefs.Take(part.srefs);
    whole.arefs.Take(part.arefs);
    whole.texts.Take(part.texts);
}

void Add(SkippedElements& sum, const SkippedElements& others) {
    sum.texts += others.texts;
    sum.nodes += others.nodes;
    sum.boxes += others.boxes;
}

/// Brings the whole from the start of a piece to where its reader has come to.
void Join(LibraryState& whole, LibraryState& part) {
    if (part.head.version) {
        whole.head.version = part.head.version;
    }
    if (part.head.units) {
        whole.head.units = part.head.units;
    }
    if (part.continued) {
        Join(whole.cell, *part.continued);
        CompleteCell(whole);
    }
    for (const CellTexts& texts : part.texts) {
        whole.texts.push_back({whole.cells.size() + texts.cell, texts.texts});
    }
    whole.cells.Take(part.cells);
    Join(whole.cell, part.cell);
    whole.inStructure = part.inStructure;
    whole.warnedType1 = part.warnedType1;
    whole.warnedType4 = part.warnedType4;
    whole.endSeen = part.endSeen;
    whole.flatSeen = whole.flatSeen || part.flatSeen;
    AddPaths(whole.repairs, part.repairs);
    Add(whole.skipped, part.skipped);
    std::swap(whole.open, part.open);
}

/// Adds a piece to the whole, which has come to its start.
std::optional<LayoutError> AddPiece(LibraryState& whole, PieceReader& reader,
                                    const StreamPiece& piece) {
    if (!IsAt(piece.start, whole)) {
        return ReadPiece(whole, piece);
    }
    for (std::wstring& line : reader.console.lines) {
        whole.console->Write(std::move(line));
    }
    if (reader.problem) {
        std::rethrow_exception(reader.problem);
    }
    Join(whole, reader.state);
    return reader.error;
}

/// Does the tasks 0 to count - 1 on all cores. They are begun in this order.
void RunTasks(std::size_t count, const std::function<void(std::size_t task)>& run) {
    std::atomic<std::size_t> next{0};
    ForRowBands(static_cast<std::int32_t>(count), 1, [&](std::int32_t, std::int32_t) {
        for (std::size_t task = next++; task < count; task = next++) {
            run(task);
        }
    });
}

/// A block, and what came of its pieces.
struct BlockReading {
    StreamBlock block;
    std::deque<PieceReader> readers;
};

void AddReaders(BlockReading& reading, std::deque<ElementStore>& stores,
                const LayoutOptions& options) {
    while (reading.readers.size() < reading.block.pieces.size()) {
        reading.readers.emplace_back(stores.emplace_back(), options);
    }
}

/// Adds all pieces of a block to the whole.
std::optional<LayoutError> AddBlock(LibraryState& whole, BlockReading& reading) {
    const StreamBlock& block = reading.block;
    for (std::size_t i = 0; i < block.pieces.size(); ++i) {
        if (auto error = AddPiece(whole, reading.readers[i], block.pieces[i])) {
            return error;
        }
    }
    return whole.endSeen ? std::nullopt : ErrorOf(block.next, block.nextOffset, block.nextCode);
}

/// Reads all records: while one block is being fetched, the pieces of the one before are read and
/// those of the one before that are added to the whole.
std::optional<LayoutError> ReadFileInPieces(LibraryState& whole, std::deque<ElementStore>& stores,
                                            LayoutBytes& bytes, const PieceSizes& sizes,
                                            const LayoutOptions& options) {
    StreamBlocks blocks(bytes, sizes);
    BlockReading fetched;
    BlockReading read;
    BlockReading added;
    std::optional<LayoutError> error;
    blocks.Read(fetched.block);
    while (!error && added.block.next == RecordStatus::Read) {
        std::swap(added, read);
        std::swap(read, fetched);
        AddReaders(read, stores, options);
        RunTasks(read.block.pieces.size() + 2, [&](std::size_t task) {
            if (task == 0 && read.block.next == RecordStatus::Read) {
                blocks.Read(fetched.block);
            } else if (task == 0) {
                fetched.block.pieces.clear();
                fetched.block.next = RecordStatus::EndOfFile;
            } else if (task == 1) {
                error = AddBlock(whole, added);
            } else {
                ReadAlone(read.readers[task - 2], read.block.pieces[task - 2]);
            }
        });
    }
    return error;
}

/// A file of a single block is read before other threads have begun. Of a compressed one nothing
/// tells beforehand how many it has.
bool IsWorthThreads(const std::filesystem::path& path, const LayoutBytes& bytes,
                    const PieceSizes& sizes) {
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return RowThreads() > 1 && (bytes.IsPacked() || unknown || size > sizes.block);
}

/// Whatever came of the records of a compressed file that is damaged says nothing: the check sums
/// stand behind them. What follows the end of the library is unpacked for them, too.
std::optional<LayoutError> CheckPacking(LayoutBytes& bytes) {
    bytes.PassRest();
    const auto why = bytes.WhyNotUnpacked();
    return why ? std::optional(
                     LayoutError{LayoutErrorKind::FileUnreadable, why->byte, {}, {}, why->fault})
               : std::nullopt;
}

void KeepHead(GdsDatabase& database, const LibraryHead& head) {
    database.version = head.version.value_or(database.version);
    if (head.units) {
        database.userUnit = (*head.units)[0];
        database.metresPerUnit = (*head.units)[1];
        database.micronsPerUnit = database.metresPerUnit * micronsPerMetre;
    }
}

LibraryEnd EndOf(const LibraryState& state, const LayoutBytes& bytes) {
    LibraryEnd end;
    end.seen = state.endSeen;
    if (!end.seen) {
        end.bytes = bytes.Count();
        end.inCell = state.inStructure;
        end.cell = state.inStructure ? NameText(state.cell.name.value_or("")) : "";
    }
    return end;
}

}  // namespace

LibraryReading ReadLibrary(GdsDatabase& database, const std::filesystem::path& path,
                           LogConsole* console, const PieceSizes& sizes,
                           const LayoutOptions& options) {
    LayoutBytes bytes(path, options.unpackedLimit);
    HeldLines held;  // the console is written to by the caller's thread alone
    LibraryState state(database.store, &held, options);
    std::optional<LayoutError> error;
    std::exception_ptr problem;
    try {
        error = IsWorthThreads(path, bytes, sizes)
                    ? ReadFileInPieces(state, database.moreStores, bytes, sizes, options)
                    : ReadFile(state, bytes);
    } catch (...) {
        problem = std::current_exception();
    }
    for (std::wstring& line : held.lines) {
        console->Write(std::move(line));
    }
    if (auto packingError = CheckPacking(bytes)) {
        return {std::move(packingError), false};
    }
    if (problem) {
        std::rethrow_exception(problem);
    }
    KeepHead(database, state.head);
    database.repairs = std::move(state.repairs);
    database.cells = std::move(state.cells);
    database.cells.shrink_to_fit();
    database.texts = std::move(state.texts);
    database.skipped = state.skipped;
    if (!error) {
        database.end = EndOf(state, bytes);
    }
    if (error && state.inStructure) {
        error->cell = NameText(state.cell.name.value_or(""));
    }
    return {std::move(error), state.flatSeen};
}

}  // namespace zelmo
