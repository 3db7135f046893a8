#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/mask/mask_layer.h"

// What a process file asks for, as plain records. Lengths are micrometres in single precision.

namespace zelmo {

/// What a run looks at, and how its pictures are drawn.
struct ProcessSettings {
    std::int32_t gridColumns = 0;
    float windowWidth = 0.0f;
    float windowHeight = 0.0f;  ///< at most `windowWidth`
    float windowX = 0.0f;       ///< the window's lower left corner, in coordinates of the layout
    float windowY = 0.0f;
    bool lengthsInNanometres =
        false;                 ///< the process file's lengths in the layout; here all are um
    float cameraAngle = 0.0f;  ///< degrees, 0 to 89
    bool showHeights = false;
    bool showLegend = false;
    std::string cellName;
};

/// The kinds of step. The numbers are fixed.
enum class StepKind : std::int32_t {
    Coating = 0,
    Deposition = 2,
    Substrate = 3,
    Dump = 4,
    Photo = 7,
    Etch = 8,
    Strip = 9,
    Release = 10,
    Polish = 11,
    Implant = 12,
};

/// One step of a run.
struct ProcessStep {
    bool maskDark = false;              ///< photo: resist stays inside the mask's polygons
    StepKind kind = StepKind::Coating;  ///< what the number 0 stands for
    std::int32_t line = 0;              ///< of the process file, counted from 1; 0: of none
    float alpha = 0.0f;                 ///< opacity of the new layer, 0 to 1
    std::array<float, 3> color{};       ///< red, green, blue, 0 to 1
    float depth = 0.0f;                 ///< etch, implant
    float dop = 0.0f;                   ///< coating: degree of planarisation, 0 to 1
    float iso = 0.0f;                   ///< etch: isotropy, the sideways share of the depth
    float resistRate = 1.0f;            ///< etch: depth in resist, as a share of the depth, 0 to 1
    float res = 0.0f;                   ///< photo: diameter of the disc that rounds the pattern
    float stepCoverage = 0.0f;          ///< deposition: sideways share of the thickness, 0.1 to 1
    float taper = 0.0f;                 ///< photo: slope of the resist's edge in degrees
    float thickness = 0.0f;
    /// polish: of the plane, from the level of the stop (`polishesToStop`) or from the substrate's
    /// upper side
    float level = 0.0f;
    bool polishesToStop = false;
    std::vector<MaskLayer> mask;  ///< photo: its polygons are those of all of these
    MaskAdjustment adjustment;    ///< photo
    std::string label;            ///< text in the legend
    std::string photoName;
    std::string material;      ///< what etch and release targets are matched with
    std::string materialType;  ///< what `-targets` selects by
    std::string description;   ///< text for the console and the picture
    std::string processName;   ///< name of an etch, release, strip or polish
    std::string result;        ///< dump: what is written
    /// Names of materials: what etch and release remove, what implant converts, what stops a polish
    std::vector<std::string> targets;

    bool operator==(const ProcessStep&) const = default;
};

}  // namespace zelmo
