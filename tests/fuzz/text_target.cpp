#include <string>

#include "base/text.h"
#include "pictures/picture_names.h"
#include "tests/fuzz/target.h"

// Any bytes as a path, as its text, and back.

namespace zelmo {

namespace {

void Convert(const std::string& bytes) {
    const std::wstring wide = WideFromUtf8(bytes);
    Require(Utf8FromWide(wide) == bytes, "any file name survives both ways");
    Require(PathFromText(PathText(bytes)).native() == bytes, "any path survives both ways");
    const std::wstring widened = WidenBytes(bytes);
    Require(widened.size() == bytes.size(), "a byte is a character");
    // Characters that are no text at all become some bytes.
    Utf8FromWide(widened);
    std::wstring any(bytes.size() / sizeof(wchar_t), L'\0');
    bytes.copy(reinterpret_cast<char*>(any.data()), any.size() * sizeof(wchar_t));
    PathFromText(any);
    MakeOutputFolderName(bytes);
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelmo::Convert(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
