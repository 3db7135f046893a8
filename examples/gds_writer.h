#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "gds/gds_point.h"

namespace zelmo {

/// How a referenced cell is placed: mirrored at its x axis, turned counter-clockwise, scaled.
struct GdsWriterPlacement {
    bool reflect = false;
    double mag = 1.0;
    double degrees = 0.0;
};

/// The layer of an element, and its datatype: `66` or `{66, 20}`.
struct GdsWriterLayer {
    // NOLINTNEXTLINE(google-explicit-constructor): a layer's number stands for it
    constexpr GdsWriterLayer(std::uint16_t number, std::uint16_t type = 0)
        : layer(number), datatype(type) {}

    std::uint16_t layer;
    std::uint16_t datatype;
};

/// Writes GDSII streams, record by record: the examples' layouts and the tests' good and bad files.
class GdsWriter {
public:
    /// Any record, also a wrong one: `code` holds the record type in its high byte and the data
    /// type in its low one. Throws std::length_error above 65531 bytes of data.
    void Record(std::uint16_t code, const std::vector<std::uint8_t>& data = {});
    void RecordU16(std::uint16_t code, const std::vector<std::uint16_t>& values);
    void RecordI32(std::uint16_t code, const std::vector<std::int32_t>& values);
    void RecordReals(std::uint16_t code, const std::vector<double>& values);
    /// Pads odd lengths with a NUL, as the format asks.
    void RecordText(std::uint16_t code, std::string_view text);

    void BeginLibrary(double userUnit = 0.001, double metresPerUnit = 1e-9);
    void EndLibrary();
    void BeginCell(std::string_view name);
    void EndCell();

    using Layer = GdsWriterLayer;
    /// Points that do not fit 32 bits throw std::out_of_range, here and below.
    /// Closes the polygon by repeating its first point.
    void Boundary(Layer layer, std::vector<GdsPoint> points);
    void Rectangle(Layer layer, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);
    void Path(Layer layer, const std::vector<GdsPoint>& points, std::int32_t width,
              std::uint16_t pathType = 0);

    using Placement = GdsWriterPlacement;
    void Reference(std::string_view cell, GdsPoint origin, Placement placement = {});
    /// `columnEnd` and `rowEnd` are `columns` pitches and `rows` pitches away from `origin`.
    void Array(std::string_view cell, std::uint16_t columns, std::uint16_t rows, GdsPoint origin,
               GdsPoint columnEnd, GdsPoint rowEnd, Placement placement = {});

    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }
    std::vector<std::uint8_t>& Bytes() { return bytes_; }
    /// Throws std::runtime_error naming the file if it cannot be written.
    void Save(const std::filesystem::path& path) const;

private:
    void Strans(const Placement& placement);

    std::vector<std::uint8_t> bytes_;
};

/// The eight bytes of the GDSII real nearest to `value`. Throws std::out_of_range if that is not
/// finite or too large for the format.
std::vector<std::uint8_t> DoubleToGdsReal8(double value);

}  // namespace zelmo
