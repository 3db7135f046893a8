#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "results/layer_facts.h"
#include "results/layer_numbers.h"
#include "results/probe.h"

namespace zelmo {

struct Note;
struct ProcessSettings;

/// A file that a run was made from.
struct SummaryInput {
    std::string role;    ///< "layout", "process", "colors" and so on
    std::string path;    ///< as it was named, in UTF-8
    std::string sha256;  ///< of its bytes, hexadecimal
};

/// A layer and what it measures.
struct MeasuredLayer {
    LayerFacts facts;
    LayerNumbers numbers;
};

/// What is told of a step.
struct SummaryStep {
    StepName step;
    std::int32_t line = 0;  ///< of the process file; 0: of none
    double seconds = 0.0;
    double pictureSeconds = 0.0;  ///< 0 where no picture was made
    /// The lowest first; nothing for a step that no numbers were asked for.
    std::optional<std::vector<MeasuredLayer>> layers;
};

/// What is told of a run.
struct Summary {
    std::string program;
    std::string version;
    bool complete = false;  ///< all steps were done
    std::vector<SummaryInput> inputs;
    std::vector<SummaryStep> steps;  ///< those that were done
};

/// The summary as a JSON file (docs/summary.schema.json), with the grid and window that the
/// settings ask for. Of the notes, those that name a line of the process file stand with its step,
/// which `processFile` tells by the file's name, the others with the run.
std::string SummaryJson(const Summary& summary, const ProcessSettings& settings,
                        const std::vector<Note>& notes, std::string_view processFile);

}  // namespace zelmo
