#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace zelmo {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open C stream, closed with its owner.
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

/// std::fopen for every path that the platform knows. Null, with the reason in errno, if the file
/// cannot be opened; a folder cannot be opened.
FilePointer OpenFile(const std::filesystem::path& path, const char* mode);

/// Closes a file that was written and tells whether everything arrived on the disk; errno has the
/// reason if not.
bool CloseWritten(FilePointer file);

/// Reads the next line of a text file into `line`, its LF included: at most 1023 bytes, so that a
/// longer line comes in several pieces. CR LF counts as one LF on every platform, and a NUL byte
/// ends the text of its line. False at the end of the file. The file is open in binary mode.
bool ReadTextLine(std::FILE* file, std::string& line);

}  // namespace zelmo
