#pragma once

#include <string>
#include <string_view>

namespace zelmo {

/// Text in UTF-8 for the content of an XML element or attribute: its own characters escaped,
/// control characters as blanks.
std::string XmlText(std::string_view text);

}  // namespace zelmo
