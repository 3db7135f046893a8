#include "base/xml_text.h"

namespace zelmo {

std::string XmlText(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default: {
                const auto byte = static_cast<unsigned char>(character);
                escaped.push_back(byte < 0x20 || byte == 0x7F ? ' ' : character);
            }
        }
    }
    return escaped;
}

}  // namespace zelmo
