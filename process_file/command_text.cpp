#include "process_file/command_text.h"

#include "base/file.h"
#include "base/text_lines.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

/// The commands of the lines that `take` has, one after the other.
template <typename TakeLine>
std::vector<CommandText> CommandsOf(const TakeLine& take, const VariableValues* values) {
    std::vector<CommandText> commands;
    std::string line;
    std::string_view word;
    for (std::int32_t number = 1; word != "stop" && take(line); ++number) {
        if (const auto text = CommandTextOf(line)) {
            commands.push_back(
                {number, values != nullptr ? Substitute(*text, *values).text : std::string(*text)});
            std::string_view rest = commands.back().text;
            word = TakeWord(rest);
        }
    }
    return commands;
}

}  // namespace

std::optional<std::string_view> CommandTextOf(std::string_view line) {
    if (line.starts_with('#') || line.find_first_not_of(" \r\n\t") == std::string_view::npos) {
        return std::nullopt;
    }
    return line.substr(0, line.find_first_of("\r\n"));
}

std::vector<CommandText> ReadCommandTexts(const std::filesystem::path& path,
                                          const VariableValues* values) {
    const FilePointer stream = OpenFile(path, "rb");
    return CommandsOf([&](std::string& line) { return stream && ReadTextLine(stream.get(), line); },
                      values);
}

std::vector<CommandText> CommandTextsOf(std::string_view text, const VariableValues* values) {
    return CommandsOf([&](std::string& line) { return TakeTextLine(text, line); }, values);
}

}  // namespace zelmo
