#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "process_file/substitution.h"

namespace zelmo {

namespace {

/// Adds the variable of "NAME=VALUE"; the reason why not, or nothing.
std::string AddValue(std::string_view text, VariableValues& values) {
    const std::size_t end = text.find('=');
    if (end == std::string_view::npos) {
        return fmt::format("--set: \"{}\" is no NAME=VALUE", text);
    }
    const std::string_view name = text.substr(0, end);
    const std::string_view value = text.substr(end + 1);
    if (!IsVariableName(name)) {
        return fmt::format(
            "--set: \"{}\" is no name of a variable, which has letters, digits and underscores, no "
            "digit first",
            name);
    }
    if (const std::optional<std::string_view> why = WhyNoValue(value)) {
        return fmt::format("--set: the value of {} {}", name, *why);
    }
    if (!values.emplace(name, value).second) {
        return fmt::format("--set: {} is set twice", name);
    }
    return {};
}

class VariableOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddTexts(
            "--set", texts_,
            "Replaces ${NAME} in the process file, also where it stands with a default, "
            "as ${NAME:-500}; as often as there are variables",
            "NAME=VALUE");
    }

    std::string Take(const Arguments& /*arguments*/, BatchOptions& options) override {
        VariableValues values;
        for (const std::string& text : texts_) {
            if (std::string reason = AddValue(text, values); !reason.empty()) {
                return reason;
            }
        }
        options.view.variables = std::move(values);
        return {};
    }

private:
    std::vector<std::string> texts_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeVariableOptions() {
    return std::make_unique<VariableOptions>();
}

}  // namespace zelmo
