// Prints what the programs know of the arguments of the process file, as JSON, for the guide's
// reference: zelmo-print-manual

#include <cstdio>
#include <string_view>

#include "process_file/manual.h"

namespace {

/// The manual is ASCII without control characters.
void PrintText(std::string_view text) {
    std::putchar('"');
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            std::putchar('\\');
        }
        std::putchar(character);
    }
    std::putchar('"');
}

}  // namespace

int main() {
    const char* separator = "[";
    for (const zelmo::ManualRow& row : zelmo::Manual()) {
        std::printf("%s\n[", separator);
        for (const std::string_view text :
             {row.command, row.argument, row.values, row.unit, row.usual}) {
            PrintText(text);
            std::fputs(", ", stdout);
        }
        PrintText(row.meaning);
        std::putchar(']');
        separator = ",";
    }
    std::puts("\n]");
    return 0;
}
