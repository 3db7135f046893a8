#include "pictures/smaller_image.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zelmo {

namespace {

/// The part of a pixel of the larger picture that lies on one of the smaller, counted in parts of
/// which a pixel of the larger one has as many as the smaller one has pixels.
struct Share {
    std::size_t source = 0;
    std::uint64_t weight = 0;
};

/// For each pixel along one side of the smaller picture what lies on it.
std::vector<std::vector<Share>> FindShares(std::uint64_t from, std::uint64_t to) {
    std::vector<std::vector<Share>> shares(to);
    for (std::uint64_t i = 0; i < to; ++i) {
        const std::uint64_t first = i * from;
        const std::uint64_t last = first + from;
        for (std::uint64_t source = first / to; source * to < last; ++source) {
            const std::uint64_t weight =
                std::min(last, (source + 1) * to) - std::max(first, source * to);
            shares[i].push_back({source, weight});
        }
    }
    return shares;
}

constexpr std::size_t channels = 4;

/// A row of the larger picture, as wide as the smaller one: sums.
std::vector<std::uint64_t> NarrowRow(const std::uint8_t* pixels,
                                     const std::vector<std::vector<Share>>& shares) {
    std::vector<std::uint64_t> sums(shares.size() * channels);
    for (std::size_t col = 0; col < shares.size(); ++col) {
        for (const Share& share : shares[col]) {
            for (std::size_t channel = 0; channel < channels; ++channel) {
                sums[col * channels + channel] +=
                    share.weight * pixels[share.source * channels + channel];
            }
        }
    }
    return sums;
}

}  // namespace

StepImage SmallerImage(const StepImage& image, std::int32_t width) {
    if (width < 1 || image.width <= width || image.height < 1) {
        return image;
    }
    StepImage smaller;
    smaller.name = image.name;
    smaller.width = width;
    smaller.height = static_cast<std::int32_t>(
        std::max<std::int64_t>(std::int64_t{image.height} * width / image.width, 1));
    const auto wide = static_cast<std::uint64_t>(image.width);
    const auto high = static_cast<std::uint64_t>(image.height);
    const auto cols = FindShares(wide, static_cast<std::uint64_t>(width));
    const auto rows = FindShares(high, static_cast<std::uint64_t>(smaller.height));
    std::vector<std::uint64_t> sums;
    for (const std::vector<Share>& row : rows) {
        sums.assign(cols.size() * channels, 0);
        for (const Share& share : row) {
            const std::uint8_t* const pixels = image.pixels.data() + share.source * wide * channels;
            const std::vector<std::uint64_t> narrow = NarrowRow(pixels, cols);
            for (std::size_t i = 0; i < sums.size(); ++i) {
                sums[i] += share.weight * narrow[i];
            }
        }
        for (const std::uint64_t sum : sums) {
            smaller.pixels.push_back(
                static_cast<std::uint8_t>((sum + wide * high / 2) / (wide * high)));
        }
    }
    return smaller;
}

}  // namespace zelmo
