#include "layout_tool/lengths.h"

#include <fmt/format.h>

#include <cmath>

#include "gds/gds_database.h"

namespace zelmo {

namespace {

constexpr int mostDecimals = 9;

/// The least number of decimals that tells one unit from the next and writes it in full, or -1.
int DecimalsOf(double micronsPerUnit) {
    double scaled = micronsPerUnit;
    for (int decimals = 0; decimals <= mostDecimals; ++decimals, scaled *= 10.0) {
        const double rounded = std::round(scaled);
        if (rounded >= 1.0 && rounded < 1e9 && std::abs(scaled - rounded) < 1e-9 * scaled) {
            return decimals;
        }
    }
    return -1;
}

}  // namespace

Lengths::Lengths(const GdsDatabase& database) : Lengths(database.micronsPerUnit) {}

Lengths::Lengths(double micronsPerUnit)
    : micronsPerUnit_(micronsPerUnit), decimals_(DecimalsOf(micronsPerUnit)) {}

std::string Lengths::Text(std::int64_t units) const {
    const double microns = Microns(units);
    return decimals_ < 0 ? ShortText(microns, 9) : fmt::format("{:.{}f}", microns, decimals_);
}

double Lengths::Microns(std::int64_t units) const {
    const double microns = static_cast<double>(units) * micronsPerUnit_;
    if (decimals_ < 0) {
        return microns + 0.0;
    }
    double scale = 1.0;
    for (int i = 0; i < decimals_; ++i) {
        scale *= 10.0;
    }
    return std::round(microns * scale) / scale + 0.0;  // and never a negative zero
}

std::string Lengths::AreaText(double squareUnits) const {
    return SquareMicronsText(SquareMicrons(squareUnits));
}

double Lengths::SquareMicrons(double squareUnits) const {
    return squareUnits * micronsPerUnit_ * micronsPerUnit_;
}

std::string ShortText(double number, int digits) {
    return fmt::format("{:.{}g}", number, digits);
}

std::string SquareMicronsText(double squareMicrons) {
    constexpr double large = 1e15;
    constexpr double small = 0.01;
    if (!std::isfinite(squareMicrons)) {
        return std::isnan(squareMicrons) ? "unknown" : "infinite";
    }
    if (squareMicrons == 0.0) {
        return "0";
    }
    return squareMicrons >= large || squareMicrons < small ? ShortText(squareMicrons)
                                                           : fmt::format("{:.3f}", squareMicrons);
}

std::string CountText(const FlatCount& count) {
    if (count.isExact) {
        return fmt::format("{}", count.exact);
    }
    return std::isfinite(count.estimate) ? fmt::format("about {:.3g}", count.estimate) : "too many";
}

}  // namespace zelmo
