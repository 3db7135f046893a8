#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "pictures/step_image.h"

namespace zelmo {

/// A picture that is kept small until it is needed again.
struct KeptPicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> bytes;  ///< LosslessWebp

    StepImage Image() const;
};

/// What is made of the pictures of a run: a contact sheet, a film.
struct Overview {
    std::string name;  ///< as its user is told of it, "film"
    std::filesystem::path file;
    /// What is kept of a step's picture. Called on the thread that draws.
    std::function<StepImage(const StepImage& image)> prepare;
    /// Writes the file's content; the reason why not, or nothing.
    std::function<std::string(std::span<const KeptPicture>, std::FILE*)> write;
};

/// Keeps the pictures of a run and makes a file of them at its end.
class OverviewWriter : public StepListener {
public:
    /// A file that is there already is only replaced with `overwrite`.
    OverviewWriter(Overview overview, bool overwrite)
        : overview_(std::move(overview)), overwrite_(overwrite) {}

    /// Fails where the file could not be written, or is there and is not to be replaced.
    Outcome Begin(const ProcessModel& model) override;

    /// The file of this writer is replaced.
    Outcome Restart(const ProcessModel& model, std::size_t first) override;

    Outcome AfterStep(const ProcessModel& /*model*/, std::size_t /*index*/,
                      RunRecord& /*record*/) override {
        return {};
    }

    /// Takes the picture of the step with this index.
    void TakePicture(std::size_t index, const StepImage& image);

    /// Writes the file of a complete run. Fails if it could not. A run that fails leaves none.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    void WaitForLast();

    Overview overview_;
    bool overwrite_;
    std::map<std::size_t, KeptPicture> kept_;  ///< by step
    std::size_t keepingIndex_ = 0;
    std::future<KeptPicture> keeping_;  ///< of the last picture
};

}  // namespace zelmo
