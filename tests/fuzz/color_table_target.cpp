#include "process_file/color_table.h"
#include "tests/fuzz/target.h"

// Any bytes as a colour file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelmo::ColorTable& table = zelmo::GetColorTable();
    table.clear();
    const int result = zelmo::LoadColorTable(zelmo::MemoryFile(data, size).Path());
    zelmo::Require(result == 0 || result == 1, "a colour file is read or refused");
    for (const zelmo::ColorEntry& entry : table) {
        const zelmo::ColorEntry* const found = zelmo::FindColor(table, entry.name);
        zelmo::Require(!entry.name.empty() && found != nullptr && found <= &entry,
                       "a name finds its first entry");
    }
    return 0;
}
