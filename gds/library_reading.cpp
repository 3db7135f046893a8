#include "gds/library_reading.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/log_console.h"
#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/record_handlers.h"
#include "gds/stream_records.h"

// With several cores, the pieces of a block are read at the same time, each as if its start were
// what it is supposed to be. One after the other they are then joined to what was read before. A
// piece whose start turns out to be another is read again, from the state that the pieces before it
// led to: only damaged and very odd files have one.

namespace zelmo {

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t cannotOpen = 2;
constexpr std::int32_t recordTooShort = 5;

/// The code for what ends the records of a file.
std::int32_t CodeOf(RecordStatus status) {
    switch (status) {
        case RecordStatus::BadLength:
            return recordTooShort;
        case RecordStatus::Unreadable:
            return cannotOpen;
        default:
            return success;
    }
}

/// Reads all records, one after the other.
std::int32_t ReadFile(LibraryState& state, const std::filesystem::path& path) {
    StreamRecords records(path);
    StreamRecord record;
    while (!state.endSeen) {
        const RecordStatus status = records.Next(record);
        if (status != RecordStatus::Read) {
            return CodeOf(status);
        }
        if (const std::int32_t refusal = HandleRecord(state, record)) {
            return refusal;
        }
    }
    return success;
}

std::int32_t ReadPiece(LibraryState& state, const StreamPiece& piece) {
    const std::uint8_t* bytes = piece.bytes.data();
    const std::uint8_t* const end = bytes + piece.bytes.size();
    while (bytes != end) {
        const StreamRecord record = RecordAt(bytes);
        if (const std::int32_t refusal = HandleRecord(state, record)) {
            return refusal;
        }
        bytes = record.data.data() + record.data.size();
    }
    return success;
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
    explicit PieceReader(ElementStore& store) : state(store, &console) {}

    HeldLines console;
    LibraryState state;
    std::int32_t refusal = success;
    std::exception_ptr problem;
};

void Clear(OpenCell& cell) {
    cell.name.reset();
    cell.boundaries.clear();
    cell.srefs.clear();
    cell.arefs.clear();
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
    state.cells.clear();
    Clear(state.cell);
    state.open = {};
    state.continuesCell = start.inStructure;
    state.continued.reset();
    reader.console.lines.clear();
    reader.refusal = success;
    reader.problem = nullptr;
}

void ReadAlone(PieceReader& reader, const StreamPiece& piece) {
    Restart(reader, piece.start);
    try {
        reader.refusal = ReadPiece(reader.state, piece);
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
    whole.cells.Take(part.cells);
    Join(whole.cell, part.cell);
    whole.inStructure = part.inStructure;
    whole.warnedType1 = part.warnedType1;
    whole.warnedType4 = part.warnedType4;
    whole.endSeen = part.endSeen;
    whole.flatSeen = whole.flatSeen || part.flatSeen;
    std::swap(whole.open, part.open);
}

/// Adds a piece to the whole, which has come to its start. Returns 0, or the code of the error.
std::int32_t AddPiece(LibraryState& whole, PieceReader& reader, const StreamPiece& piece) {
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
    return reader.refusal;
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

void AddReaders(BlockReading& reading, std::deque<ElementStore>& stores) {
    while (reading.readers.size() < reading.block.pieces.size()) {
        reading.readers.emplace_back(stores.emplace_back());
    }
}

/// Adds all pieces of a block to the whole. Returns 0, or the code of the error.
std::int32_t AddBlock(LibraryState& whole, BlockReading& reading) {
    for (std::size_t i = 0; i < reading.block.pieces.size(); ++i) {
        if (const std::int32_t refusal =
                AddPiece(whole, reading.readers[i], reading.block.pieces[i])) {
            return refusal;
        }
    }
    return whole.endSeen ? success : CodeOf(reading.block.next);
}

/// Reads all records: while one block is being fetched, the pieces of the one before are read and
/// those of the one before that are added to the whole.
std::int32_t ReadFileInPieces(LibraryState& whole, std::deque<ElementStore>& stores,
                              const std::filesystem::path& path, const PieceSizes& sizes) {
    StreamBlocks blocks(path, sizes);
    BlockReading fetched;
    BlockReading read;
    BlockReading added;
    std::int32_t refusal = success;
    blocks.Read(fetched.block);
    while (refusal == success && added.block.next == RecordStatus::Read) {
        std::swap(added, read);
        std::swap(read, fetched);
        AddReaders(read, stores);
        RunTasks(read.block.pieces.size() + 2, [&](std::size_t task) {
            if (task == 0 && read.block.next == RecordStatus::Read) {
                blocks.Read(fetched.block);
            } else if (task == 0) {
                fetched.block.pieces.clear();
                fetched.block.next = RecordStatus::EndOfFile;
            } else if (task == 1) {
                refusal = AddBlock(whole, added);
            } else {
                ReadAlone(read.readers[task - 2], read.block.pieces[task - 2]);
            }
        });
    }
    return refusal;
}

/// A file of a single block is read before other threads have begun.
bool IsWorthThreads(const std::filesystem::path& path, const PieceSizes& sizes) {
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return RowThreads() > 1 && (unknown || size > sizes.block);
}

void KeepHead(GdsDatabase& database, const LibraryHead& head) {
    database.version = head.version.value_or(database.version);
    if (head.units) {
        database.userUnit = (*head.units)[0];
        database.metresPerUnit = (*head.units)[1];
        database.micronsPerUnit = database.metresPerUnit * 1000000.0;
    }
}

}  // namespace

LibraryReading ReadLibrary(GdsDatabase& database, const std::filesystem::path& path,
                           LogConsole* console, const PieceSizes& sizes) {
    HeldLines held;  // the console is written to by the caller's thread alone
    LibraryState state(database.store, &held);
    std::int32_t refusal = success;
    std::exception_ptr problem;
    try {
        refusal = IsWorthThreads(path, sizes)
                      ? ReadFileInPieces(state, database.moreStores, path, sizes)
                      : ReadFile(state, path);
    } catch (...) {
        problem = std::current_exception();
    }
    for (std::wstring& line : held.lines) {
        console->Write(std::move(line));
    }
    if (problem) {
        std::rethrow_exception(problem);
    }
    KeepHead(database, state.head);
    database.cells = std::move(state.cells);
    database.cells.shrink_to_fit();
    return {refusal, state.flatSeen};
}

}  // namespace zelmo
