#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "pictures/webp_film.h"

namespace zelmo {

/// The files with the pictures of all steps that are asked for.
struct OverviewChoice {
    std::optional<std::filesystem::path> sheet;  ///< none: no contact sheet
    std::optional<std::int32_t> sheetColumns;    ///< none: what suits a screen
    std::optional<std::filesystem::path> film;   ///< none: no film
    FilmTiming timing;
};

}  // namespace zelmo
