#pragma once

#include <span>
#include <string>
#include <vector>

#include "results/section.h"

namespace zelmo {

/// The heights that a picture of a section shows, in nanometres above the substrate's upper side.
struct HeightRange {
    double low = 0.0;
    double high = 0.0;
};

/// The heights from the lowest to the highest point of some sections, of layers where they are. So
/// the pictures of one cut can have one scale through all steps.
HeightRange HeightsOf(std::span<const Section> sections);

/// How a section is drawn.
struct SectionView {
    HeightRange heights;
    double stretch = 1.0;  ///< of heights; 1 has true proportions
    std::string cut;       ///< names the cut in the heading, in UTF-8
};

/// A section as an SVG picture: the layers in their colours and opacities, a hair's breadth at
/// least, with axes in um along the cut and in nm of height, a legend with the uppermost layer
/// first, and the step's name.
std::string SectionSvg(const Section& section, const std::vector<CutPoint>& points,
                       const SectionView& view);

}  // namespace zelmo
