#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {

/// How a member of a gzip-compressed file is written.
struct GzipForm {
    int level = 6;         ///< 0 stores the bytes as they are, 9 packs best
    std::string fileName;  ///< in the head; none where it is empty
    std::string comment;   ///< likewise; with a check sum of the head
};

/// One member of a gzip-compressed file. Several behind each other are a file, too.
std::vector<std::uint8_t> Gzipped(const std::vector<std::uint8_t>& bytes,
                                  const GzipForm& form = {});

/// The same for members that hold `memberSize` bytes each.
std::vector<std::uint8_t> GzippedInMembers(const std::vector<std::uint8_t>& bytes,
                                           std::size_t memberSize);

}  // namespace zelmo
