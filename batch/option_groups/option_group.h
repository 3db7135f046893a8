#pragma once

#include <memory>
#include <string>

namespace zelmo {

class Arguments;
struct BatchOptions;

/// Options of the command line that belong together.
class OptionGroup {
public:
    virtual ~OptionGroup() = default;

    /// Makes them known to the parser.
    virtual void Add(Arguments& arguments) = 0;

    /// Sets what they ask for; the reason why not, or nothing if all is well.
    virtual std::string Take(const Arguments& arguments, BatchOptions& options) = 0;
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

/// The models of the stack.
std::unique_ptr<OptionGroup> MakeModelOptions();

/// A sheet and a film of the pictures.
std::unique_ptr<OptionGroup> MakeOverviewOptions();

/// The page of a run.
std::unique_ptr<OptionGroup> MakeReportOptions();

/// What is said of what is probably not meant.
std::unique_ptr<OptionGroup> MakeNoteOptions();

/// Staying, to run again whenever an input is saved.
std::unique_ptr<OptionGroup> MakeWatchOptions();

/// The files of pictures.
std::unique_ptr<OptionGroup> MakePictureOptions();

/// How pictures are drawn, where not as usual.
std::unique_ptr<OptionGroup> MakeSlideOptions();

}  // namespace zelmo
