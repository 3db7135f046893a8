#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace zelmo {

class LogConsole;

/// The two stages of a shader file.
struct ShaderSources {
    std::string vertexSource;
    std::string fragmentSource;
};

/// Reads a shader file. A line with "#shader" and " vertex" or " fragment" in it says which stage
/// the lines after it belong to; lines before the first one belong to the vertex stage. Lines are
/// handled in pieces of at most 1023 bytes. A file that cannot be opened gives a line on the
/// console and two empty sources.
ShaderSources LoadShaderFile(const std::filesystem::path& path, LogConsole* console);

/// Compiles a stage: GL_VERTEX_SHADER or GL_FRAGMENT_SHADER. Returns its GL name, or 0 after a line
/// with the driver's log on the console.
std::uint32_t CompileShader(std::uint32_t type, const std::string& source, LogConsole* console);

/// A GL program from a shader file. A file that does not compile or link is told on the console and
/// leaves a program that draws nothing. Needs the GL context current for all of its life.
class ShaderProgram {
public:
    ShaderProgram(const std::filesystem::path& path, LogConsole* console);
    ~ShaderProgram();
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    std::uint32_t Program() const { return program_; }
    /// Whether both stages compiled and the program linked: it can draw.
    bool IsUsable() const { return usable_; }

private:
    std::uint32_t program_ = 0;
    bool usable_ = false;
};

}  // namespace zelmo
