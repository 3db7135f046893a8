#include "command_line/arguments.h"

#include <CLI/CLI.hpp>

#include "base/version.h"

namespace zelmo {

struct Arguments::Parser {
    Parser(const std::string& program, const std::string& description)
        : app(description, program) {}

    CLI::App app;
};

Arguments::Arguments(const std::string& program, const std::string& description,
                     const std::string& footer)
    : parser_(std::make_unique<Parser>(program, description)) {
    parser_->app.allow_windows_style_options(false);
    parser_->app.set_version_flag("--version", program + " " + programVersion);
    parser_->app.footer(footer);
}

Arguments::~Arguments() = default;

void Arguments::AddPositional(const std::string& name, std::string& target, const std::string& help,
                              bool isRequired) {
    parser_->app.add_option(name, target, help)->required(isRequired)->type_name("");
}

void Arguments::AddText(const std::string& name, std::string& target, const std::string& help,
                        const std::string& form) {
    parser_->app.add_option(name, target, help)->type_name(form);
}

void Arguments::AddTexts(const std::string& name, std::vector<std::string>& target,
                         const std::string& help, const std::string& form) {
    parser_->app.add_option(name, target, help)
        ->type_name(form)
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
}

void Arguments::AddNumber(const std::string& name, std::int64_t& target, const std::string& help,
                          const std::string& form) {
    parser_->app.add_option(name, target, help)->type_name(form);
}

void Arguments::AddFlag(const std::string& name, bool& target, const std::string& help) {
    parser_->app.add_flag(name, target, help);
}

std::optional<CommandEnd> Arguments::Parse(const std::vector<std::string>& arguments) {
    try {
        // The parser takes its arguments last first.
        parser_->app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        return CommandEnd{ExitStatus::Success, parser_->app.help()};
    } catch (const CLI::CallForVersion& version) {
        return CommandEnd{ExitStatus::Success, std::string(version.what()) + "\n"};
    } catch (const CLI::Error& error) {
        return WrongUsage(error.what());
    }
    return std::nullopt;
}

std::size_t Arguments::Count(const std::string& name) const {
    return parser_->app.count(name);
}

}  // namespace zelmo
