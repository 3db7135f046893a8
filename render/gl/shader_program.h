#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zelmo {

/// The two stages of a shader file.
struct ShaderSources {
    bool opened = false;
    std::string vertexSource;
    std::string fragmentSource;
    /// Whether a line has "zelmo: hidden parts may be left out" in it: by this the file promises
    /// what assets/surface.shader lists there.
    bool hiddenPartsMayBeLeftOut = false;
};

/// Reads a shader file. A line with "#shader" and " vertex" or " fragment" in it says which stage
/// the lines after it belong to; lines before the first one belong to the vertex stage. Lines are
/// handled in pieces of at most 1023 bytes. A file that cannot be opened has empty sources.
ShaderSources LoadShaderFile(const std::filesystem::path& path);

/// Compiles a stage: GL_VERTEX_SHADER or GL_FRAGMENT_SHADER. Returns its GL name, or 0 with a line
/// in `error` that has the driver's log.
std::uint32_t CompileShader(std::uint32_t type, const std::string& source, std::string& error);

/// A GL program from a shader file. One that does not open, compile or link has errors, and a
/// program that draws nothing. Needs the GL context current for all of its life.
class ShaderProgram {
public:
    explicit ShaderProgram(const std::filesystem::path& path);
    ~ShaderProgram();
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    std::uint32_t Program() const { return program_; }
    /// Where it takes a value of this name, for glUniform...
    std::int32_t Uniform(const char* name) const;
    /// Why it cannot draw, in lines for the user in the order of what was tried; empty if it can.
    const std::vector<std::wstring>& Errors() const { return errors_; }
    bool IsUsable() const { return errors_.empty(); }
    bool HiddenPartsMayBeLeftOut() const { return hiddenPartsMayBeLeftOut_; }

private:
    std::uint32_t program_ = 0;
    std::vector<std::wstring> errors_;
    bool hiddenPartsMayBeLeftOut_ = false;
};

}  // namespace zelmo
