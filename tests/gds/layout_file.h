#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "examples/gds_writer.h"
#include "gds/gds_database.h"

namespace zelmo {

/// Record codes of the stream format.
namespace record {
constexpr std::uint16_t header = 0x0002;
constexpr std::uint16_t units = 0x0305;
constexpr std::uint16_t endlib = 0x0400;
constexpr std::uint16_t bgnstr = 0x0502;
constexpr std::uint16_t strname = 0x0606;
constexpr std::uint16_t endstr = 0x0700;
constexpr std::uint16_t boundary = 0x0800;
constexpr std::uint16_t path = 0x0900;
constexpr std::uint16_t sref = 0x0A00;
constexpr std::uint16_t aref = 0x0B00;
constexpr std::uint16_t text = 0x0C00;
constexpr std::uint16_t node = 0x1500;
constexpr std::uint16_t box = 0x2D00;
constexpr std::uint16_t layer = 0x0D02;
constexpr std::uint16_t datatype = 0x0E02;
constexpr std::uint16_t width = 0x0F03;
constexpr std::uint16_t pathtype = 0x2102;
constexpr std::uint16_t xy = 0x1003;
constexpr std::uint16_t sname = 0x1206;
constexpr std::uint16_t colrow = 0x1302;
constexpr std::uint16_t strans = 0x1A01;
constexpr std::uint16_t mag = 0x1B05;
constexpr std::uint16_t angle = 0x1C05;
constexpr std::uint16_t endel = 0x1100;
constexpr std::uint16_t texttype = 0x1602;
constexpr std::uint16_t presentation = 0x1701;
constexpr std::uint16_t string = 0x1906;
constexpr std::uint16_t nodetype = 0x2A02;
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

/// The points of a boundary or an array.
template <typename Element>
std::vector<GdsPoint> PointsOf(const Element& element) {
    return {element.points.begin(), element.points.end()};
}

/// What reading a file gave.
struct LoadedLayout {
    std::int32_t result = 0;
    GdsDatabase database;
    std::vector<std::string> lines;  ///< of the console
};

LoadedLayout LoadBytes(const std::vector<std::uint8_t>& bytes);
inline LoadedLayout Load(const GdsWriter& writer) {
    return LoadBytes(writer.Bytes());
}

/// A library with the one cell "TOP", whose elements `write` adds.
template <typename Write>
LoadedLayout LoadCell(Write write) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    write(writer);
    writer.EndCell();
    writer.EndLibrary();
    return Load(writer);
}

}  // namespace zelmo
