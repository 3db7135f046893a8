#pragma once

#include <cstdint>

#include "base/lanes.h"

// What can be seen of a stack, row by row. All rows are padded (base/padded_rows.h); the values
// behind the end repeat the last one. A mask is 0 or -1 (all bits).

namespace zelmo {

/// One layer at one row of mesh positions.
struct SheetRow {
    const float* top = nullptr;
    const float* bottom = nullptr;
    bool isOpaque = false;
    std::int32_t* thick = nullptr;       ///< mask: the layer exists
    std::int32_t* aboveUpper = nullptr;  ///< index of the opaque layer in which the top lies
    std::int32_t* aboveLower = nullptr;  ///< the same for the bottom
    std::int32_t* standsOn = nullptr;  ///< index of the layer on whose top the bottom lies exactly
};

/// The lowest and the highest height; `sum` is no number where one of the heights is none.
struct HeightRange {
    float lowest = 0.0f;
    float highest = 0.0f;
    float sum = 0.0f;
};

/// For each of the layers of a stack, lowest first: where it is thick, and what lies in the inside
/// of an opaque layer, at least `depth` (a row) below its top, with no translucent layer between
/// the two in the stack. The index of no layer is -1.
ZELMO_DECLARE_LANE_KERNEL(void FindNeighbourLayers(const SheetRow* layers, std::int32_t layerCount,
                                                   const float* depth, std::int32_t cols,
                                                   HeightRange& range))

/// Two neighbouring rows of heights, or of layers' indices or masks.
struct HeightRows {
    const float* front = nullptr;
    const float* back = nullptr;
};
struct IndexRows {
    const std::int32_t* front = nullptr;
    const std::int32_t* back = nullptr;
};

/// A slope that faces the eye for certain: the eye's height above a place and its distances.
struct EyeRange {
    float height = 0.0f;    ///< of the eye
    float farthest = 0.0f;  ///< along y from the eye to any place
    float sideways = 0.0f;  ///< along x from the eye to any place
    float spacing = 0.0f;   ///< of the grid
};

/// Mask of the squares whose four corners lie inside the same layer, on a slope that faces the eye.
ZELMO_DECLARE_LANE_KERNEL(void FindBuriedSquares(const IndexRows& inside, const HeightRows& heights,
                                                 const EyeRange& eye, std::int32_t squares,
                                                 std::int32_t* buried))

/// A byte for every square out of six masks, the first one its lowest bit.
ZELMO_DECLARE_LANE_KERNEL(void PackMasks(const std::int32_t* const* masks, std::int32_t squares,
                                         std::uint8_t* bytes))

/// Masks of the squares' triangles: of their lower left halves and of their upper right ones.
struct TriangleMasks {
    std::int32_t* front = nullptr;
    std::int32_t* back = nullptr;
};

/// Writes to each of the three which triangles are there: one of their corners is thick. True if
/// any are.
ZELMO_DECLARE_LANE_KERNEL(bool FindTriangles(const IndexRows& thick, std::int32_t squares,
                                             const TriangleMasks* three))

/// Takes the triangles out of the masks whose corners all stand on the same layer. True if any are
/// left.
ZELMO_DECLARE_LANE_KERNEL(bool RemoveStanding(const IndexRows& standsOn, std::int32_t squares,
                                              const TriangleMasks& triangles))

/// Takes the triangles of squares out that are buried together with those to their sides and the
/// three before them, which the ways to the eye pass first. `buriedRows` are the row of squares
/// before and this one. True if any are left.
ZELMO_DECLARE_LANE_KERNEL(bool RemoveBuried(const std::int32_t* const* buriedRows,
                                            std::int32_t squares, const TriangleMasks& triangles))

/// The shadow over a row of squares of squares: none where the highest is below the lowest.
struct ShadowRow {
    const float* lowest = nullptr;
    const float* highest = nullptr;
};

/// Takes the triangles of squares out that lie in a shadow.
ZELMO_DECLARE_LANE_KERNEL(void RemoveShadowed(const HeightRows& heights, const ShadowRow& shadow,
                                              std::int32_t squares, const TriangleMasks& triangles))

/// The pixels of a row of places: x and y on the picture are (a + b * col + c * z) each, over w.
struct Projection {
    float xStart, xPerCol, xPerHeight;
    float yStart, yPerCol, yPerHeight;
    float wStart, wPerCol, wPerHeight;
    float xCentre, xScale;
    float yCentre, yScale;
};

struct PixelRow {
    float* x = nullptr;
    float* y = nullptr;
};

ZELMO_DECLARE_LANE_KERNEL(void ProjectRow(const Projection& projection, const float* heights,
                                          std::int32_t cols, const PixelRow& pixels))

/// Takes the triangles out that cover no pixel's centre, not even when moved by `margin` pixels.
ZELMO_DECLARE_LANE_KERNEL(void RemoveUncovering(const PixelRow& front, const PixelRow& back,
                                                float margin, std::int32_t squares,
                                                const TriangleMasks& triangles))

}  // namespace zelmo
