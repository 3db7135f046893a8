#include "render/gl/shader_program.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "base/file.h"
#include "base/text.h"

namespace zelmo {

namespace {

constexpr GLsizei maxLinkLog = 1024;
constexpr std::string_view promise = "zelmo: hidden parts may be left out";

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

ShaderSources LoadShaderFile(const std::filesystem::path& path) {
    ShaderSources sources;
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return sources;
    }
    sources.opened = true;
    std::string* stage = &sources.vertexSource;
    std::string line;
    while (ReadTextLine(file.get(), line)) {
        sources.hiddenPartsMayBeLeftOut |= Contains(line, promise);
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

std::uint32_t CompileShader(std::uint32_t type, const std::string& source, std::string& error) {
    const GLuint shader = glCreateShader(type);
    const char* const text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint status = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status == 1) {
        return shader;
    }
    error = fmt::format("Failed to compile {} shader with error {}",
                        type == GL_VERTEX_SHADER ? "vertex" : "fragment", ShaderLog(shader));
    glDeleteShader(shader);
    return 0;
}

ShaderProgram::ShaderProgram(const std::filesystem::path& path) {
    const ShaderSources sources = LoadShaderFile(path);
    hiddenPartsMayBeLeftOut_ = sources.hiddenPartsMayBeLeftOut;
    if (!sources.opened) {
        errors_.push_back(L"Failed to open shader file: " + PathText(path));
    }
    program_ = glCreateProgram();
    const auto compile = [this](GLenum type, const std::string& source) {
        std::string error;
        const GLuint shader = CompileShader(type, source, error);
        if (shader == 0) {
            errors_.push_back(WidenBytes(error));
        }
        return shader;
    };
    const GLuint vertexShader = compile(GL_VERTEX_SHADER, sources.vertexSource);
    const GLuint fragmentShader = compile(GL_FRAGMENT_SHADER, sources.fragmentSource);
    glAttachShader(program_, vertexShader);
    glAttachShader(program_, fragmentShader);
    glLinkProgram(program_);
    GLint status = 0;
    glGetProgramiv(program_, GL_LINK_STATUS, &status);
    // Some drivers link a program that lacks a stage; it would draw in colours of its own.
    if (status != 1 || vertexShader == 0 || fragmentShader == 0) {
        errors_.push_back(
            WidenBytes(fmt::format("Failed to link program with error {}", LinkLog(program_))));
    }
    glValidateProgram(program_);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
}

ShaderProgram::~ShaderProgram() {
    glDeleteProgram(program_);
}

std::int32_t ShaderProgram::Uniform(const char* name) const {
    return glGetUniformLocation(program_, name);
}

}  // namespace zelmo
