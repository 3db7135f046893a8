#include "tests/gds/reading_in_pieces.h"

#include <filesystem>
#include <stdexcept>

#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/library_reading.h"
#include "tests/gds/database_text.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"

namespace zelmo {

ReadingInPiecesTest::~ReadingInPiecesTest() {
    SetRowThreads(0);
}

ReadingOutcome ReadingInPiecesTest::Read(const Bytes& bytes, std::int32_t threads,
                                         const PieceSizes& sizes) {
    const std::filesystem::path path = folder_.Path() / "library.gds";
    std::filesystem::remove(path);
    folder_.Write("library.gds", bytes);
    SetRowThreads(threads);
    GdsDatabase database;
    RecordingConsole console;
    ReadingOutcome outcome;
    try {
        const LibraryReading reading = ReadLibrary(database, path, &console, sizes, options_);
        outcome.end =
            std::to_string(CodeOf(reading.error)) + (reading.flatSeen ? " with flat ones" : "");
        outcome.error = reading.error;
        outcome.database = TextOf(database);
        outcome.repairs = database.repairs;
    } catch (const std::out_of_range& error) {
        outcome.end = error.what();
    }
    outcome.lines = console.lines;
    return outcome;
}

ReadingOutcome ReadingInPiecesTest::ExpectTheSame(const Bytes& bytes) {
    const ReadingOutcome expected = ReadInOneGo(bytes);
    for (const std::int32_t threads : {2, 3}) {
        for (const PieceSizes sizes :
             {PieceSizes{100, 1}, PieceSizes{300, 40}, PieceSizes{5000, 700}, PieceSizes{}}) {
            const ReadingOutcome outcome = Read(bytes, threads, sizes);
            EXPECT_EQ(outcome.end, expected.end) << threads << ' ' << sizes.block;
            EXPECT_EQ(outcome.error, expected.error) << threads << ' ' << sizes.block;
            EXPECT_EQ(outcome.lines, expected.lines) << threads << ' ' << sizes.block;
            EXPECT_EQ(outcome.database, expected.database) << threads << ' ' << sizes.block;
            EXPECT_EQ(outcome.repairs, expected.repairs) << threads << ' ' << sizes.block;
        }
    }
    return expected;
}

}  // namespace zelmo
