#pragma once

#include "batch/options.h"
#include "process_file/color_table.h"

namespace zelmo {

class NoteTeller;
struct GdsDatabase;
struct ProcessModel;

// What is suspicious about the files of a run. Each gives the teller notes; none tells them.

/// The layout was refused.
void NoteRefusedLayout(const BatchOptions& options, NoteTeller& teller);

/// It was read.
void NoteLayout(const BatchOptions& options, const GdsDatabase& layout, NoteTeller& teller);

/// The process file was read and, unless `model` is null, prepared for the layout.
void NoteProcess(const BatchOptions& options, const GdsDatabase& layout, const ColorTable& colors,
                 const ProcessModel* model, NoteTeller& teller);

}  // namespace zelmo
