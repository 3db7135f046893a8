#pragma once

#include <string>
#include <utility>
#include <vector>

#include "process_file/command_text.h"
#include "report/page.h"
#include "report/page_grid.h"

namespace zelmo {

struct Note;
struct ProcessModel;
struct StepImage;

// What the page of a run holds, from what is known of the run.

/// What a run was made from, as its page tells it.
struct PageSource {
    std::string program;  ///< that makes the page, with its version
    std::string process;  ///< the names of both files, without their folders
    std::string layout;
    std::vector<std::string> processLines{};  ///< of the process file
};

/// What is told of a run but for its steps.
Page PageHead(const ProcessModel& model, PageSource source, const PageGrid& grid);

/// What is known of all steps before they run. `commands` are those of the process file, with its
/// variables replaced.
std::vector<PageStep> PageSteps(const ProcessModel& model,
                                const std::vector<CommandText>& commands);

/// Adds notes: to the steps of the page whose lines they name, or to the page. `process` is the
/// name of the process file as the page has it.
void AddPageNotes(Page& page, const std::vector<Note>& notes, const std::string& process);

/// The picture that a page has of a step, and the small one of its strip. Throws std::bad_alloc.
std::pair<PagePicture, PagePicture> EncodePagePictures(const StepImage& drawn);

}  // namespace zelmo
