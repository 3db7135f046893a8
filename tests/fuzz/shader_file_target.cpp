#include "render/gl/shader_program.h"
#include "tests/fuzz/target.h"

// Any bytes as a shader file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const zelmo::ShaderSources sources =
        zelmo::LoadShaderFile(zelmo::MemoryFile(data, size).Path());
    zelmo::Require(sources.opened, "a file that is there can be opened");
    zelmo::Require(sources.vertexSource.size() + sources.fragmentSource.size() <= size,
                   "the stages are made of the file");
    return 0;
}
