#include "render/gl/shader_program.h"

#include <GL/glew.h>

#include <algorithm>

#include "base/text.h"
#include "tests/render/gl_test.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

constexpr char goodVertex[] = "void main() { gl_Position = vec4(0.0); }\n";
constexpr char goodFragment[] = "void main() { gl_FragColor = vec4(1.0); }\n";

bool StartsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

/// Reads a shader file of this text, which must open.
ShaderSources Load(const std::string& text) {
    const TempFolder folder;
    ShaderSources sources = LoadShaderFile(folder.Write("test.shader", text));
    EXPECT_TRUE(sources.opened);
    return sources;
}

TEST(LoadShaderFile, SplitsTheStages) {
    const ShaderSources sources = Load("#shader vertex\nv1\nv2\n#shader fragment\nf1\n\nf2");
    EXPECT_EQ(sources.vertexSource, "v1\nv2\n");
    EXPECT_EQ(sources.fragmentSource, "f1\n\nf2");
}

TEST(LoadShaderFile, TakesTheStagesInAnyOrder) {
    const ShaderSources sources = Load("#shader fragment\nf\n#shader vertex\nv\n");
    EXPECT_EQ(sources.vertexSource, "v\n");
    EXPECT_EQ(sources.fragmentSource, "f\n");
}

TEST(LoadShaderFile, AddsUpAStageThatOccursMoreThanOnce) {
    const ShaderSources sources =
        Load("#shader fragment\nf1\n#shader vertex\nv\n#shader fragment\nf2\n");
    EXPECT_EQ(sources.vertexSource, "v\n");
    EXPECT_EQ(sources.fragmentSource, "f1\nf2\n");
}

TEST(LoadShaderFile, GivesTextWithoutADirectiveToTheVertexStage) {
    const ShaderSources sources = Load("one\ntwo\n");
    EXPECT_EQ(sources.vertexSource, "one\ntwo\n");
    EXPECT_EQ(sources.fragmentSource, "");
}

TEST(LoadShaderFile, GivesTextAheadOfTheFirstDirectiveToTheVertexStage) {
    const ShaderSources sources = Load("early\n#shader fragment\nf\n");
    EXPECT_EQ(sources.vertexSource, "early\n");
    EXPECT_EQ(sources.fragmentSource, "f\n");
}

TEST(LoadShaderFile, FindsADirectiveAnywhereInALine) {
    const ShaderSources sources = Load("a\n// the fragment #shader\nf\nx vertex y #shader z\nv\n");
    EXPECT_EQ(sources.vertexSource, "a\nv\n");
    EXPECT_EQ(sources.fragmentSource, "f\n");
}

TEST(LoadShaderFile, PrefersTheVertexStageWhereALineNamesBoth) {
    const ShaderSources sources = Load("#shader fragment\nf\n#shader fragment vertex\nv\n");
    EXPECT_EQ(sources.vertexSource, "v\n");
    EXPECT_EQ(sources.fragmentSource, "f\n");
}

TEST(LoadShaderFile, DropsADirectiveWithoutAStage) {
    const ShaderSources sources = Load("#shader fragment\nf1\n#shader geometry\nf2\n#shader\nf3\n");
    EXPECT_EQ(sources.vertexSource, "");
    EXPECT_EQ(sources.fragmentSource, "f1\nf2\nf3\n");
}

TEST(LoadShaderFile, WantsABlankBeforeTheStagesName) {
    const ShaderSources sources = Load("v\n#shader\tfragment\nstill v\n#shader:fragment\nand v\n");
    EXPECT_EQ(sources.vertexSource, "v\nstill v\nand v\n");
    EXPECT_EQ(sources.fragmentSource, "");
}

TEST(LoadShaderFile, HandlesALongLineInPieces) {
    std::string line(1500, 'x');
    line.replace(1100, 16, "#shader fragment");
    const ShaderSources sources = Load(line + "\nf\n");
    EXPECT_EQ(sources.vertexSource, std::string(1023, 'x'));
    EXPECT_EQ(sources.fragmentSource, "f\n");
}

TEST(LoadShaderFile, CutsALineWithinADirective) {
    // The first piece ends behind "#shader ": a directive without a stage.
    const ShaderSources sources = Load(std::string(1015, 'x') + "#shader fragment\nv\n");
    EXPECT_EQ(sources.vertexSource, "fragment\nv\n");
    EXPECT_EQ(sources.fragmentSource, "");
}

TEST(LoadShaderFile, ReadsLinesOfExactlyTheLargestLength) {
    const std::string line(1023, 'x');
    const ShaderSources sources = Load("#shader fragment\n" + line + "\n#shader vertex\nv");
    EXPECT_EQ(sources.fragmentSource, line + "\n");
    EXPECT_EQ(sources.vertexSource, "v");
}

