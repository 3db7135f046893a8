#include "results/readable_text.h"

#include "base/text.h"

namespace zelmo {

namespace {

/// Whether bytes were no UTF-8 when they were widened: they are surrogates without a partner then.
bool HasStrayBytes(std::wstring_view wide) {
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const bool isStray = wide[i] >= 0xDC80 && wide[i] <= 0xDCFF;
        const bool hasPartner = i > 0 && wide[i - 1] >= 0xD800 && wide[i - 1] <= 0xDBFF;
        if (isStray && !hasPartner) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string ReadableText(std::string_view bytes) {
    return HasStrayBytes(WideFromUtf8(bytes)) ? Utf8FromWide(WidenBytes(bytes))
                                              : std::string(bytes);
}

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char character : text) {
        field.append(character == '"' ? 2 : 1, character);
    }
    return field + '"';
}

}  // namespace zelmo
