#include "base/row_bands.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <exception>
#include <span>
#include <thread>

#include "base/stop_scope.h"

namespace zelmo {

namespace {

constexpr std::int32_t mostThreads = 64;

std::atomic<std::int32_t> chosenThreads{0};

struct Band {
    std::int32_t firstRow = 0;
    std::int32_t endRow = 0;
    std::exception_ptr problem;
};

void CutIntoBands(std::int32_t rows, std::span<Band> bands) {
    const auto count = static_cast<std::int64_t>(bands.size());
    for (std::int64_t i = 0; i < count; ++i) {
        Band& band = bands[static_cast<std::size_t>(i)];
        band.firstRow = static_cast<std::int32_t>(rows * i / count);
        band.endRow = static_cast<std::int32_t>(rows * (i + 1) / count);
    }
}

}  // namespace

void ForRowBands(std::int32_t rows, std::int32_t smallestBand,
                 const std::function<void(std::int32_t firstRow, std::int32_t endRow)>& work) {
    if (rows <= 0) {
        return;
    }
    EndIfStopped();
    const std::int32_t count =
        std::clamp(rows / std::max(1, smallestBand), 1, std::max(1, RowThreads()));
    if (count == 1) {
        work(0, rows);
        return;
    }
    std::array<Band, mostThreads> allBands;
    const std::span<Band> bands(allBands.data(), static_cast<std::size_t>(count));
    CutIntoBands(rows, bands);
    const auto run = [&work, stop = StopFlag()](Band& band) {
        const StopScope scope(stop);
        try {
            work(band.firstRow, band.endRow);
        } catch (...) {
            band.problem = std::current_exception();
        }
    };
    {
        std::array<std::jthread, mostThreads> threads;
        for (std::size_t i = 1; i < bands.size(); ++i) {
            try {
                threads[i] = std::jthread(run, std::ref(bands[i]));
            } catch (const std::exception&) {
                run(bands[i]);  // no thread or no memory for one: the caller does that band too
            }
        }
        run(bands.front());
    }
    for (const Band& band : bands) {
        if (band.problem) {
            std::rethrow_exception(band.problem);
        }
    }
}

std::int32_t RowThreads() {
    const std::int32_t chosen = chosenThreads;
    if (chosen > 0) {
        return chosen;
    }
    static const auto cores = static_cast<std::int32_t>(
        std::min<unsigned>(std::thread::hardware_concurrency(), mostThreads));
    return std::max(1, cores);
}

void SetRowThreads(std::int32_t threads) {
    chosenThreads = std::clamp(threads, 0, mostThreads);
}

}  // namespace zelmo