TEST(LoadShaderFile, TakesLineEndsOfEitherSystem) {
    const ShaderSources sources = Load("#shader vertex\r\nv\r\n#shader fragment\r\nf\r\n\rg\r");
    EXPECT_EQ(sources.vertexSource, "v\n");
    EXPECT_EQ(sources.fragmentSource, "f\n\rg\r");
}

TEST(LoadShaderFile, EndsALinesTextAtAZeroByte) {
    using std::string_literals::operator""s;
    const ShaderSources sources = Load("a\0 #shader fragment\nb\n"s);
    EXPECT_EQ(sources.vertexSource, "ab\n");
    EXPECT_EQ(sources.fragmentSource, "");
}

TEST(LoadShaderFile, ReadsAnEmptyFile) {
    const ShaderSources sources = Load("");
    EXPECT_EQ(sources.vertexSource, "");
    EXPECT_EQ(sources.fragmentSource, "");
}

TEST(LoadShaderFile, TellsOfAFileThatCannotBeOpened) {
    const TempFolder folder;
    for (const std::filesystem::path& path :
         {std::filesystem::path("no such.shader"),
          folder.Path() / PathFromText(L"gr\u00fcn.shader"), folder.Path()}) {
        const ShaderSources sources = LoadShaderFile(path);
        EXPECT_FALSE(sources.opened);
        EXPECT_EQ(sources.vertexSource, "");
        EXPECT_EQ(sources.fragmentSource, "");
        EXPECT_EQ(ShaderProgram(path).Errors().front(),
                  L"Failed to open shader file: " + PathText(path));
    }
}

TEST(LoadShaderFile, OpensAFileWithAWideName) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / PathFromText(L"gr\u00fcn \u2192.shader");
    std::filesystem::rename(folder.Write("plain.shader", "v\n"), path);
    EXPECT_EQ(LoadShaderFile(path).vertexSource, "v\n");
}

TEST(LoadShaderFile, FindsThePromiseInAnyLine) {
    EXPECT_FALSE(Load("#shader vertex\nv\n").hiddenPartsMayBeLeftOut);
    EXPECT_TRUE(Load("// zelmo: hidden parts may be left out\nv\n").hiddenPartsMayBeLeftOut);
    const ShaderSources sources =
        Load("#shader fragment\nf /* zelmo: hidden parts may be left out, as said below */\n");
    EXPECT_TRUE(sources.hiddenPartsMayBeLeftOut);
    EXPECT_EQ(sources.fragmentSource,
              "f /* zelmo: hidden parts may be left out, as said below */\n")
        << "the line stays where it is";
    EXPECT_FALSE(Load("// zelmo: hidden parts\n// may be left out\n").hiddenPartsMayBeLeftOut);
}

TEST(CompileShader, ReturnsTheNameOfAStageOfItsType) {
    std::string error;
    const GLuint shader = CompileShader(GL_FRAGMENT_SHADER, goodFragment, error);
    EXPECT_TRUE(glIsShader(shader));
    GLint type = 0;
    glGetShaderiv(shader, GL_SHADER_TYPE, &type);
    EXPECT_EQ(type, GL_FRAGMENT_SHADER);
    EXPECT_EQ(error, "");
    glDeleteShader(shader);
}

TEST(CompileShader, TellsTheDriversLogAndReturnsZero) {
    std::string vertexError;
    std::string fragmentError;
    EXPECT_EQ(CompileShader(GL_VERTEX_SHADER, "void main() { oops; }", vertexError), 0u);
    EXPECT_EQ(CompileShader(GL_FRAGMENT_SHADER, "void main() { oops; }", fragmentError), 0u);
    EXPECT_TRUE(StartsWith(vertexError, "Failed to compile vertex shader with error "))
        << vertexError;
    EXPECT_TRUE(StartsWith(fragmentError, "Failed to compile fragment shader with error "))
        << fragmentError;
    EXPECT_NE(vertexError.find("oops"), std::string::npos) << "the log names the culprit";
    EXPECT_EQ(vertexError.find('\0'), std::string::npos);
}

/// The errors of a program, as the console has them.
std::vector<std::string> ErrorsOf(const ShaderProgram& shader) {
    std::vector<std::string> lines;
    for (const std::wstring& line : shader.Errors()) {
        lines.push_back(Utf8FromWide(line));
    }
    return lines;
}

