#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>

namespace zelmo {

/// Counts the files that are being written, so that the program can end between them, and the
/// pictures that are whole.
class UnfinishedFiles {
public:
    /// While it lives, a file is unfinished. They may nest, and overlap on several threads.
    class Writing {
    public:
        explicit Writing(UnfinishedFiles& files);
        ~Writing();
        Writing(const Writing&) = delete;
        Writing& operator=(const Writing&) = delete;

    private:
        UnfinishedFiles& files_;
    };

    /// A picture of this name is whole.
    void AddPicture(std::string name);
    /// How many pictures are whole, and a text that tells it. To be called while none is being
    /// written.
    std::size_t Pictures() const { return pictures_; }
    std::string WholePictures() const;

    /// Waits until there is none. As long as the lock is held none is begun.
    std::unique_lock<std::mutex> WaitForNone();

private:
    std::mutex mutex_;
    std::condition_variable finished_;
    int count_ = 0;
    std::size_t pictures_ = 0;
    std::string lastPicture_;
};

}  // namespace zelmo
