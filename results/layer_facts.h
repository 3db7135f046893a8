#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace zelmo {

struct Stack;

/// What a layer is called and looks like.
struct LayerFacts {
    int number = 0;        ///< from the substrate's, 1, on; a layer keeps it, and no other gets it
    std::string material;  ///< UTF-8, as the label
    std::string label;
    std::array<float, 3> color{};  ///< red, green, blue, 0 to 1
    float alpha = 1.0f;

    bool operator==(const LayerFacts&) const = default;
};

/// The facts of the layer in a slot that is not empty.
LayerFacts FactsOf(const Stack& stack, std::size_t slot);

// Heights are told in nanometres above the upper side that the substrate had in the beginning, as
// the height labels of pictures are.

/// A height of the model, in micrometres, as such a height.
double NanometresAboveSubstrate(double micrometres, const Stack& stack);

/// Nanometres with three decimals.
std::string NanometresText(double nanometres);

/// The number of which this is the text.
double RoundedNanometres(double nanometres);

/// Thicknesses up to this, in nanometres, are none: they come from rounding alone.
constexpr double noThickness = 1e-6;

}  // namespace zelmo
