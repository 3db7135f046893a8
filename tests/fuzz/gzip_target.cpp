#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/gzip_bytes.h"
#include "gds/library_reading.h"
#include "tests/fuzz/target.h"
#include "tests/gds/database_text.h"
#include "tests/support/gzip_writer.h"

// Any bytes as a gzip-compressed layout, and any layout compressed in any number of members and
// then damaged or not: read in one go and in pieces, with the same result.

namespace zelmo {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint64_t unpackedLimit = 1 << 22;

struct Reading {
    std::string text;
    std::optional<LayoutError> error;

    bool operator==(const Reading&) const = default;
};

Reading Read(const Bytes& bytes, std::int32_t threads, const PieceSizes& sizes) {
    const MemoryFile file(bytes.data(), bytes.size());
    SetRowThreads(threads);
    GdsDatabase database;
    CountingConsole console;
    Reading reading;
    try {
        reading.error =
            ReadLibrary(database, file.Path(), &console, sizes, {.unpackedLimit = unpackedLimit})
                .error;
        reading.text = TextOf(database) + std::to_string(console.lines);
    } catch (const std::out_of_range& error) {
        reading.text = error.what();
    }
    SetRowThreads(0);
    return reading;
}

/// Reads a compressed file in one go and in pieces.
Reading ReadPacked(const Bytes& bytes) {
    Reading reading = Read(bytes, 1, {});
    Require(Read(bytes, 2, {100, 20}) == reading, "a compressed library is the same in pieces");
    if (reading.error && reading.error->unpacking) {
        Require(reading.error->byte <= bytes.size(), "what fails lies in the compressed file");
    }
    return reading;
}

Bytes WithMark(Bytes bytes) {
    bytes.insert(bytes.begin(), gzipMark.begin(), gzipMark.end());
    return bytes;
}

/// Compresses in up to four members, with zeros behind each.
Bytes Pack(FuzzedDataProvider& choices, const Bytes& plain) {
    Bytes packed;
    std::size_t at = 0;
    for (int members = choices.ConsumeIntegralInRange(1, 4); members > 0; --members) {
        const std::size_t left = plain.size() - at;
        const std::size_t size =
            members == 1 ? left : choices.ConsumeIntegralInRange<std::size_t>(0, left);
        const auto begin = plain.begin() + static_cast<std::ptrdiff_t>(at);
        const Bytes member = Gzipped({begin, begin + static_cast<std::ptrdiff_t>(size)},
                                     {choices.ConsumeIntegralInRange(0, 9), "", ""});
        packed.insert(packed.end(), member.begin(), member.end());
        packed.resize(packed.size() + choices.ConsumeIntegralInRange(0, 9));
        at += size;
    }
    return packed;
}

bool BeginsWithMark(const Bytes& bytes) {
    return bytes.size() >= gzipMark.size() &&
           std::equal(gzipMark.begin(), gzipMark.end(), bytes.begin());
}

void Try(FuzzedDataProvider& choices) {
    if (choices.ConsumeBool()) {
        ReadPacked(WithMark(choices.ConsumeRemainingBytes<std::uint8_t>()));
        return;
    }
    const bool damage = choices.ConsumeBool();
    const auto where = choices.ConsumeIntegral<std::uint32_t>();
    const auto bit = choices.ConsumeIntegralInRange(0, 7);
    const std::string how = choices.ConsumeBytesAsString(16);
    FuzzedDataProvider shape(reinterpret_cast<const std::uint8_t*>(how.data()), how.size());
    const Bytes plain = choices.ConsumeRemainingBytes<std::uint8_t>();
    Bytes packed = Pack(shape, plain);
    if (damage) {
        packed[where % packed.size()] ^= static_cast<std::uint8_t>(1u << bit);
        ReadPacked(packed);
    } else if (!BeginsWithMark(plain)) {
        Require(ReadPacked(packed) == Read(plain, 1, {}), "compression changes nothing");
    }
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider choices(data, size);
    zelmo::Try(choices);
    return 0;
}
