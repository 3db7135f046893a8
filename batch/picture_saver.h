#pragma once

#include <cstddef>
#include <filesystem>
#include <future>
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
    void Begin(const ProcessModel& model);

    /// Takes the picture of the finished step with this index, and saves it on a thread of its own
    /// while the next step runs. Returns why pictures are missing, in their order: of this one if
    /// it could not be taken, of the one before it if it could not be saved; the next picture is
    /// tried all the same. Throws BatchFailure where taking one failed in a way that leaves no hope
    /// for others.
    std::vector<std::string> Save(const ProcessModel& model, std::size_t index);

    /// Waits until the last picture has been saved. Returns the reason if it could not be.
    std::vector<std::string> Finish();

private:
    PictureStudio studio_;
    PictureFolder folder_;
    std::future<std::string> saving_;  ///< of the last picture; ends before this object does
};

}  // namespace zelmo
