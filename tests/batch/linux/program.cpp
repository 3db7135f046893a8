#include "tests/batch/program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace zelmo {

namespace {

void Redirect(int descriptor, const std::filesystem::path& file) {
    const int opened = open(file.c_str(), O_WRONLY | O_NOCTTY | O_APPEND);
    if (opened < 0 || dup2(opened, descriptor) < 0) {
        _exit(126);
    }
    close(opened);
}

[[noreturn]] void BecomeProgram(char* const* arguments, const Launch& launch) {
    for (const auto& [name, value] : launch.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    Redirect(STDOUT_FILENO, launch.standardOutput);
    Redirect(STDERR_FILENO, launch.standardError);
    if (chdir(launch.workingFolder.c_str()) == 0) {
        execv(arguments[0], arguments);
    }
    _exit(126);
}

}  // namespace

int StartAndWait(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const Launch& launch) {
    std::vector<std::string> texts{std::filesystem::absolute(program).string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        BecomeProgram(pointers.data(), launch);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        throw std::runtime_error("the program cannot be started");
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace zelmo
