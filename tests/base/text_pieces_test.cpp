#include "base/text_pieces.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "base/file.h"
#include "base/row_bands.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

class TextPieces : public testing::Test {
protected:
    ~TextPieces() override { SetRowThreads(0); }

    /// What the pieces leave in a file.
    template <typename Make>
    std::string Written(std::size_t count, std::size_t longest, const Make& make) {
        const auto path = folder_.Path() / "text";
        const FilePointer file = OpenFile(path, "wb+");
        WriteTextPieces(file.get(), count, longest, make);
        std::rewind(file.get());
        std::string text(1 << 20, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), file.get()));
        return text;
    }

    TempFolder folder_;
};

/// Piece i is i times the same letter.
char* LettersOf(std::size_t piece, char* out) {
    const std::string letters(piece, static_cast<char>('a' + piece % 26));
    return std::copy(letters.begin(), letters.end(), out);
}

TEST_F(TextPieces, StandInTheirOrderOnAnyNumberOfThreads) {
    std::string expected;
    for (std::size_t piece = 0; piece < 500; ++piece) {
        expected += std::string(piece, static_cast<char>('a' + piece % 26));
    }
    for (const std::int32_t threads : {1, 2, 3, 16, 64}) {
        SetRowThreads(threads);
        EXPECT_EQ(Written(500, 500, LettersOf), expected) << threads;
    }
}

TEST_F(TextPieces, LateOnesAreWaitedFor) {
    SetRowThreads(4);
    std::atomic<int> made{0};
    const auto make = [&](std::size_t piece, char* out) {
        if (piece % 4 == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        ++made;
        *out = static_cast<char>('a' + piece);
        return out + 1;
    };
    EXPECT_EQ(Written(20, 1, make), "abcdefghijklmnopqrst");
    EXPECT_EQ(made, 20);
}

TEST_F(TextPieces, NoneLeaveNothing) {
    EXPECT_EQ(Written(0, 10, LettersOf), "");
    EXPECT_EQ(Written(1, 10, LettersOf), "");
}

TEST_F(TextPieces, AFileThatTakesNoneIsNoHindrance) {
    const auto path = folder_.Write("read only", "old");
    const FilePointer file = OpenFile(path, "rb");
    WriteTextPieces(file.get(), 100, 100, LettersOf);
    EXPECT_NE(std::ferror(file.get()), 0);
}

}  // namespace
}  // namespace zelmo
