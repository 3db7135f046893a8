#pragma once

#include <string>
#include <string_view>

namespace zelmo {

/// Text of a process file as UTF-8: kept where it is UTF-8, else widened byte by byte, as the names
/// of pictures are.
std::string ReadableText(std::string_view bytes);

/// A field of a CSV file (RFC 4180): in quotation marks where it needs them.
std::string CsvField(std::string_view text);

}  // namespace zelmo
