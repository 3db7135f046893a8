#include "results/notes/layout_cell.h"

#include "gds/gds_database.h"

namespace zelmo {

const GdsCell* FindCell(const GdsDatabase& layout, std::string_view name) {
    for (const GdsCell& cell : layout.cells) {
        if (NameText(cell.name) == name) {
            return cell.boundsValid ? &cell : nullptr;
        }
    }
    return nullptr;
}

}  // namespace zelmo
