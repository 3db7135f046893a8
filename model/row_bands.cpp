#include "model/row_bands.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace zelmo {

namespace {

constexpr std::int32_t mostThreads = 64;

std::atomic<std::int32_t> chosenThreads{0};

struct Band {
    std::int32_t firstRow = 0;
    std::int32_t endRow = 0;
    std::exception_ptr problem;
};

std::vector<Band> CutIntoBands(std::int32_t rows, std::int32_t count) {
    std::vector<Band> bands(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t wide = rows;
        bands[static_cast<std::size_t>(i)].firstRow = static_cast<std::int32_t>(wide * i / count);
        bands[static_cast<std::size_t>(i)].endRow =
            static_cast<std::int32_t>(wide * (i + 1) / count);
    }
    return bands;
}

}  // namespace

void ForRowBands(std::int32_t rows, std::int32_t smallestBand,
                 const std::function<void(std::int32_t firstRow, std::int32_t endRow)>& work) {
    if (rows <= 0) {
        return;
    }
    const std::int32_t count =
        std::clamp(rows / std::max(1, smallestBand), 1, std::max(1, RowThreads()));
    if (count == 1) {
        work(0, rows);
        return;
    }
    std::vector<Band> bands = CutIntoBands(rows, count);
    const auto run = [&work](Band& band) {
        try {
            work(band.firstRow, band.endRow);
        } catch (...) {
            band.problem = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> threads;
        threads.reserve(bands.size());
        for (std::size_t i = 1; i < bands.size(); ++i) {
            try {
                threads.emplace_back(run, std::ref(bands[i]));
            } catch (const std::system_error&) {
                run(bands[i]);  // no thread to be had: the caller does that band too
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
