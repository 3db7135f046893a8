#include "tests/batch/program.h"

#include <fstream>
#include <iterator>

#include "tests/support/temp_folder.h"

namespace zelmo {

namespace {

std::string ReadText(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::erase(text, '\r');
    return text;
}

}  // namespace

Ended RunToEnd(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const Launch& launch) {
    const TempFolder folder;
    Launch redirected = launch;
    if (launch.standardOutput.empty()) {
        redirected.standardOutput = folder.Write("output", "");
    }
    if (launch.standardError.empty()) {
        redirected.standardError = folder.Write("errors", "");
    }
    Ended ended;
    ended.status = StartAndWait(program, arguments, redirected);
    if (launch.standardOutput.empty()) {
        ended.output = ReadText(redirected.standardOutput);
    }
    if (launch.standardError.empty()) {
        ended.errors = ReadText(redirected.standardError);
    }
    return ended;
}

}  // namespace zelmo
