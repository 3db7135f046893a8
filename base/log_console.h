#pragma once

#include <string>
#include <string_view>

namespace zelmo {

/// The user's log. Everything that reports to the user takes a non-owning pointer to one of these;
/// the desktop, the batch program and the tests each bring their own end of it. May be called from
/// the worker of a step.
class LogConsole {
public:
    virtual ~LogConsole() = default;

    /// Appends one line; an empty text gives an empty line.
    void Write(std::wstring text);
    /// The same for narrow text: every byte is widened by sign extension, with no code page.
    void Write(std::string_view text);

protected:
    /// Takes one line, without its line end.
    virtual void AppendLine(std::wstring line) = 0;
};

}  // namespace zelmo
