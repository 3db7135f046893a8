#include "results/notes/note_list.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <span>

#include "base/text.h"

namespace zelmo {

namespace {

constexpr std::size_t longestQuote = 60;

}  // namespace

std::string Readable(std::string_view bytes) {
    return Utf8FromWide(WidenBytes(bytes));
}

std::string Quoted(std::string_view bytes) {
    return bytes.size() > longestQuote
               ? fmt::format("\"{}...\"", Readable(bytes.substr(0, longestQuote)))
               : fmt::format("\"{}\"", Readable(bytes));
}

std::string Percent(double part, double whole) {
    const double share = 100.0 * part / whole;
    return share >= 0.1 || share == 0.0 ? fmt::format("{:.1f} %", share) : "below 0.1 %";
}

std::string OtherLines(const std::vector<std::int32_t>& lines) {
    if (lines.size() < 2) {
        return {};
    }
    constexpr std::size_t most = 6;
    const std::span others(lines.begin() + 1, lines.end());
    if (others.size() == 1) {
        return fmt::format(" (line {} as well)", others[0]);
    }
    if (others.size() > most) {
        return fmt::format(" (lines {} and {} more as well)", fmt::join(others.first(most), ", "),
                           others.size() - most);
    }
    return fmt::format(" (lines {} and {} as well)",
                       fmt::join(others.first(others.size() - 1), ", "), others.back());
}

void Append(std::vector<Note>& notes, std::vector<Note> more) {
    notes.insert(notes.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
}

}  // namespace zelmo
