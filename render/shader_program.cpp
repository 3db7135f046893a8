#include "render/shader_program.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

#include "shell/log_console.h"
#include "shell/text.h"

namespace zelmo {

namespace {

constexpr std::size_t maxLineLength = 1023;
constexpr GLsizei maxLinkLog = 1024;

bool Contains(std::string_view line, std::string_view text) {
    return line.find(text) != std::string_view::npos;
}

/// Reads a whole text file, with CR LF as LF. False if it cannot be opened.
bool ReadText(const std::filesystem::path& path, std::string& text) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        return false;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return false;
    }
    text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
        text.erase(at, 1);
    }
    return true;
}

/// Takes the next line off the text, with its line end, or the first 1023 bytes of a longer one.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t lineEnd = text.find('\n');
    const std::size_t length = lineEnd == std::string_view::npos ? text.size() : lineEnd + 1;
    const std::string_view line = text.substr(0, std::min(length, maxLineLength));
    text.remove_prefix(line.size());
    // A zero byte ends the text of a line.
    return line.substr(0, line.find('\0'));
}

std::string ShaderLog(GLuint shader) {
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), nullptr, log.data());
    return log.c_str();
}

std::string LinkLog(GLuint program) {
    std::array<char, maxLinkLog> log{};
    glGetProgramInfoLog(program, maxLinkLog, nullptr, log.data());
    return log.data();
}

}  // namespace

ShaderSources LoadShaderFile(const std::filesystem::path& path, LogConsole* console) {
    ShaderSources sources;
    std::string text;
    if (!ReadText(path, text)) {
        console->Write(L"Failed to open shader file: " + PathText(path));
        return sources;
    }
    std::string* stage = &sources.vertexSource;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = TakeLine(rest);
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
