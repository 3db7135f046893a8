#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

#include "base/log_console.h"
#include "base/text.h"
#include "process_file/color_table.h"
#include "tests/state_records/state_records.h"

namespace {

/// Sends the lines of the run to standard error, since standard output carries the records.
class ErrorConsole : public zelmo::LogConsole {
protected:
    void AppendLine(std::wstring line) override {
        fmt::print(stderr, "{}\n", zelmo::Utf8FromWide(line));
    }
};

}  // namespace

/// zelmo-state-records LAYOUT PROCESS [RECORDS]: prints the state after every step, or writes it to
/// a file, with the same bytes on every platform. Colour names are looked up in the current
/// directory's colors.txt, where there is one.
int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        fmt::print(stderr, "usage: {} LAYOUT PROCESS [RECORDS]\n", argv[0]);
        return 1;
    }
    try {
        std::ofstream file;
        if (argc == 4) {
            file.open(std::filesystem::path(argv[3]), std::ios::binary);
        }
        std::ostream& out = argc == 4 ? file : std::cout;
        zelmo::ColorTable colors;
        zelmo::LoadColorTable(colors);
        ErrorConsole console;
        zelmo::TellStateRecords(argv[1], argv[2], colors, &console,
                                [&](std::string_view line) { out << line << '\n'; });
        if (!out.flush()) {
            throw std::runtime_error("the records cannot be written");
        }
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}: {}\n", argv[0], error.what());
        return 2;
    }
    return 0;
}
