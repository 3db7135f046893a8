#include "base/file.h"

#include <cstddef>

namespace zelmo {

namespace {

constexpr std::size_t longestLine = 1023;

/// The next character, with CR LF as one LF.
int ReadCharacter(std::FILE* file) {
    const int character = std::getc(file);
    if (character != '\r') {
        return character;
    }
    const int next = std::getc(file);
    if (next == '\n') {
        return next;
    }
    if (next != EOF) {
        std::ungetc(next, file);
    }
    return character;
}

}  // namespace

bool CloseWritten(FilePointer file) {
    const bool written = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
    return std::fclose(file.release()) == 0 && written;
}

bool ReadTextLine(std::FILE* file, std::string& line) {
    line.clear();
    bool any = false;
    bool textEnded = false;
    for (std::size_t length = 0; length < longestLine; ++length) {
        const int character = ReadCharacter(file);
        if (character == EOF) {
            break;
        }
        any = true;
        textEnded = textEnded || character == '\0';
        if (!textEnded) {
            line.push_back(static_cast<char>(character));
        }
        if (character == '\n') {
            break;
        }
    }
    return any;
}

}  // namespace zelmo
