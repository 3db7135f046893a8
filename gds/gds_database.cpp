#include "gds/gds_database.h"

namespace zelmo {

std::string_view NameText(std::string_view name) {
    return name.empty() ? "" : name.substr(0, name.find('\0'));
}

}  // namespace zelmo
