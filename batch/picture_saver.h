#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "batch/options.h"
#include "batch/picture_folder.h"
#include "batch/picture_studio.h"

namespace zelmo {

/// Makes the pictures of a run and saves each as it comes. To outlive the model.
class PictureSaver {
public:
    /// Throws BatchFailure if no picture can be made at all.
    PictureSaver(const BatchOptions& options,
                 const std::vector<std::filesystem::path>& assetFolders);

    /// To be called once, before the first step. Throws BatchFailure if the pictures could not be
    /// saved.
    void Begin(ProcessModel& model);

    /// Takes and saves the picture of the finished step with this index. Returns the reason if
    /// there is none, else an empty text: the next picture is tried all the same. Throws
    /// BatchFailure where taking one failed in a way that leaves no hope for others.
    std::string Save(ProcessModel& model, std::size_t index);

private:
    PictureStudio studio_;
    PictureFolder folder_;
};

}  // namespace zelmo
