#include "process_file/manual.h"

#include <algorithm>
#include <iterator>

namespace zelmo {

namespace {

constexpr std::string_view needed = "needed";
constexpr std::string_view layoutUnit = "um, or nm with -use_nm";
constexpr std::string_view colorValues = "three from 0 to 255, one from 0 to 100";
constexpr std::string_view colorMeaning = "red, green, blue and a brightness in per cent";
constexpr std::string_view namedColorMeaning = "colour by its name in colors.txt";
constexpr std::string_view opacity = "opacity in the picture";
constexpr std::string_view orNamed = "needed, or -scolor";
constexpr std::string_view orNumbers = "needed, or -color";
constexpr std::string_view materialName =
    "material, unique among depositions, coatings and implants";
constexpr std::string_view materialType = "type, which -targets selects by from the next line on";

constexpr ManualRow rows[] = {
    {"settings", "-version", "4", "", needed, "version of the file format"},
    {"settings", "-N", "200 to 2000", "", "1000", "grid points across the picture"},
    {"settings", "-angle", "0 to 90", "degrees", "30", "elevation of the camera"},
    {"settings", "-use_nm", "", "", "off", "window, -res, -bias and -shift are in nm"},
    {"settings", "-heights", "", "", "off", "draw height markers, labelled in Angstrom"},
    {"settings", "-legend", "", "", "off", "draw the legend"},

    {"location", "-x", "number", layoutUnit, needed, "left edge of the window in the layout"},
    {"location", "-y", "number", layoutUnit, needed, "lower (front) edge of the window"},
    {"location", "-dx", "above 0", layoutUnit, needed, "width of the window"},
    {"location", "-dy", "above 0", layoutUnit, needed, "height of the window, at most its width"},

    {"gds", "-cell", "word", "", needed, "name of the cell of the layout"},

    {"deposition", "-name", "word", "", needed, materialName},
    {"deposition", "-type", "word", "", needed, materialType},
    {"deposition", "-thickness", "above 0", "nm", needed, "thickness of the film"},
    {"deposition", "-sc", "up to 1.0", "", "0.1",
     "step coverage: the sideways share of the growth, at least 0.1"},
    {"deposition", "-color", colorValues, "", orNamed, colorMeaning},
    {"deposition", "-scolor", "name", "", orNumbers, namedColorMeaning},
    {"deposition", "-alpha", "0.0 to 1.0", "", "1.0", opacity},

    {"coating", "-name", "word", "", needed, materialName},
    {"coating", "-type", "word", "", needed, materialType},
    {"coating", "-thickness", "above 0", "nm", needed, "thickness of the film"},
    {"coating", "-dop", "0.0 to 1.0", "", "1.0",
     "degree of planarisation: 0.0 even thickness, 1.0 the strongest levelling"},
    {"coating", "-color", colorValues, "", orNamed, colorMeaning},
    {"coating", "-scolor", "name", "", orNumbers, namedColorMeaning},
    {"coating", "-alpha", "0.0 to 1.0", "", "1.0", opacity},

    {"photo", "-name", "word", "", needed, "name of the exposure"},
    {"photo", "-mask_id", "layers, with or without /datatypes", "", needed,
     "layers of the layout that make the mask"},
    {"photo", "-type", "0 or 1", "", needed,
     "1 (dark): resist stays inside the polygons; 0 (clear): outside"},
    {"photo", "-res", "0.0 or more", layoutUnit, needed,
     "diameter over which the pattern is rounded"},
    {"photo", "-taper", "whole number", "degrees", "60", "slope of the resist's edge"},
    {"photo", "-thickness", "above 0", "nm", needed, "thickness of the resist"},
    {"photo", "-bias", "number", layoutUnit, "0",
     "growth of the mask's polygons on every side; negative: they shrink"},
    {"photo", "-shift", "two numbers", layoutUnit, "0 0", "shift of the mask to the right and up"},

    {"etch", "-name", "word", "", needed, "name of the etch, unique among etches"},
    {"etch", "-targets", "types", "", needed, "types of the materials that are etched"},
    {"etch", "-depth", "0 or more", "nm", needed, "depth below the present surface"},
    {"etch", "-iso", "0.0 to 5.0", "", needed,
     "isotropy: the sideways share of the depth; 0.0 is straight down"},
    {"etch", "-resist", "0.0 to 1.0", "", "1.0",
     "how fast exposed resist goes, as a share of the depth"},

    {"release", "-targets", "types", "", needed,
     "types of the materials that are removed wherever they are"},
    {"release", "-name", "word", "", needed, "name of the release, unique among releases"},

    {"strip", "-name", "word", "", needed, "name of the strip, unique among strips"},

    {"polish", "-name", "word", "", needed, "name of the polish, unique among polishes"},
    {"polish", "-stop", "types", "", "needed, or -level",
     "types of the materials whose upper side is the plane"},
    {"polish", "-over", "0 or more", "nm", "0", "with -stop: the plane lies so far below"},
    {"polish", "-above", "0 or more", "nm", "0", "with -stop: the plane lies so far above"},
    {"polish", "-level", "0 or more", "nm", "needed, or -stop",
     "height of the plane above the substrate"},

    {"implant", "-name", "word", "", needed, materialName},
    {"implant", "-type", "word", "", needed, materialType},
    {"implant", "-targets", "types", "", needed, "types of the materials that are doped"},
    {"implant", "-depth", "0 or more", "nm", needed, "depth of the doping below the surface"},
    {"implant", "-color", colorValues, "", orNamed, colorMeaning},
    {"implant", "-scolor", "name", "", orNumbers, namedColorMeaning},
    {"implant", "-alpha", "0.0 to 1.0", "", "1.0", opacity},
};

}  // namespace

std::span<const ManualRow> Manual() {
    return rows;
}

const ManualRow* FindManualRow(std::string_view command, std::string_view argument) {
    const auto* const found = std::find_if(std::begin(rows), std::end(rows), [&](const auto& row) {
        return row.command == command && row.argument == argument;
    });
    return found != std::end(rows) ? found : nullptr;
}

}  // namespace zelmo
