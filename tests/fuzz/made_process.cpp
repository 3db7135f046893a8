#include <fmt/format.h>

#include <array>
#include <string>

#include "tests/fuzz/made_run.h"

namespace zelmo {

namespace {

/// A number as a process file may have it: what single precision holds, up to its very ends.
std::string TakeNumber(FuzzedDataProvider& bytes, float usualLeast, float usualMost) {
    constexpr std::array extremes = {"1e-45", "1e-38", "1e-30", "1e-9",   "0.001", "1",
                                     "1e3",   "1e9",   "1e30",  "3.4e38", "1e39"};
    if (bytes.ConsumeIntegral<std::uint8_t>() % 4 == 0) {
        return bytes.PickValueInArray(extremes);
    }
    return fmt::format("{}", bytes.ConsumeFloatingPointInRange(usualLeast, usualMost));
}

/// The same for arguments from 0 to `most`.
std::string TakeShare(FuzzedDataProvider& bytes, float most) {
    return fmt::format("{}", bytes.ConsumeFloatingPointInRange(0.0f, most));
}

const char* TakeType(FuzzedDataProvider& bytes) {
    constexpr std::array types = {"oxide", "metal", "nitride"};
    return bytes.PickValueInArray(types);
}

std::string TakeColor(FuzzedDataProvider& bytes) {
    return fmt::format("-color {} 100 50 100 -alpha {}", bytes.ConsumeIntegral<std::uint8_t>(),
                       TakeShare(bytes, 1.0f));
}

/// Layers with and without a datatype.
std::string TakeMask(FuzzedDataProvider& bytes) {
    std::string mask = fmt::format("{}", bytes.ConsumeIntegralInRange<int>(0, 3));
    if (bytes.ConsumeBool()) {
        mask += fmt::format("/{}", bytes.ConsumeIntegralInRange<int>(0, 2));
    }
    if (bytes.ConsumeIntegral<std::uint8_t>() % 4 == 0) {
        mask += fmt::format(",{}", bytes.ConsumeIntegralInRange<int>(0, 3));
    }
    return mask;
}

std::string TakeSigned(FuzzedDataProvider& bytes) {
    const char* const sign = bytes.ConsumeBool() ? "-" : "";
    return sign + TakeNumber(bytes, 0.0f, 1.0f);
}

std::string TakeAdjustment(FuzzedDataProvider& bytes) {
    std::string adjustment;
    if (bytes.ConsumeBool()) {
        adjustment += " -bias " + TakeSigned(bytes);
    }
    if (bytes.ConsumeIntegral<std::uint8_t>() % 4 == 0) {
        const std::string x = TakeSigned(bytes);
        adjustment += " -shift " + x + " " + TakeSigned(bytes);
    }
    return adjustment;
}

std::string TakePhoto(FuzzedDataProvider& bytes) {
    const std::string mask = TakeMask(bytes);
    const int type = bytes.ConsumeBool() ? 1 : 0;
    const std::string resolution = TakeNumber(bytes, 0.0f, 2.0f);
    const std::string thickness = TakeNumber(bytes, 1.0f, 3000.0f);
    const int taper = bytes.ConsumeIntegralInRange<int>(0, 100);
    return fmt::format("photo -name P -mask_id {} -type {} -res {} -thickness {} -taper {}{}\n",
                       mask, type, resolution, thickness, taper, TakeAdjustment(bytes));
}

std::string TakePolish(FuzzedDataProvider& bytes, int number) {
    const char* const type = TakeType(bytes);
    const std::string height = TakeNumber(bytes, 0.0f, 2000.0f);
    switch (bytes.ConsumeIntegral<std::uint8_t>() % 3) {
        case 0:
            return fmt::format("polish -name C{} -stop {} -over {}\n", number, type, height);
        case 1:
            return fmt::format("polish -name C{} -stop {} -above {}\n", number, type, height);
        default:
            return fmt::format("polish -name C{} -level {}\n", number, height);
    }
}

std::string TakeStep(FuzzedDataProvider& bytes, int number, bool& resistIsOpen) {
    switch (bytes.ConsumeIntegral<std::uint8_t>() % 8) {
        case 0: {
            const char* const type = TakeType(bytes);
            const std::string thickness = TakeNumber(bytes, 1.0f, 3000.0f);
            const std::string coverage = TakeShare(bytes, 1.0f);
            return fmt::format("deposition -name M{} -type {} -thickness {} -sc {} {}\n", number,
                               type, thickness, coverage, TakeColor(bytes));
        }
        case 1: {
            const char* const type = TakeType(bytes);
            const std::string thickness = TakeNumber(bytes, 1.0f, 3000.0f);
            const std::string degree = TakeShare(bytes, 1.0f);
            return fmt::format("coating -name M{} -type {} -thickness {} -dop {} {}\n", number,
                               type, thickness, degree, TakeColor(bytes));
        }
        case 2:
            resistIsOpen = !resistIsOpen;
            return resistIsOpen ? TakePhoto(bytes) : fmt::format("strip -name S{}\n", number);
        case 3: {
            const char* const type = TakeType(bytes);
            const std::string depth = TakeNumber(bytes, 0.0f, 3000.0f);
            const std::string isotropy = TakeShare(bytes, 5.0f);
            const std::string rate =
                bytes.ConsumeBool() ? " -resist " + TakeShare(bytes, 1.0f) : std::string();
            return fmt::format("etch -name E{} -targets {} -depth {} -iso {}{}\n", number, type,
                               depth, isotropy, rate);
        }
        case 4: {
            const char* const type = TakeType(bytes);
            const char* const target = TakeType(bytes);
            const std::string depth = TakeNumber(bytes, 0.0f, 3000.0f);
            return fmt::format("implant -name M{} -type {} -targets {} -depth {} {}\n", number,
                               type, target, depth, TakeColor(bytes));
        }
        case 5:
            return TakePolish(bytes, number);
        case 6:
            return fmt::format("release -name R{} -targets {}\n", number, TakeType(bytes));
        default:
            return {};
    }
}

/// The lower left corner, the width and, as a rule, a small share of it as the height.
std::string TakeWindow(FuzzedDataProvider& bytes) {
    const std::string x = TakeNumber(bytes, -2.0f, 4.0f);
    const std::string y = TakeNumber(bytes, -2.0f, 4.0f);
    if (bytes.ConsumeIntegral<std::uint8_t>() % 8 == 0) {
        const std::string width = TakeNumber(bytes, 0.1f, 10.0f);
        return fmt::format("location -x {} -y {} -dx {} -dy {}\n", x, y, width,
                           TakeNumber(bytes, 0.01f, 1.0f));
    }
    const float width = bytes.ConsumeFloatingPointInRange(0.5f, 12.0f);
    return fmt::format("location -x {} -y {} -dx {} -dy {}\n", x, y, width,
                       width * bytes.ConsumeFloatingPointInRange(0.0001f, 0.03f));
}

}  // namespace

std::string MakeProcess(FuzzedDataProvider& bytes) {
    std::string text = fmt::format("settings -version 4 -N 200 -angle {}{}\n",
                                   bytes.ConsumeIntegralInRange<int>(0, 90),
                                   bytes.ConsumeBool() ? " -heights" : "");
    text += TakeWindow(bytes);
    // Without steps these bring the types that targets refer to.
    text +=
        "gds -cell TOP\n"
        "deposition -name M -type metal -thickness 50 -color 1 2 3 4\n"
        "deposition -name O -type oxide -thickness 400 -sc 0.5 -color 1 2 3 4\n"
        "deposition -name N -type nitride -thickness 20 -sc 1 -color 1 2 3 4\n";
    bool resistIsOpen = false;
    for (int number = 0; number < 6 && bytes.remaining_bytes() > 0; ++number) {
        text += TakeStep(bytes, number, resistIsOpen);
    }
    return text;
}

}  // namespace zelmo
