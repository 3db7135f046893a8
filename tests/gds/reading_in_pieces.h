#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gds/layout_error.h"
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "gds/stream_blocks.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// What reading gave, in words.
struct ReadingOutcome {
    std::string database;
    std::string end;  ///< the code of the error, or what was thrown
    std::optional<LayoutError> error;
    std::vector<std::string> lines;  ///< of the console
    LayoutRepairs repairs;

    bool operator==(const ReadingOutcome&) const = default;
};

/// Reads libraries in pieces, by several threads, and in one go.
class ReadingInPiecesTest : public testing::Test {
protected:
    using Bytes = std::vector<std::uint8_t>;

    explicit ReadingInPiecesTest(const LayoutOptions& options = {}) : options_(options) {}
    ~ReadingInPiecesTest() override;

    ReadingOutcome Read(const Bytes& bytes, std::int32_t threads, const PieceSizes& sizes);
    ReadingOutcome ReadInOneGo(const Bytes& bytes) { return Read(bytes, 1, {}); }
    ReadingOutcome ReadInPieces(const Bytes& bytes) { return Read(bytes, 3, {300, 40}); }

    /// Reads the bytes by some numbers of threads in some sizes of pieces. Returns what reading
    /// them in one go gives.
    ReadingOutcome ExpectTheSame(const Bytes& bytes);

    LayoutOptions options_;
    TempFolder folder_;
};

}  // namespace zelmo
