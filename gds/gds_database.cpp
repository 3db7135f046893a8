#include "gds/gds_database.h"

namespace zelmo {

std::string_view NameText(const std::string& name) {
    return std::string_view(name).substr(0, name.find('\0'));
}

}  // namespace zelmo
