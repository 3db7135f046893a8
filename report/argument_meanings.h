#pragma once

#include <string_view>
#include <vector>

#include "report/page.h"

namespace zelmo {

/// The arguments of a process file's command line, whose variables are replaced, each with its
/// meaning (process_file/manual.h). None of a line that is no command.
std::vector<PageArgument> ArgumentsOf(std::string_view line);

}  // namespace zelmo
