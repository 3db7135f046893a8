#include <exception>

#include "batch/batch_run.h"
#include "batch/consoles.h"
#include "command_line/platform.h"

int main(int argc, char** argv) {
    try {
        zelmo::PrepareStandardStreams();
        return static_cast<int>(zelmo::RunProgram(zelmo::ProgramArguments(argc, argv)));
    } catch (const std::exception& error) {
        zelmo::WriteErrorLine(error.what());
        return static_cast<int>(zelmo::ExitStatus::Other);
    }
}
