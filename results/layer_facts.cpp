#include "results/layer_facts.h"

#include <fmt/format.h>

#include <cmath>

#include "model/stack.h"
#include "results/readable_text.h"

namespace zelmo {

LayerFacts FactsOf(const Stack& stack, std::size_t slot) {
    const Layer& layer = *stack.layers[slot];
    return {static_cast<int>(slot) + 1, ReadableText(layer.material), ReadableText(layer.label),
            layer.color, layer.alpha};
}

double NanometresAboveSubstrate(double micrometres, const Stack& stack) {
    return (micrometres - static_cast<double>(stack.substrateThickness)) * 1000.0;
}

double RoundedNanometres(double nanometres) {
    const double rounded = std::round(nanometres * 1000.0) / 1000.0;
    return rounded == 0.0 ? 0.0 : rounded;  // no negative zero
}

std::string NanometresText(double nanometres) {
    return fmt::format("{:.3f}", RoundedNanometres(nanometres));
}

}  // namespace zelmo
