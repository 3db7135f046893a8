#pragma once

#include <cstdint>
#include <filesystem>

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// Reads a GDSII stream file into an empty database, sizes all cells and lists them on the console.
/// Returns 0, or the code of the error; what was read by then stays for the caller to drop. Throws
/// std::out_of_range("invalid vector subscript") if a boundary, a path or an array has no points.
std::int32_t ReadGdsFile(GdsDatabase& database, const std::filesystem::path& path,
                         LogConsole* console);

/// The value of an eight-byte GDSII real (excess-64, base 16).
double GdsReal8ToDouble(const std::uint8_t* bytes);

}  // namespace zelmo
