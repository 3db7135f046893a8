#pragma once

#include <cstdio>
#include <string>

namespace zelmo {

struct Page;
struct PageBundle;

/// Writes a page as one file of HTML that refers to nothing outside (docs/report-format.md).
/// Returns the reason if it could not, else an empty text; `file` is buffered, so a failure may
/// show only when it is closed.
std::string WritePage(const Page& page, const PageBundle& bundle, std::FILE* file);

}  // namespace zelmo
