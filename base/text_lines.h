#pragma once

#include <string>
#include <string_view>

namespace zelmo {

/// Takes the next line off the front of `rest`, as ReadTextLine (base/file.h) reads it from a file:
/// its LF included, at most 1023 bytes, CR LF as one LF, no text behind a NUL byte. False where
/// there is none.
bool TakeTextLine(std::string_view& rest, std::string& line);

}  // namespace zelmo
