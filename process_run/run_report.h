#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "gds/layout_error.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct ProcessModel;
struct ProcessStep;

// The lines that a load and a run leave on the console, whoever drives them.

/// A loaded layout, or what is wrong with it and no database.
struct LayoutLoad {
    std::optional<LayoutError> error;
    std::unique_ptr<GdsDatabase> database;
};

/// Reads a layout and reports the load, with its time, on the console.
LayoutLoad LoadLayout(const std::filesystem::path& path, LogConsole* console);

/// Writes the headline of a run.
void ReportRunStart(LogConsole* console);

/// Executes a step and reports its time.
void ExecuteTimedStep(ProcessModel& model, const ProcessStep& step, LogConsole* console);

/// Writes the end of a run that started at `startClock` milliseconds.
void ReportRunEnd(std::int32_t startClock, LogConsole* console);

}  // namespace zelmo
