#include "render/gl/shader_program.h"
#include "tests/fuzz/target.h"

// Any bytes as a shader file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelmo::CountingConsole console;
    const zelmo::ShaderSources sources =
        zelmo::LoadShaderFile(zelmo::MemoryFile(data, size).Path(), &console);
    zelmo::Require(console.lines == 0, "a file that can be opened is read without a word");
    zelmo::Require(sources.vertexSource.size() + sources.fragmentSource.size() <= size,
                   "the stages are made of the file");
    return 0;
}
