#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "examples/gds_writer.h"
#include "gds/gds_database.h"
#include "gds/layout_error.h"
#include "gds/layout_options.h"
#include "gds/record_codes.h"

namespace zelmo {

/// Records of the stream format that the reader skips.
namespace record {
constexpr std::uint16_t presentation = 0x1701;
constexpr std::uint16_t nodetype = 0x2A02;
constexpr std::uint16_t propvalue = 0x2C06;
constexpr std::uint16_t boxtype = 0x2E02;
}  // namespace record

/// Points for the elements of a layout that is made by hand. They stay to the end of the program.
std::span<const GdsPoint> KeepPoints(const std::vector<GdsPoint>& points);

/// A name for a cell that is made by hand. It stays to the end of the program.
std::string_view KeepName(std::string_view name);

/// Adds an element to a cell that is made by hand. The elements stay to the end of the program.
template <typename Element>
void Add(std::span<Element>& elements, const std::type_identity_t<Element>& element) {
    static RunPool<Element> pool;
    const std::span<Element> longer = pool.Take(elements.size() + 1);
    std::copy(elements.begin(), elements.end(), longer.begin());
    longer.back() = element;
    elements = longer;
}

/// An element of a cell. Throws std::out_of_range if the cell has fewer.
template <typename Element>
Element& At(std::span<Element> elements, std::size_t index) {
    if (index >= elements.size()) {
        throw std::out_of_range("the cell has fewer elements");
    }
    return elements[index];
}

/// A cell of a database. Throws std::out_of_range if there are fewer.
inline GdsCell& CellAt(GdsDatabase& database, std::size_t index) {
    return At(database.cells.Items(), index);
}
inline const GdsCell& CellAt(const GdsDatabase& database, std::size_t index) {
    return At(database.cells.Items(), index);
}

/// Adds empty cells to a database.
inline void AddCells(GdsDatabase& database, std::size_t count) {
    for (; count > 0; --count) {
        database.cells.push_back({});
    }
}

/// The points of a boundary or an array.
template <typename Element>
std::vector<GdsPoint> PointsOf(const Element& element) {
    return {element.points.begin(), element.points.end()};
}

/// The number that users see of what reading a layout returned, or 0.
inline std::int32_t CodeOf(const std::optional<LayoutError>& error) {
    return error ? LayoutErrorCode(error->kind) : 0;
}

/// What reading a file gave.
struct LoadedLayout {
    std::int32_t result = 0;  ///< the number that users see, or 0
    std::optional<LayoutError> error;
    GdsDatabase database;
    std::vector<std::string> lines;  ///< of the console
};

LoadedLayout LoadBytes(const std::vector<std::uint8_t>& bytes, const LayoutOptions& options = {});
inline LoadedLayout Load(const GdsWriter& writer) {
    return LoadBytes(writer.Bytes());
}

/// A library with the one cell "TOP", whose elements `write` adds.
template <typename Write>
GdsWriter LibraryWithCell(Write write) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    write(writer);
    writer.EndCell();
    writer.EndLibrary();
    return writer;
}

template <typename Write>
LoadedLayout LoadCell(Write write) {
    return Load(LibraryWithCell(write));
}

}  // namespace zelmo
