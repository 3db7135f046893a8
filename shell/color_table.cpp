#include "shell/color_table.h"

namespace zelmo {

ColorTable& GetColorTable() {
    static ColorTable table;
    return table;
}

const ColorEntry* FindColor(const ColorTable& table, std::string_view name) {
    for (const ColorEntry& entry : table) {
        if (entry.name == name) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace zelmo
