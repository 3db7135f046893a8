#include "render/gl/shader_program.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "base/file.h"
#include "base/log_console.h"
#include "base/text.h"

namespace zelmo {

namespace {

constexpr GLsizei maxLinkLog = 1024;

bool Contains(std::string_view line, std::string_view text) {
    return line.find(text) != std::string_view::npos;
}

std::string ShaderLog(GLuint shader) {
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    GLsizei written = 0;
    glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), &written, log.data());
    log.resize(static_cast<std::size_t>(written));
    return log;
}

std::string LinkLog(GLuint program) {
    std::string log(maxLinkLog, '\0');
    GLsizei written = 0;
    glGetProgramInfoLog(program, maxLinkLog, &written, log.data());
    log.resize(static_cast<std::size_t>(written));
    return log;
}

}  // namespace

ShaderSources LoadShaderFile(const std::filesystem::path& path, LogConsole* console) {
    ShaderSources sources;
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        console->Write(L"Failed to open shader file: " + PathText(path));
        return sources;
    }
    std::string* stage = &sources.vertexSource;
    std::string line;
    while (ReadTextLine(file.get(), line)) {
        if (!Contains(line, "#shader")) {
            stage->append(line);
        } else if (Contains(line, " vertex")) {
            stage = &sources.vertexSource;
        } else if (Contains(line, " fragment")) {
            stage = &sources.fragmentSource;
        }
    }
    return sources;
}

std::uint32_t CompileShader(std::uint32_t type, const std::string& source, LogConsole* console) {
    const GLuint shader = glCreateShader(type);
    const char* const text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint status = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status == 1) {
        return shader;
    }
    console->Write(fmt::format("Failed to compile {} shader with error {}",
                               type == GL_VERTEX_SHADER ? "vertex" : "fragment",
                               ShaderLog(shader)));
    glDeleteShader(shader);
    return 0;
}

ShaderProgram::ShaderProgram(const std::filesystem::path& path, LogConsole* console) {
    const ShaderSources sources = LoadShaderFile(path, console);
    program_ = glCreateProgram();
    const GLuint vertexShader = CompileShader(GL_VERTEX_SHADER, sources.vertexSource, console);
    const GLuint fragmentShader =
        CompileShader(GL_FRAGMENT_SHADER, sources.fragmentSource, console);
    glAttachShader(program_, vertexShader);
    glAttachShader(program_, fragmentShader);
    glLinkProgram(program_);
    GLint status = 0;
    glGetProgramiv(program_, GL_LINK_STATUS, &status);
    // Some drivers link a program that lacks a stage; it would draw in colours of its own.
    usable_ = status == 1 && vertexShader != 0 && fragmentShader != 0;
    if (!usable_) {
        console->Write(fmt::format("Failed to link program with error {}", LinkLog(program_)));
    }
    glValidateProgram(program_);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
}

ShaderProgram::~ShaderProgram() {
    glDeleteProgram(program_);
}

}  // namespace zelmo
