#include <exception>

#include "command_line/platform.h"
#include "layout_tool/layout_run.h"

int main(int argc, char** argv) {
    try {
        zelmo::PrepareStandardStreams();
        return static_cast<int>(zelmo::RunLayoutTool(zelmo::ProgramArguments(argc, argv)));
    } catch (const std::exception& error) {
        zelmo::WriteLayoutToolError(error.what());
        return static_cast<int>(zelmo::ExitStatus::Other);
    }
}
