#pragma once

#include <cstdlib>
#include <string>

#include "tests/support/temp_folder.h"

namespace zelmo {

/// What `FONTCONFIG_FILE` is to be for a system without any font: a configuration of the font
/// library that knows one folder, which is empty.
inline std::string ConfigurationWithoutFonts(const TempFolder& folder) {
    const std::string path = folder.Path().string();
    return folder
        .Write("fonts.conf",
               "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
               "<fontconfig><dir>" +
                   path + "/none</dir><cachedir>" + path + "/cache</cachedir></fontconfig>\n")
        .string();
}

/// For as long as it lives, fonts that the test asks for are not found.
class NoFonts {
public:
    NoFonts() { setenv("FONTCONFIG_FILE", ConfigurationWithoutFonts(folder_).c_str(), 1); }
    ~NoFonts() { unsetenv("FONTCONFIG_FILE"); }
    NoFonts(const NoFonts&) = delete;
    NoFonts& operator=(const NoFonts&) = delete;

private:
    TempFolder folder_;
};

}  // namespace zelmo
