#include "batch/listeners/listeners.h"

#include <string>
#include <utility>

#include "batch/files/output_folder.h"
#include "batch/files/picture_list.h"
#include "batch/listeners/dump_warner.h"
#include "batch/listeners/model_writer.h"
#include "batch/listeners/note_listener.h"
#include "batch/listeners/overviews.h"
#include "batch/listeners/picture_saver.h"
#include "batch/listeners/probe_writer.h"
#include "batch/listeners/report_writer.h"
#include "batch/listeners/section_writer.h"
#include "batch/listeners/summary_writer.h"
#include "batch/note_teller.h"
#include "batch/options.h"
#include "batch/reporting.h"
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

/// What is made of all pictures.
void AddOverviews(const BatchOptions& options, PictureSaver& pictures, Listeners& listeners) {
    std::vector<Overview> overviews;
    if (options.overview.sheet) {
        overviews.push_back(MakeSheet(options, [&pictures](const auto& text, auto... size) {
            return pictures.DrawCaption(text, size...);
        }));
    }
    if (options.overview.film) {
        overviews.push_back(MakeFilm(options));
    }
    for (Overview& overview : overviews) {
        auto writer = std::make_unique<OverviewWriter>(std::move(overview), options.overwrite);
        pictures.AddTaker([taker = writer.get()](const auto index, const auto& image) {
            taker->TakePicture(index, *image);
        });
        listeners.push_back(std::move(writer));
    }
}

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
    std::unique_ptr<PictureSaver> pictures;
    if (options.pictures) {
        pictures =
            std::make_unique<PictureSaver>(options, assetFolders, tell, files, lists.pictures);
    }
    if (options.report.file) {
        auto report = std::make_unique<ReportWriter>(given, assetFolders, reporting.console);
        if (pictures != nullptr) {
            pictures->AddTaker([taker = report.get()](const auto index, const auto& image) {
                taker->TakePicture(index, image);
            });
        }
        listeners.push_back(std::move(report));
    }
    if (pictures != nullptr) {
        AddOverviews(given, *pictures, listeners);
        listeners.push_back(std::move(pictures));
    }
    if (options.model.file) {
        listeners.push_back(std::make_unique<ModelWriter>(options, tell, files));
    }
    if (options.numbers.summary) {
        listeners.push_back(std::make_unique<SummaryWriter>(options, assetFolders));
    }
    listeners.push_back(std::make_unique<DumpWarner>(reporting));  // all others are ready
    return listeners;
}

}  // namespace zelmo
