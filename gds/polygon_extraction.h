#pragma once

#include <string>

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct ProcessModel;

/// Replaces `rawPolygons` and `polygons` of the model by the polygons of its cell that meet the
/// grid, depth first. Returns the reason if
/// the cell is unknown, 10,000,000 polygons are reached, or its references would take hours to
/// search.
std::string ExtractPolygons(ProcessModel& model, LogConsole* console, const GdsDatabase& database);

}  // namespace zelmo
