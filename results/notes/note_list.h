#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "results/notes/note.h"

namespace zelmo {

/// Bytes as a word of a note, in quotation marks and in UTF-8; long ones end in "...".
std::string Quoted(std::string_view bytes);

/// Bytes in UTF-8, as error lines have them.
std::string Readable(std::string_view bytes);

/// "3.2 %" of a part of a whole.
std::string Percent(double part, double whole);

/// " (lines 20 and 31 as well)" for all lines but the first; empty where there are no others.
std::string OtherLines(const std::vector<std::int32_t>& lines);

/// Notes about one file, in the order in which they are found.
class NoteList {
public:
    explicit NoteList(std::filesystem::path file) : file_(std::move(file)) {}

    void Add(std::string_view kind, std::int32_t line, std::string text) {
        notes_.push_back({kind, file_, line, std::move(text)});
    }
    std::vector<Note> Take() { return std::move(notes_); }

private:
    std::filesystem::path file_;
    std::vector<Note> notes_;
};

/// Appends notes to others.
void Append(std::vector<Note>& notes, std::vector<Note> more);

}  // namespace zelmo
