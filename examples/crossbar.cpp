#include <string>

#include "examples/layouts.h"
#include "examples/round_shapes.h"

namespace zelmo {

namespace {

enum Mask : std::uint16_t { kRow = 1, kPillar = 2, kColumn = 3 };

// Lengths in nm. Lines and pillars stand on a square lattice about the origin.
constexpr std::int32_t kPitch = 2000;
constexpr std::uint16_t kLines = 7;
constexpr std::int32_t kHalf = kPitch * (kLines / 2);
constexpr std::int32_t kSpan = kPitch * kLines;
constexpr std::int32_t kLineWidth = 1000;

std::string MaskName(Mask mask) {
    return mask == kRow ? "ROW" : "COLUMN";
}

std::string FanOutName(Mask mask, std::int32_t step) {
    return "FANOUT_" + MaskName(mask) + std::to_string(step);
}

void DrawParts(GdsWriter& gds) {
    gds.BeginCell("PILLAR");
    gds.Boundary(kPillar, Circle({0, 0}, 420));
    gds.EndCell();

    for (const Mask mask : {kRow, kColumn}) {
        gds.BeginCell(MaskName(mask) + "_LINE");
        gds.Path(mask, {{-kHalf - 500, 0}, {kHalf + 500, 0}}, kLineWidth, 2);
        gds.EndCell();

        gds.BeginCell(MaskName(mask) + "_PAD");
        gds.Boundary(mask, {{-500, -500}, {500, -500}, {500, 500}, {-500, 500}});
        gds.EndCell();

        // From a line's end to the left: the further out the line, the wider the bend to its pad.
        for (std::int32_t step = 0; step <= kLines / 2; ++step) {
            const std::int32_t rise = step * 1000;
            gds.BeginCell(FanOutName(mask, step));
            if (step == 0) {
                gds.Path(mask, {{0, 0}, {-5000, 0}}, 700);
            } else {
                gds.Path(mask, {{0, 0}, {-1000, 0}, {-1000 - rise, rise}, {-5000, rise}}, 700);
            }
            gds.Reference(MaskName(mask) + "_PAD", {-5800, rise}, {false, 2.0, 0.0});
            gds.EndCell();
        }
    }

    gds.BeginCell("MARK");
    gds.Boundary(kColumn,
                 {{300, 300}, {2300, 300}, {2300, 900}, {900, 900}, {900, 1900}, {300, 1900}});
    gds.EndCell();
}

void DrawMatrix(GdsWriter& gds) {
    gds.BeginCell("MATRIX");
    gds.Array("PILLAR", kLines, kLines, {-kHalf, -kHalf}, {-kHalf + kSpan, -kHalf},
              {-kHalf, -kHalf + kSpan});
    gds.Array("ROW_LINE", 1, kLines, {0, -kHalf}, {kSpan, -kHalf}, {0, -kHalf + kSpan});
    gds.Array("COLUMN_LINE", kLines, 1, {-kHalf, 0}, {-kHalf + kSpan, 0}, {-kHalf, kSpan},
              {false, 1.0, 90.0});
    gds.EndCell();
}

void DrawTop(GdsWriter& gds) {
    gds.BeginCell("CROSSBAR");
    gds.Reference("MATRIX", {0, 0});
    for (std::int32_t line = -kLines / 2; line <= kLines / 2; ++line) {
        // Rows leave to the left, columns to the back; lines on the other side of the middle are
        // mirrored.
        const std::int32_t step = line < 0 ? -line : line;
        gds.Reference(FanOutName(kRow, step), {-kHalf - 500, line * kPitch}, {line < 0, 1.0, 0.0});
        gds.Reference(FanOutName(kColumn, step), {line * kPitch, kHalf + 500},
                      {line < 0, 1.0, 270.0});
    }
    for (int turn = 0; turn < 4; ++turn) {
        gds.Reference("MARK", {-12200, 11500}, {false, 0.75, 90.0 * turn});
    }
    gds.Reference("MARK", {8500, 4500}, {true, 1.0, 45.0});
    gds.EndCell();
}

}  // namespace

GdsWriter CrossbarLayout() {
    GdsWriter gds;
    gds.BeginLibrary();
    DrawParts(gds);
    DrawMatrix(gds);
    DrawTop(gds);
    gds.EndLibrary();
    return gds;
}

}  // namespace zelmo
