#include "results/notes/layout_notes.h"

#include <fmt/format.h>

#include "base/log_console.h"
#include "base/text.h"
#include "gds/file_look.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/layout_error.h"
#include "gds/layout_options.h"
#include "gds/layout_problems.h"
#include "process_file/first_command.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"

namespace zelmo {

namespace {

/// Nobody listens.
class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring /*line*/) override {}
};

std::string WayOutOf(const FileLook& look) {
    switch (look.kind) {
        case FileKind::Bzip2:
        case FileKind::Xz:
        case FileKind::Zstandard:
        case FileKind::Zip:
            return "unpack it first";
        case FileKind::Text:
            return look.firstWord == firstCommandWord
                       ? "it looks like a process file, and the layout "
                         "comes first"
                       : "export the layout as GDSII";
        default:
            return "export the layout as GDSII";
    }
}

bool IsStream(FileKind kind) {
    return kind == FileKind::Stream;
}

/// Whether nothing is to be said of how the file looks: it is a stream file, or what is wrong with
/// it has been told.
bool IsNoRiddle(FileKind kind) {
    return IsStream(kind) || kind == FileKind::Unreadable || kind == FileKind::Gzip;
}

void CheckLook(NoteList& notes, const FileLook& look, const std::filesystem::path& processFile) {
    if (look.kind == FileKind::Text && IsStream(LookAtFile(processFile).kind)) {
        notes.Add(note_kind::filesSwapped, 0,
                  fmt::format("this file is {}, and {} is a GDSII layout: give the layout first, "
                              "then the process file",
                              LookText(look), Utf8FromWide(PathText(processFile))));
        return;
    }
    if (look.kind == FileKind::Empty) {
        notes.Add(note_kind::layoutEmpty, 0,
                  "the file is empty: export or fetch the layout once more");
        return;
    }
    if (!IsNoRiddle(look.kind)) {
        notes.Add(note_kind::layoutFormat, 0,
                  fmt::format("the file is {}, and a layout is a GDSII stream file: {}",
                              LookText(look), WayOutOf(look)));
    }
}

void CheckCut(NoteList& notes, const LayoutProblems& problems) {
    if (!problems.cutOff) {
        return;
    }
    const std::string where =
        problems.cutCell.empty() ? "" : fmt::format(", in cell {}", Readable(problems.cutCell));
    notes.Add(note_kind::layoutCut, 0,
              fmt::format("the file ends after {} bytes{}, before its library does, and what came "
                          "then is missing: export or fetch it once more",
                          problems.bytes, where));
}

void CheckProblems(NoteList& notes, const LayoutProblems& problems) {
    CheckCut(notes, problems);
    if (problems.noCells || problems.nothingDrawn) {
        notes.Add(note_kind::layoutEmpty, 0,
                  fmt::format("{}: look at what was exported",
                              problems.noCells ? "the layout has no cells"
                                               : "no cell of the layout draws anything"));
    }
    for (const RepeatedCell& cell : problems.repeated) {
        notes.Add(note_kind::cellTwice, 0,
                  fmt::format("{} cells are named {}, and all references mean the first one: "
                              "rename the others, or delete them",
                              cell.times, Quoted(cell.name)));
    }
}

}  // namespace

std::vector<Note> LayoutNotes(const std::filesystem::path& layout,
                              const std::filesystem::path& processFile,
                              const GdsDatabase& database) {
    NoteList notes(layout);
    const FileLook look = LookAtFile(layout);
    CheckLook(notes, look, processFile);
    if (IsStream(look.kind)) {
        CheckProblems(notes, FindLayoutProblems(database));
    }
    return notes.Take();
}

std::vector<Note> RefusedLayoutNotes(const std::filesystem::path& layout,
                                     const std::filesystem::path& processFile) {
    NoteList notes(layout);
    const FileLook look = LookAtFile(layout);
    CheckLook(notes, look, processFile);
    if (IsStream(look.kind)) {
        SilentConsole console;
        GdsDatabase database;
        const auto error = ReadGdsFile(database, layout, &console);
        if (error && error->kind != LayoutErrorKind::FileUnreadable) {
            CheckCut(notes, FindLayoutProblems(database));
        }
    }
    return notes.Take();
}

}  // namespace zelmo
