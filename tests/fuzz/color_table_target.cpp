#include "process_file/color_table.h"
#include "tests/fuzz/target.h"

// Any bytes as a colour file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelmo::ColorTable table;
    const bool read = zelmo::LoadColorTable(table, zelmo::MemoryFile(data, size).Path());
    zelmo::Require(read || size > 0, "a file of nothing is a table of nothing");
    for (const zelmo::ColorEntry& entry : table) {
        const zelmo::ColorEntry* const found = zelmo::FindColor(table, entry.name);
        zelmo::Require(!entry.name.empty() && found != nullptr && found <= &entry,
                       "a name finds its first entry");
    }
    return 0;
}
