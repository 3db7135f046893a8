#pragma once

#include <span>
#include <string_view>

namespace zelmo {

/// What a user is told of an argument of a command, in ASCII.
struct ManualRow {
    std::string_view command;
    std::string_view argument;
    std::string_view values;   ///< that it takes; empty where it takes none
    std::string_view unit;     ///< of its value; empty where it has none
    std::string_view usual;    ///< the value where it is left out, or "needed"
    std::string_view meaning;  ///< a phrase without a full stop
};

/// All arguments of all commands, those of a command together and in the order in which they are
/// read.
std::span<const ManualRow> Manual();

/// The row of an argument, or null.
const ManualRow* FindManualRow(std::string_view command, std::string_view argument);

}  // namespace zelmo
