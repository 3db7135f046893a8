#include "examples/studies/layouts.h"

#include <string_view>

namespace zelmo {

namespace {

struct Piece {
    std::uint16_t mask;
    std::int32_t x0, y0, x1, y1;  // nm
};

GdsWriter OneCell(std::string_view name, const std::vector<Piece>& pieces) {
    GdsWriter gds;
    gds.BeginLibrary();
    gds.BeginCell(name);
    for (const Piece& piece : pieces) {
        gds.Rectangle(piece.mask, piece.x0, piece.y0, piece.x1, piece.y1);
    }
    gds.EndCell();
    gds.EndLibrary();
    return gds;
}

}  // namespace

GdsWriter SpacerLayout() {
    return OneCell("SPACER", {{1, 750, -2000, 1250, 2000}});
}

GdsWriter ContactLayout() {
    return OneCell("CONTACT", {{1, -200, -2000, 200, 2000}, {2, 400, -150, 700, 150}});
}

GdsWriter CoverageLayout() {
    return OneCell("TRENCH", {{1, 1300, -2000, 1700, 2000}});
}

GdsWriter IsolationLayout() {
    return OneCell("ISOLATION", {{1, 1000, -2000, 4000, 2000}});
}

}  // namespace zelmo
