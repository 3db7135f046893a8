#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command_line/command_end.h"

namespace zelmo {

/// The arguments that a program takes, and what was given of them. What is added is told of by
/// --help in the order in which it came; `help` says what it is for, and `form` what its value
/// looks like. The targets are set by Parse and outlive this object.
class Arguments {
public:
    /// `program` is its name, `footer` stands below the options.
    Arguments(const std::string& program, const std::string& description,
              const std::string& footer);
    ~Arguments();
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    /// An argument that is known by its place, not by an option: "LAYOUT.gds".
    void AddPositional(const std::string& name, std::string& target, const std::string& help,
                       bool isRequired);

    /// An option with a text behind it. `name` may be several, "-o,--output".
    void AddText(const std::string& name, std::string& target, const std::string& help,
                 const std::string& form);

    /// The same that may be given again, each time with one text.
    void AddTexts(const std::string& name, std::vector<std::string>& target,
                  const std::string& help, const std::string& form);

    /// An option with a whole number behind it.
    void AddNumber(const std::string& name, std::int64_t& target, const std::string& help,
                   const std::string& form);

    /// An option that is given or not.
    void AddFlag(const std::string& name, bool& target, const std::string& help);

    /// Reads the arguments behind the program's name, all in UTF-8 (on Linux, the bytes as they
    /// are). How the program ends, if there is nothing to run.
    std::optional<CommandEnd> Parse(const std::vector<std::string>& arguments);

    /// How often one was given.
    std::size_t Count(const std::string& name) const;

private:
    struct Parser;
    std::unique_ptr<Parser> parser_;
};

}  // namespace zelmo
