#include "batch/listeners/overview_writer.h"

#include <fmt/format.h>

#include <new>
#include <utility>

#include "batch/files/asked_file.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "pictures/webp.h"

namespace zelmo {

StepImage KeptPicture::Image() const {
    return ImageOfWebp(bytes);
}

Outcome OverviewWriter::Begin(const ProcessModel& /*model*/) {
    const std::string reason = WhyNotToWrite(overview_.file, overview_.name, overwrite_);
    return reason.empty() ? Outcome{} : Outcome{ExitStatus::Other, reason};
}

Outcome OverviewWriter::Restart(const ProcessModel& /*model*/, std::size_t first) {
    WaitForLast();
    kept_.erase(kept_.lower_bound(first), kept_.end());
    return {};
}

void OverviewWriter::TakePicture(std::size_t index, const StepImage& image) {
    WaitForLast();
    keepingIndex_ = index;
    keeping_ = std::async(std::launch::async, [picture = overview_.prepare(image)] {
        return KeptPicture{picture.width, picture.height, LosslessWebp(picture)};
    });
}

void OverviewWriter::WaitForLast() {
    if (keeping_.valid()) {
        kept_.insert_or_assign(keepingIndex_, keeping_.get());
    }
}

Outcome OverviewWriter::Finish(RunRecord& /*record*/, bool complete) {
    if (!complete) {
        return {};
    }
    try {
        WaitForLast();
        std::vector<KeptPicture> pictures;
        for (const auto& [index, picture] : kept_) {
            pictures.push_back(picture);
        }
        const std::string failure = WriteWholeFile(
            overview_.file, [&](std::FILE* file) { return overview_.write(pictures, file); });
        return failure.empty() ? Outcome{} : Outcome{ExitStatus::Other, failure};
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other, fmt::format("the {} {} was not written: there is not enough "
                                               "memory",
                                               overview_.name, TextOf(overview_.file))};
    }
}

}  // namespace zelmo
