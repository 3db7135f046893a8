#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/grid/places.h"
#include "results/stack_column.h"

namespace zelmo {

/// A step that numbers are told of.
struct StepName {
    int number = 0;    ///< the substrate's is 1
    std::string name;  ///< its description, in UTF-8
};

/// The stack at some places after a step.
struct ProbedStep {
    StepName step;
    std::vector<std::vector<ColumnPart>> columns;  ///< one for each place
};

/// The stack at some places after some steps.
struct ProbeReport {
    std::string unit;           ///< of the places, "um" or "nm"
    std::vector<Place> places;  ///< as they were asked for
    std::vector<ProbedStep> steps;
};

/// The report as text: for each place and step a table with a line for each layer or gap, the
/// uppermost first.
std::string ProbeTables(const ProbeReport& report);

/// The same as a CSV file with a head line, a line for each layer or gap.
std::string ProbeCsv(const ProbeReport& report);

/// The same as a JSON file.
std::string ProbeJson(const ProbeReport& report);

}  // namespace zelmo
