#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "pictures/picture_files.h"
#include "pictures/step_image.h"

namespace zelmo {

/// Where a run's pictures go.
struct PictureFolder {
    std::filesystem::path path;
    PictureFormat format = pictureFormats[0];
    bool overwrite = false;  ///< pictures that are there already are replaced
};

/// The file of the picture with this ordinal, counted from 1, and name.
std::wstring PictureFileName(const PictureFolder& folder, std::size_t ordinal,
                             std::wstring_view imageName);

/// Makes the folder with its missing parents and sees that files can be made in it and that none of
/// these is there yet, unless they may be replaced. Returns a line with the reason if they could
/// not be saved, else an empty text; nothing but the folder has been made.
std::string PreparePictureFolder(const PictureFolder& folder,
                                 const std::vector<std::wstring>& fileNames);

/// Saves the picture with this ordinal, counted from 1. Its name stands for a whole file at every
/// moment: it is written under another one first. Never replaces a file that is not to be
/// replaced. Returns a line that names the file and the reason if it was not saved, else an empty
/// text.
std::string SavePicture(const PictureFolder& folder, std::size_t ordinal, const StepImage& image);

/// Saves another file of this content in the folder, in the same manner. `name` is one that files
/// can bear.
std::string SaveInFolder(const PictureFolder& folder, std::wstring_view name,
                         std::string_view content);

}  // namespace zelmo
