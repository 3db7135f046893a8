#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "base/log_console.h"

// What the fuzz targets share. A target is a program that is fed with bytes without end, looks for
// those that lead it to new places, and ends at the first that break something.

/// The entry of every target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zelmo {

/// Ends the program, and so makes a finding of the present input, unless `holds`.
inline void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// A file of these bytes that lives in memory alone, for readers that take a path.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes);
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : MemoryFile(std::string_view(reinterpret_cast<const char*>(data), size)) {}
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::filesystem::path Path() const;

private:
    int descriptor_ = -1;
};

/// Counts the lines of a reader.
class CountingConsole : public LogConsole {
public:
    std::size_t lines = 0;

protected:
    void AppendLine(std::wstring) override { ++lines; }
};

}  // namespace zelmo
