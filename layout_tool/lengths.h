#pragma once

#include <cstdint>
#include <string>

#include "gds/flat_count.h"

namespace zelmo {

struct GdsDatabase;

/// How lengths of a layout become micrometres, and numbers become texts. The same on every
/// platform.
class Lengths {
public:
    explicit Lengths(const GdsDatabase& database);
    /// For tests. Throws nothing, whatever the unit is.
    explicit Lengths(double micronsPerUnit);

    double MicronsPerUnit() const { return micronsPerUnit_; }

    /// A coordinate or size in um, with as many decimals as a unit of the layout needs.
    std::string Text(std::int64_t units) const;
    /// The same number, to be written as data.
    double Microns(std::int64_t units) const;

    /// An area in square units as um2: "1234.567"; "infinite" beyond all numbers.
    std::string AreaText(double squareUnits) const;
    double SquareMicrons(double squareUnits) const;

private:
    double micronsPerUnit_;
    int decimals_ = -1;  ///< negative: none are enough
};

/// A number with no more digits than it needs, at most `digits` of them that count.
std::string ShortText(double number, int digits = 6);

/// An area in um2.
std::string SquareMicronsText(double squareMicrons);

/// "1234", or "about 7.29e+26" where no integer holds it, or "too many".
std::string CountText(const FlatCount& count);

}  // namespace zelmo
