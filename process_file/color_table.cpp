#include "process_file/color_table.h"

#include <limits>
#include <optional>

#include "base/file.h"

namespace zelmo {

namespace {

bool IsSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Takes the fields of a line from front to back.
class LineScanner {
public:
    explicit LineScanner(std::string_view line) : rest_(line) {}

    /// The next run of characters without white space; empty at the end of the line.
    std::string_view Word() {
        SkipSpace();
        std::size_t length = 0;
        while (length < rest_.size() && !IsSpace(rest_[length])) {
            ++length;
        }
        return Take(length);
    }

    /// The next decimal number, with or without a sign; numbers too large for 32 bits saturate.
    std::optional<std::int32_t> Number() {
        SkipSpace();
        const bool negative = !rest_.empty() && rest_.front() == '-';
        if (negative || (!rest_.empty() && rest_.front() == '+')) {
            Take(1);
        }
        if (rest_.empty() || !IsDigit(rest_.front())) {
            return std::nullopt;
        }
        constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
        constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
        std::int64_t value = 0;
        while (!rest_.empty() && IsDigit(rest_.front())) {
            const int digit = Take(1).front() - '0';
            value = value * 10 + (negative ? -digit : digit);
            value = value < least ? least : (value > most ? most : value);
        }
        return static_cast<std::int32_t>(value);
    }

    /// A comma with nothing in front of it.
    bool Comma() {
        const bool found = !rest_.empty() && rest_.front() == ',';
        if (found) {
            Take(1);
        }
        return found;
    }

private:
    void SkipSpace() {
        while (!rest_.empty() && IsSpace(rest_.front())) {
            rest_.remove_prefix(1);
        }
    }

    std::string_view Take(std::size_t length) {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return taken;
    }

    std::string_view rest_;
};

/// A line such as "beige #F5F5DC 245, 245, 220": name, a word that nobody reads, three numbers.
/// What follows them is ignored.
std::optional<ColorEntry> ScanColorLine(std::string_view line) {
    LineScanner scanner(line);
    const std::string_view name = scanner.Word();
    if (name.empty() || scanner.Word().empty()) {
        return std::nullopt;
    }
    const auto red = scanner.Number();
    if (!red || !scanner.Comma()) {
        return std::nullopt;
    }
    const auto green = scanner.Number();
    if (!green || !scanner.Comma()) {
        return std::nullopt;
    }
    const auto blue = scanner.Number();
    if (!blue) {
        return std::nullopt;
    }
    return ColorEntry{std::string(name), *red, *green, *blue};
}

}  // namespace

bool LoadColorTable(ColorTable& table, const std::filesystem::path& path) {
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return false;
    }
    std::string line;
    while (ReadTextLine(file.get(), line)) {
        const bool comment = !line.empty() && line.front() == '#';
        if (comment || line.find_first_not_of(" \r\n\t") == std::string::npos) {
            continue;
        }
        const auto entry =
            ScanColorLine(std::string_view(line).substr(0, line.find_first_of("\r\n")));
        if (!entry) {
            return false;
        }
        table.push_back(*entry);
    }
    return true;
}

const ColorEntry* FindColor(const ColorTable& table, std::string_view name) {
    for (const ColorEntry& entry : table) {
        if (entry.name == name) {
            return &entry;
        }
    }
    return nullptr;
}

std::array<float, 3> ColorOf(const ColorEntry& entry) {
    return {static_cast<float>(entry.red) / 255.0f, static_cast<float>(entry.green) / 255.0f,
            static_cast<float>(entry.blue) / 255.0f};
}

}  // namespace zelmo
