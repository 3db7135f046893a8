#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

namespace zelmo {

/// Sees whether a file has been saved since it was looked at, however that was done: in place, or
/// by another one that took its name.
class WatchedFile {
public:
    explicit WatchedFile(std::filesystem::path path) : path_(std::move(path)) {}

    /// Takes the file as it is now for the known one. Returns whether the one before was another.
    bool Look();

    /// Whether it is another one now. A file that cannot be read is another than one that can.
    bool Changed();

private:
    /// A file as the system tells of it.
    struct Stamp {
        bool exists = false;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type time;

        bool operator==(const Stamp&) const = default;
    };

    Stamp ReadStamp() const;

    std::filesystem::path path_;
    Stamp stamp_;
    /// Of the content, where the file was so young that it could be saved again without a later
    /// time
    std::optional<std::size_t> hash_;
};

}  // namespace zelmo
