#include "base/nearest_name.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace zelmo {

namespace {

/// The work for two names grows with the product of their lengths.
constexpr std::size_t longestName = 64;

/// What a slip costs: so that any number of letters in the other case costs less than one slip.
constexpr int slip = 256;
constexpr int otherCase = 1;

using Row = std::array<int, longestName + 1>;

char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

int CostOf(char from, char to) {
    if (from == to) {
        return 0;
    }
    return LowerCase(from) == LowerCase(to) ? otherCase : slip;
}

bool AreExchanged(std::string_view from, std::size_t i, std::string_view to, std::size_t j) {
    return i > 0 && j > 0 && from[i] == to[j - 1] && from[i - 1] == to[j];
}

/// The cost of the slips that lead from one name to another; both at most `longestName` long.
int Distance(std::string_view from, std::string_view to) {
    Row beforeLast{};
    Row last{};
    Row present{};
    for (std::size_t j = 0; j <= to.size(); ++j) {
        present[j] = static_cast<int>(j) * slip;
    }
    for (std::size_t i = 0; i < from.size(); ++i) {
        beforeLast = last;
        last = present;
        present[0] = last[0] + slip;
        for (std::size_t j = 0; j < to.size(); ++j) {
            present[j + 1] =
                std::min({last[j] + CostOf(from[i], to[j]), last[j + 1] + slip, present[j] + slip});
            if (AreExchanged(from, i, to, j)) {
                present[j + 1] = std::min(present[j + 1], beforeLast[j - 1] + slip);
            }
        }
    }
    return present[to.size()];
}

}  // namespace

std::string_view NearestName(std::string_view name, std::span<const std::string_view> known) {
    std::string_view nearest;
    int least = 0;
    for (const std::string_view candidate : known) {
        const std::size_t longer = std::max(name.size(), candidate.size());
        if (longer > longestName || candidate.empty()) {
            continue;
        }
        const int mostSlips = std::max(1, static_cast<int>(longer) / 3);
        const int distance = Distance(name, candidate);
        if (distance / slip <= mostSlips && distance / slip < static_cast<int>(longer) &&
            (nearest.empty() || distance < least)) {
            nearest = candidate;
            least = distance;
        }
    }
    return nearest;
}

}  // namespace zelmo