TEST(ShaderProgram, LinksAGoodFileWithoutAWord) {
    const TempFolder folder;
    GLuint name = 0;
    {
        const ShaderProgram shader(folder.Write(
            "good.shader",
            std::string("#shader vertex\n") + goodVertex + "#shader fragment\n" + goodFragment));
        name = shader.Program();
        EXPECT_TRUE(glIsProgram(name));
        EXPECT_TRUE(shader.IsUsable());
        EXPECT_TRUE(shader.Errors().empty());
        GLint attached = 0;
        glGetProgramiv(name, GL_ATTACHED_SHADERS, &attached);
        EXPECT_EQ(attached, 2);
        std::array<GLuint, 2> stages{};
        glGetAttachedShaders(name, 2, nullptr, stages.data());
        for (const GLuint stage : stages) {
            GLint deleted = 0;
            glGetShaderiv(stage, GL_DELETE_STATUS, &deleted);
            EXPECT_EQ(deleted, GL_TRUE) << "the stages go with the program";
        }
    }
    EXPECT_FALSE(glIsProgram(name));
}

TEST(ShaderProgram, TellsOfAFileThatDoesNotOpenAndThenOfTheLink) {
    const ShaderProgram shader("no such.shader");
    EXPECT_NE(shader.Program(), 0u);
    EXPECT_FALSE(shader.IsUsable());
    const std::vector<std::string> errors = ErrorsOf(shader);
    ASSERT_GE(errors.size(), 2u);
    EXPECT_EQ(errors.front(), "Failed to open shader file: no such.shader");
    EXPECT_TRUE(StartsWith(errors.back(), "Failed to link program with error ")) << errors.back();
    TakeGlErrors();
}

TEST(ShaderProgram, FailsToLinkAFileWithoutDirectives) {
    const TempFolder folder;
    const ShaderProgram shader(folder.Write("all.shader", "nothing of a shader\n"));
    EXPECT_FALSE(shader.IsUsable());
    const std::vector<std::string> errors = ErrorsOf(shader);
    ASSERT_GE(errors.size(), 2u);
    EXPECT_TRUE(StartsWith(errors[0], "Failed to compile vertex shader with error "));
    EXPECT_TRUE(StartsWith(errors.back(), "Failed to link program with error "));
    TakeGlErrors();
}

TEST(ShaderProgram, TellsOfBothStagesInOrderAndThenOfTheLink) {
    const TempFolder folder;
    const ShaderProgram shader(
        folder.Write("bad.shader", "#shader fragment\nbad\n#shader vertex\nworse\n"));
    EXPECT_FALSE(shader.IsUsable());
    const std::vector<std::string> errors = ErrorsOf(shader);
    ASSERT_EQ(errors.size(), 3u);
    EXPECT_TRUE(StartsWith(errors[0], "Failed to compile vertex shader with error "));
    EXPECT_TRUE(StartsWith(errors[1], "Failed to compile fragment shader with error "));
    EXPECT_TRUE(StartsWith(errors[2], "Failed to link program with error "));
    TakeGlErrors();
}

TEST(ShaderProgram, CutsALongLogOfTheLink) {
    // Undefined functions with long names: the driver's log names each of them.
    std::string vertex;
    std::string calls;
    for (int i = 0; i < 40; ++i) {
        const std::string name =
            std::string(60, static_cast<char>('a' + i % 26)) + std::to_string(i);
        vertex += "void " + name + "();\n";
        calls += name + "(); ";
    }
    vertex += "void main() { " + calls + "gl_Position = vec4(0.0); }\n";
    const TempFolder folder;
    const ShaderProgram shader(folder.Write(
        "long.shader", "#shader vertex\n" + vertex + "#shader fragment\n" + goodFragment));
    const std::vector<std::string> errors = ErrorsOf(shader);
    ASSERT_EQ(errors.size(), 1u);
    const std::string start = "Failed to link program with error ";
    EXPECT_TRUE(StartsWith(errors[0], start));
    EXPECT_LE(errors[0].size(), start.size() + 1023);
    TakeGlErrors();
}

/// Location of an attribute, -1 if the program does not use it.
GLint AttributeLocation(const ShaderProgram& shader, const char* name) {
    return glGetAttribLocation(shader.Program(), name);
}

TEST(Shaders, OfTheProjectLinkAndTakeWhatTheyAreGiven) {
    TestTools tools;
    EXPECT_TRUE(tools.surfaceShader.HiddenPartsMayBeLeftOut());
    ASSERT_TRUE(tools.surfaceShader.IsUsable());
    ASSERT_TRUE(tools.pointShader.IsUsable());
    EXPECT_EQ(AttributeLocation(tools.surfaceShader, "position"), 0);
    EXPECT_EQ(AttributeLocation(tools.surfaceShader, "normal"), 1);
    EXPECT_EQ(AttributeLocation(tools.pointShader, "position"), 0);
    EXPECT_EQ(AttributeLocation(tools.pointShader, "weight"), 2);
    for (const char* name : {"transform", "lightPos", "lightColor", "color", "alpha"}) {
        EXPECT_NE(glGetUniformLocation(tools.surfaceShader.Program(), name), -1) << name;
    }
    EXPECT_NE(glGetUniformLocation(tools.pointShader.Program(), "transform"), -1);
}

}  // namespace
}  // namespace zelmo
