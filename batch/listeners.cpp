#include "batch/listeners.h"

#include <string>
#include <utility>

#include "batch/dump_warner.h"
#include "batch/note_listener.h"
#include "batch/note_teller.h"
#include "batch/options.h"
#include "batch/output_folder.h"
#include "batch/picture_list.h"
#include "batch/picture_saver.h"
#include "batch/probe_writer.h"
#include "batch/report_writer.h"
#include "batch/reporting.h"
#include "batch/section_writer.h"
#include "batch/summary_writer.h"
#include "command_line/standard_streams.h"

namespace zelmo {

namespace {

/// The lists of folders whose files are replaced; none for other runs.
struct FolderLists {
    explicit FolderLists(const BatchOptions& options) {
        if (options.overwrite) {
            pictures = std::make_shared<PictureList>(options.watch);
            const bool isOne = !options.numbers.cutFolder || CutFolder(options) == *options.output;
            cuts = isOne ? pictures : std::make_shared<PictureList>(options.watch);
        }
    }

    std::shared_ptr<PictureList> pictures;
    std::shared_ptr<PictureList> cuts;
};

}  // namespace

Listeners MakeListeners(const BatchOptions& given,
                        const std::vector<std::filesystem::path>& assetFolders,
                        Reporting& reporting, NoteTeller& notes, UnfinishedFiles& files) {
    BatchOptions options = given;
    options.output = OutputFolder(given);  // one for all
    options.overwrite = options.overwrite || options.watch;
    const FolderLists lists(options);
    Listeners listeners;
    if (notes.WantsNotes()) {
        listeners.push_back(std::make_unique<NoteListener>(options, notes));
    }
    const auto tell = [&](const std::string& line) { reporting.Error(line); };
    if (!options.numbers.probes.empty()) {
        listeners.push_back(std::make_unique<ProbeWriter>(options, [&](const std::string& text) {
            std::string failure;
            reporting.progress.Interrupt([&] { WriteToOutput(text, failure); });
            return failure;
        }));
    }
    if (!options.numbers.cuts.empty()) {
        listeners.push_back(std::make_unique<SectionWriter>(options, tell, lists.cuts));
    }
    std::vector<PictureTaker> takers;
    if (options.report.file) {
        auto report = std::make_unique<ReportWriter>(given, assetFolders, reporting.console);
        takers.emplace_back([taker = report.get()](std::size_t index,
                                                   const std::shared_ptr<const StepImage>& image) {
            taker->TakePicture(index, image);
        });
        listeners.push_back(std::move(report));
    }
    if (options.pictures) {
        listeners.push_back(std::make_unique<PictureSaver>(options, assetFolders, tell, files,
                                                           lists.pictures, std::move(takers)));
    }
    if (options.numbers.summary) {
        listeners.push_back(std::make_unique<SummaryWriter>(options, assetFolders));
    }
    listeners.push_back(std::make_unique<DumpWarner>(reporting));  // all others are ready
    return listeners;
}

}  // namespace zelmo
