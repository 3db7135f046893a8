#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gds/gzip_fault.h"

namespace zelmo {

/// Why a layout is refused. The numbers are the codes that users see, and stay. "Stray" is what
/// stands where it must not.
enum class LayoutErrorKind : std::int32_t {
    FileUnreadable = 2,
    PathNotExpandable = 3,
    UnitsNotPositive = 4,
    RecordTooShort = 5,
    NestedStructure = 6,
    StrayStructureEnd = 7,
    StrayBoundary = 8,
    StrayPath = 9,
    StrayReference = 10,
    StrayArray = 11,
    StrayText = 12,
    StrayNode = 13,
    StrayBox = 14,
    StrayElementEnd = 15,
    StrayReferenceName = 16,
    StrayColumnsAndRows = 17,
    StrayPathType = 18,
    StrayTransformFlags = 19,
    StrayAngle = 20,
    StrayMagnification = 21,
    BadPoints = 22,
    StrayLayer = 25,
    StrayWidth = 26,
    StrayStructureName = 27,
    LayerMissing = 28,
    CellMissing = 29,
    CellInItself = 30,
};

/// What is wrong with a layout, and where.
struct LayoutError {
    LayoutErrorKind kind = LayoutErrorKind::FileUnreadable;
    /// Where the record begins: of the file, or of what a compressed one unpacks to. Where that is
    /// what fails, of the compressed file.
    std::uint64_t byte = 0;
    std::optional<std::uint16_t> record;  ///< its code; none where the file cannot be read further
    std::string cell;                     ///< the structure that it stands in; empty outside
    std::optional<GzipFault> unpacking = std::nullopt;  ///< why a compressed file is unreadable

    bool operator==(const LayoutError&) const = default;
};

/// The number that users see.
constexpr std::int32_t LayoutErrorCode(LayoutErrorKind kind) {
    return static_cast<std::int32_t>(kind);
}

/// What a kind of error means, in words.
const char* LayoutErrorReason(LayoutErrorKind kind);

}  // namespace zelmo
