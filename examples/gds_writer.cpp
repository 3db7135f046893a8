#include "examples/gds_writer.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <utility>

namespace zelmo {

namespace {

constexpr std::uint16_t kHeader = 0x0002;
constexpr std::uint16_t kBgnLib = 0x0102;
constexpr std::uint16_t kLibName = 0x0206;
constexpr std::uint16_t kUnits = 0x0305;
constexpr std::uint16_t kEndLib = 0x0400;
constexpr std::uint16_t kBgnStr = 0x0502;
constexpr std::uint16_t kStrName = 0x0606;
constexpr std::uint16_t kEndStr = 0x0700;
constexpr std::uint16_t kBoundary = 0x0800;
constexpr std::uint16_t kPath = 0x0900;
constexpr std::uint16_t kSref = 0x0A00;
constexpr std::uint16_t kAref = 0x0B00;
constexpr std::uint16_t kLayer = 0x0D02;
constexpr std::uint16_t kDataType = 0x0E02;
constexpr std::uint16_t kWidth = 0x0F03;
constexpr std::uint16_t kXy = 0x1003;
constexpr std::uint16_t kEndEl = 0x1100;
constexpr std::uint16_t kSname = 0x1206;
constexpr std::uint16_t kColRow = 0x1302;
constexpr std::uint16_t kStrans = 0x1A01;
constexpr std::uint16_t kMag = 0x1B05;
constexpr std::uint16_t kAngle = 0x1C05;
constexpr std::uint16_t kPathType = 0x2102;

constexpr std::uint16_t kStreamVersion = 600;
constexpr std::uint16_t kReflection = 0x8000;
constexpr std::size_t kRecordHeaderSize = 4;

// Times of last modification and access, always the same so that equal layouts are equal files.
const std::vector<std::uint16_t> kTimes{2000, 1, 1, 0, 0, 0, 2000, 1, 1, 0, 0, 0};

void AppendU16(std::vector<std::uint8_t>& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

void AppendI32(std::vector<std::uint8_t>& bytes, std::int32_t value) {
    const auto pattern = static_cast<std::uint32_t>(value);
    AppendU16(bytes, static_cast<std::uint16_t>(pattern >> 16));
    AppendU16(bytes, static_cast<std::uint16_t>(pattern & 0xFFFF));
}

std::int32_t Coordinate(std::int64_t value) {
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw std::out_of_range("a coordinate does not fit 32 bits");
    }
    return static_cast<std::int32_t>(value);
}

std::vector<std::int32_t> Coordinates(const std::vector<GdsPoint>& points) {
    std::vector<std::int32_t> values;
    values.reserve(points.size() * 2);
    for (const GdsPoint& point : points) {
        values.push_back(Coordinate(point.x));
        values.push_back(Coordinate(point.y));
    }
    return values;
}

}  // namespace

void GdsWriter::Record(std::uint16_t code, const std::vector<std::uint8_t>& data) {
    const std::size_t length = data.size() + kRecordHeaderSize;
    if (length > std::numeric_limits<std::uint16_t>::max()) {
        throw std::length_error("a record does not fit 65535 bytes");
    }
    AppendU16(bytes_, static_cast<std::uint16_t>(length));
    AppendU16(bytes_, code);
    bytes_.insert(bytes_.end(), data.begin(), data.end());
}

void GdsWriter::RecordU16(std::uint16_t code, const std::vector<std::uint16_t>& values) {
    std::vector<std::uint8_t> data;
    data.reserve(values.size() * 2);
    for (const std::uint16_t value : values) {
        AppendU16(data, value);
    }
    Record(code, data);
}

void GdsWriter::RecordI32(std::uint16_t code, const std::vector<std::int32_t>& values) {
    std::vector<std::uint8_t> data;
    data.reserve(values.size() * 4);
    for (const std::int32_t value : values) {
        AppendI32(data, value);
    }
    Record(code, data);
}

void GdsWriter::RecordReals(std::uint16_t code, const std::vector<double>& values) {
    std::vector<std::uint8_t> data;
    data.reserve(values.size() * 8);
    for (const double value : values) {
        const std::vector<std::uint8_t> real = DoubleToGdsReal8(value);
        data.insert(data.end(), real.begin(), real.end());
    }
    Record(code, data);
}

void GdsWriter::RecordText(std::uint16_t code, std::string_view text) {
    std::vector<std::uint8_t> data(text.begin(), text.end());
    if (data.size() % 2 != 0) {
        data.push_back(0);
    }
    Record(code, data);
}

void GdsWriter::BeginLibrary(double userUnit, double metresPerUnit) {
    RecordU16(kHeader, {kStreamVersion});
    RecordU16(kBgnLib, kTimes);
    RecordText(kLibName, "ZELMO");
    RecordReals(kUnits, {userUnit, metresPerUnit});
}

void GdsWriter::EndLibrary() {
    Record(kEndLib);
}

void GdsWriter::BeginCell(std::string_view name) {
    RecordU16(kBgnStr, kTimes);
    RecordText(kStrName, name);
}

void GdsWriter::EndCell() {
    Record(kEndStr);
}

void GdsWriter::Boundary(Layer layer, std::vector<GdsPoint> points) {
    if (!points.empty()) {
        const GdsPoint first = points.front();
        points.push_back(first);
    }
    Record(kBoundary);
    RecordU16(kLayer, {layer.layer});
    RecordU16(kDataType, {layer.datatype});
    RecordI32(kXy, Coordinates(points));
    Record(kEndEl);
}

void GdsWriter::Rectangle(Layer layer, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                          std::int32_t y1) {
    Boundary(layer, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

void GdsWriter::Path(Layer layer, const std::vector<GdsPoint>& points, std::int32_t width,
                     std::uint16_t pathType) {
    Record(kPath);
    RecordU16(kLayer, {layer.layer});
    RecordU16(kDataType, {layer.datatype});
    RecordU16(kPathType, {pathType});
    RecordI32(kWidth, {width});
    RecordI32(kXy, Coordinates(points));
    Record(kEndEl);
}

void GdsWriter::Reference(std::string_view cell, GdsPoint origin, Placement placement) {
    Record(kSref);
    RecordText(kSname, cell);
    Strans(placement);
    RecordI32(kXy, Coordinates({origin}));
    Record(kEndEl);
}

void GdsWriter::Array(std::string_view cell, std::uint16_t columns, std::uint16_t rows,
                      GdsPoint origin, GdsPoint columnEnd, GdsPoint rowEnd, Placement placement) {
    Record(kAref);
    RecordText(kSname, cell);
    Strans(placement);
    RecordU16(kColRow, {columns, rows});
    RecordI32(kXy, Coordinates({origin, columnEnd, rowEnd}));
    Record(kEndEl);
}

// An upright placement of natural size needs none of these records.
void GdsWriter::Strans(const Placement& placement) {
    if (!placement.reflect && placement.mag == 1.0 && placement.degrees == 0.0) {
        return;
    }
    RecordU16(kStrans, {placement.reflect ? kReflection : std::uint16_t{0}});
    if (placement.mag != 1.0) {
        RecordReals(kMag, {placement.mag});
    }
    if (placement.degrees != 0.0) {
        RecordReals(kAngle, {placement.degrees});
    }
}

void GdsWriter::Save(const std::filesystem::path& path) const {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes_.data()),
                 static_cast<std::streamsize>(bytes_.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

// The stream's real is sign, exponent of 16 in excess 64, and a 56 bit fraction whose first
// hexadecimal digit is not zero: 53 bits at least, so every double within range has an exact one.
std::vector<std::uint8_t> DoubleToGdsReal8(double value) {
    constexpr int kFractionBits = 56;
    constexpr int kExcess = 64;
    if (!std::isfinite(value)) {
        throw std::out_of_range("a real is not finite");
    }
    int binaryExponent = 0;
    const double binaryFraction = std::frexp(std::fabs(value), &binaryExponent);
    // The smallest multiple of four that leaves a fraction below 1
    int hexExponent = (binaryExponent + 3) >> 2;
    if (hexExponent + kExcess > 127) {
        throw std::out_of_range("a real is too large");
    }
    if (hexExponent < -kExcess) {
        hexExponent = -kExcess;
    }
    const int shift = kFractionBits + binaryExponent - 4 * hexExponent;
    const auto fraction =
        static_cast<std::uint64_t>(std::nearbyint(std::ldexp(binaryFraction, shift)));
    std::vector<std::uint8_t> bytes(8, 0);
    if (fraction == 0) {
        return bytes;
    }
    bytes[0] = static_cast<std::uint8_t>(hexExponent + kExcess);
    if (std::signbit(value)) {
        bytes[0] |= 0x80;
    }
    for (int i = 1; i < 8; ++i) {
        bytes[static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>((fraction >> (kFractionBits - 8 * i)) & 0xFF);
    }
    return bytes;
}

}  // namespace zelmo
