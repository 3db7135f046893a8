#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/file.h"

// What programs without a window ask of their platform.

namespace zelmo {

/// The arguments behind the program's name: UTF-8 on Windows, the bytes as they are on Linux.
std::vector<std::string> ProgramArguments(int argc, char** argv);

/// Makes failing writes to the standard streams errors that can be seen, and no death or mix-up:
/// a closed stream keeps its number, a reader that went away raises no signal. On Windows, text
/// that reaches a console is taken for UTF-8.
void PrepareStandardStreams();

/// Columns of the terminal that standard error writes to; 0 where it is none.
int TerminalColumns();

/// Whether files can bear this name, as far as its characters go.
bool CanNameFile(std::wstring_view name);

/// Makes a file that did not exist, to be written in binary mode. Null, with the reason in errno.
FilePointer CreateNewFile(const std::filesystem::path& path);

/// Gives a file its final name in the same folder. Never replaces a file: fails with file_exists.
std::error_code RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace zelmo
