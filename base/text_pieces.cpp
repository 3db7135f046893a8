#include "base/text_pieces.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

#include "base/row_bands.h"

namespace zelmo {

namespace {

/// Hands out the pieces in their order, and lets them into the file in that order.
class PieceQueue {
public:
    explicit PieceQueue(std::FILE* file) : file_(file) {}

    std::size_t Next() {
        const std::lock_guard lock(mutex_);
        return taken_++;
    }

    /// Writes a piece as soon as all before it are written. Whoever has taken the first of those
    /// that are not has nothing to wait for, so that there is always one to go on.
    void Write(std::size_t piece, const char* text, std::size_t length) {
        std::unique_lock lock(mutex_);
        turn_.wait(lock, [&] { return written_ == piece; });
        lock.unlock();
        std::fwrite(text, 1, length, file_);
        lock.lock();
        ++written_;
        turn_.notify_all();
    }

private:
    std::FILE* file_;
    std::mutex mutex_;
    std::condition_variable turn_;
    std::size_t taken_ = 0;
    std::size_t written_ = 0;
};

}  // namespace

void WriteTextPieces(std::FILE* file, std::size_t count, std::size_t longest,
                     const std::function<char*(std::size_t piece, char* out)>& make) {
    PieceQueue queue(file);
    const auto writers = static_cast<std::int32_t>(
        std::min(count, static_cast<std::size_t>(std::max(1, RowThreads()))));
    ForRowBands(writers, 1, [&](std::int32_t, std::int32_t) {
        // Before a piece is taken: where there is no memory, others take them all.
        const auto text = std::make_unique_for_overwrite<char[]>(longest);
        for (std::size_t piece = queue.Next(); piece < count; piece = queue.Next()) {
            const char* const end = make(piece, text.get());
            queue.Write(piece, text.get(), static_cast<std::size_t>(end - text.get()));
        }
    });
}

}  // namespace zelmo
