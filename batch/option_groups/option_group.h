#pragma once

#include <memory>
#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace zelmo {

struct BatchOptions;

/// Options of the command line that belong together.
class OptionGroup {
public:
    virtual ~OptionGroup() = default;

    /// Makes them known to the parser.
    virtual void Add(CLI::App& app) = 0;

    /// Sets what they ask for; the reason why not, or nothing if all is well.
    virtual std::string Take(const CLI::App& app, BatchOptions& options) = 0;
};

/// The files of a run, and how it goes.
std::unique_ptr<OptionGroup> MakeRunOptions();

/// What a run looks at, in place of what its process file says.
std::unique_ptr<OptionGroup> MakeViewOptions();

/// Values of the process file's variables.
std::unique_ptr<OptionGroup> MakeVariableOptions();

/// Of which steps there are pictures and numbers.
std::unique_ptr<OptionGroup> MakeStepOptions();

/// The numbers of a run.
std::unique_ptr<OptionGroup> MakeNumberOptions();

/// The page of a run.
std::unique_ptr<OptionGroup> MakeReportOptions();

/// What is said of what is probably not meant.
std::unique_ptr<OptionGroup> MakeNoteOptions();

/// Staying, to run again whenever an input is saved.
std::unique_ptr<OptionGroup> MakeWatchOptions();

/// The files of pictures.
std::unique_ptr<OptionGroup> MakePictureOptions();

}  // namespace zelmo
