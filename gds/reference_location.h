#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "gds/cell_references.h"
#include "gds/layout_options.h"

namespace zelmo {

/// Where a record stands in a file, unpacked.
struct RecordLocation {
    std::uint64_t byte = 0;
    std::uint16_t code = 0;
};

/// The record with which a reference begins in the file that it was read from. Goes through the
/// file once more: no database keeps for its references where they came from. None if the file is
/// another one by now.
std::optional<RecordLocation> LocateReference(const std::filesystem::path& path,
                                              const ReferencePosition& position,
                                              const LayoutOptions& options = {});

}  // namespace zelmo
