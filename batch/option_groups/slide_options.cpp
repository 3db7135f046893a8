#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/number_argument.h"
#include "command_line/whole_number.h"

namespace zelmo {

namespace {

constexpr std::int32_t leastWidth = 320;
constexpr std::int32_t mostWidth = 16384;
constexpr double fullTurn = 360.0;
constexpr double upright = 90.0;
constexpr double mostThin = 1e6;
constexpr double nanometresPerMicrometre = 1000.0;

std::optional<ViewDirection> ReadView(std::string_view text) {
    constexpr std::string_view parallel = ",parallel";
    const bool isParallel = text.ends_with(parallel);
    if (isParallel) {
        text.remove_suffix(parallel.size());
    }
    std::array<double, 2> angles{};
    const bool fits = ReadNumbers(text, std::span(angles)) && std::abs(angles[0]) <= fullTurn &&
                      std::abs(angles[1]) <= upright;
    return fits ? std::optional(ViewDirection{angles[0], angles[1], isParallel}) : std::nullopt;
}

class SlideOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText(
            "--width", width_,
            "Pixels across a picture (default: 1920), 320 to 16384; texts, legend and "
            "markers are in proportion",
            "PIXELS");
        arguments.AddFlag("--smooth", picture_.smooth,
                          "Edges without stairs: each pixel is the mean of 4 by 4");
        arguments.AddFlag("--same-size", sameSize_,
                          "All pictures of one size and scale, with room for the highest stack");
        arguments.AddText(
            "--view", view_,
            "Look from there, in degrees: around the window (0 from the front, 90 from "
            "the right) and above the horizon; \"parallel\" without perspective, so "
            "that lengths can be measured",
            "AZIMUTH,ELEVATION[,parallel]");
        arguments.AddFlag("--title", picture_.title, "The step's number and name in its picture");
        arguments.AddFlag("--scale", picture_.scale, "Bars for x, y and height in the pictures");
        arguments.AddFlag("--transparent", picture_.transparent,
                          "Pictures without a background (png only)");
        arguments.AddFlag("--crop", picture_.crop,
                          "Cut pictures to what is drawn on them, with a margin");
        arguments.AddText(
            "--thin", thin_,
            "Draw films that are thinner as if they were so thick, in nm, and say so in "
            "the picture",
            "NM");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        std::string failure = TakeWidth(arguments);
        if (failure.empty()) {
            failure = TakeView(arguments);
        }
        if (failure.empty()) {
            failure = TakeThin(arguments);
        }
        if (failure.empty() && picture_.transparent && options.format.name != "png") {
            failure = "--transparent needs pictures of the format png, the only one with opacity";
        }
        options.picture = picture_;
        options.sameSize = sameSize_;
        return failure;
    }

private:
    std::string TakeWidth(const Arguments& arguments) {
        if (arguments.Count("--width") == 0) {
            return {};
        }
        const WholeNumber width =
            ReadWholeNumber("--width", width_, leastWidth, mostWidth, " of pixels");
        picture_.width = width.value;
        return width.failure;
    }

    std::string TakeView(const Arguments& arguments) {
        if (arguments.Count("--view") == 0) {
            return {};
        }
        if (arguments.Count("--angle") > 0) {
            return "--angle and --view exclude each other: both say how high the camera stands";
        }
        picture_.view = ReadView(view_);
        if (!picture_.view) {
            return fmt::format(
                "--view: \"{}\" is not AZIMUTH,ELEVATION[,parallel]: degrees from -360 to 360 and "
                "from -90 to 90, with commas and no blanks in between",
                view_);
        }
        return {};
    }

    std::string TakeThin(const Arguments& arguments) {
        if (arguments.Count("--thin") == 0) {
            return {};
        }
        const std::optional<double> thickness = ReadNumber<double>(thin_);
        if (!thickness || !(*thickness > 0.0) || *thickness > mostThin) {
            return fmt::format("--thin: \"{}\" is no number of nanometres above 0, up to 1000000",
                               thin_);
        }
        picture_.thinnestFilm = static_cast<float>(*thickness / nanometresPerMicrometre);
        return {};
    }

    PictureChoice picture_;
    bool sameSize_ = false;
    std::string width_;
    std::string view_;
    std::string thin_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeSlideOptions() {
    return std::make_unique<SlideOptions>();
}

}  // namespace zelmo
