#include "gds/reference_location.h"

#include <cstddef>
#include <utility>

#include "gds/record_codes.h"
#include "gds/stream_records.h"

namespace zelmo {

namespace {

/// Counts the references of a library whose records are all accepted.
class ReferenceCounter {
public:
    /// The reference that ends with the record, if one does, and where it began.
    std::optional<std::pair<ReferencePosition, RecordLocation>> Pass(const RecordLocation& here) {
        if (here.code == record::sref || here.code == record::aref) {
            begin_ = here;
        } else if (here.code == record::endstr) {
            ++cell_;  // what is still open becomes part of a later structure
            srefs_ = arefs_ = 0;
        } else if (here.code == record::endel && begin_) {
            const RecordLocation begin = *std::exchange(begin_, std::nullopt);
            const bool isArray = begin.code == record::aref;
            return {{{cell_, isArray, isArray ? arefs_++ : srefs_++}, begin}};
        }
        return std::nullopt;
    }

private:
    std::size_t cell_ = 0;
    std::size_t srefs_ = 0;
    std::size_t arefs_ = 0;
    std::optional<RecordLocation> begin_;  ///< of the open reference
};

}  // namespace

std::optional<RecordLocation> LocateReference(const std::filesystem::path& path,
                                              const ReferencePosition& position,
                                              const LayoutOptions& options) {
    LayoutBytes bytes(path, options.unpackedLimit);
    StreamRecords records(bytes);
    StreamRecord record;
    ReferenceCounter counter;
    while (records.Next(record) == RecordStatus::Read && record.code != record::endlib) {
        const auto passed = counter.Pass({records.OffsetOf(record), record.code});
        if (passed && passed->first == position) {
            return passed->second;
        }
    }
    return std::nullopt;
}

}  // namespace zelmo
