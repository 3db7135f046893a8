#include "batch/note_teller.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {
namespace {

Note NoteAt(std::int32_t line) {
    return {"kind", "flow.txt", line, "text"};
}

TEST(NoteTellerTest, TellsEachNoteOnce) {
    std::vector<std::string> told;
    NoteTeller teller({}, false, [&](const Note& note) { told.push_back(NoteLine(note)); });
    teller.Add({NoteAt(3)});
    teller.TellAll();
    teller.Add({NoteAt(8)}, 1);
    teller.TellAll();
    EXPECT_EQ(told, (std::vector<std::string>{NoteLine(NoteAt(3)), NoteLine(NoteAt(8))}));
}

TEST(NoteTellerTest, NotesOfStepsMoveWithTheirLines) {
    NoteTeller teller({}, false, [](const Note&) {});
    teller.Add({NoteAt(3)});
    teller.Add({NoteAt(8)}, 1);
    teller.Add({NoteAt(9), NoteAt(9)}, 2);
    teller.MoveLines([](std::size_t step) { return static_cast<std::int32_t>(20 + step); });
    std::vector<std::int32_t> lines;
    for (const Note& note : teller.Notes()) {
        lines.push_back(note.line);
    }
    EXPECT_EQ(lines, (std::vector<std::int32_t>{3, 21, 22, 22}));
}

TEST(NoteTellerTest, ForgetsWhatARunThatBeginsAnewTellsAgain) {
    NoteTeller teller({}, false, [](const Note&) {});
    teller.Add({NoteAt(3)});
    teller.Add({NoteAt(8)}, 1);
    teller.Add({NoteAt(9)}, 2);
    teller.ForgetStepsFrom(2);
    EXPECT_EQ(teller.Notes().size(), 2u);
    teller.ForgetInputs();
    ASSERT_EQ(teller.Notes().size(), 1u);
    EXPECT_EQ(teller.Notes().front().line, 8);
}

}  // namespace
}  // namespace zelmo
