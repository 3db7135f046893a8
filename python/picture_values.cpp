#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/data_files.h"
#include "base/file.h"
#include "base/text.h"
#include "base/version.h"
#include "command_line/reasons.h"
#include "model/process_model.h"
#include "pictures/picture_files.h"
#include "python/classes.h"
#include "python/python_run.h"
#include "python/raise.h"
#include "python/texts.h"
#include "render/lone_picture.h"
#include "report/field_store.h"
#include "report/page.h"
#include "report/page_bundle.h"
#include "report/page_file.h"
#include "report/page_grid.h"
#include "report/process_file_lines.h"
#include "report/run_page.h"
#include "results/models/model_files.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

namespace py = pybind11;

/// What a writer of files writes, as bytes; the reason why not, or nothing.
std::string BytesOfFile(const std::function<std::string(std::FILE*)>& write, std::string& bytes) {
    char* text = nullptr;
    std::size_t size = 0;
    FilePointer file(open_memstream(&text, &size));
    if (file == nullptr) {
        return "there is not enough memory";
    }
    std::string reason = write(file.get());
    if (!CloseWritten(std::move(file)) && reason.empty()) {
        reason = "there is not enough memory";
    }
    const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
    bytes.assign(text, size);
    return reason;
}

/// The pictures of a forked child, whose parent had a context, would wait for ever for threads
/// that did not come along.
void RefuseAfterFork() {
    static const int first = getpid();
    if (first != getpid()) {
        RaiseError("PictureError",
                   "no picture can be made in a forked process whose parent made some; start "
                   "processes with \"spawn\" or \"forkserver\"");
    }
}

/// Azimuth, elevation and whether it is parallel.
using GivenView = std::tuple<double, double, bool>;

StepImage TakePicture(const PythonRun& run, std::int32_t width, bool smooth, bool title, bool scale,
                      bool transparent, bool crop, const std::optional<GivenView>& view,
                      double thinnestNanometres) {
    const std::size_t done = run.position.done.size();
    if (done == 0) {
        RaiseError("PictureError", "there is nothing to see before the first step was executed");
    }
    RefuseAfterFork();
    constexpr double nanometresPerMicrometre = 1000.0;
    PictureChoice choice{width, smooth, title, scale, transparent, crop};
    if (view) {
        const auto [azimuth, elevation, isParallel] = *view;
        choice.view = ViewDirection{azimuth, elevation, isParallel};
    }
    choice.thinnestFilm = static_cast<float>(thinnestNanometres / nanometresPerMicrometre);
    const ProcessModel model = run.plan->View(run.position.stack);
    const auto& folders = run.plan->inputs.dataFolders;
    LonePicture picture;
    {
        const py::gil_scoped_release release;
        picture = TakeLonePicture(FindDataFile(folders, "surface.shader"),
                                  FindDataFile(folders, "point.shader"), model, done - 1, choice);
    }
    if (!picture.problem.empty()) {
        RaiseError("PictureError", "no picture can be made: " + picture.problem);
    }
    return std::move(picture.image);
}

/// Red, green, blue and opacity, the top row first.
py::array_t<std::uint8_t> Pixels(const StepImage& image) {
    py::array_t<std::uint8_t> array(std::vector<py::ssize_t>{image.height, image.width, 4});
    std::uint8_t* out = array.mutable_data();
    const auto rowBytes = static_cast<std::size_t>(image.width) * 4;
    for (std::int32_t row = image.height - 1; row >= 0; --row) {
        const std::uint8_t* in = image.pixels.data() + static_cast<std::size_t>(row) * rowBytes;
        for (const std::uint8_t* const end = in + rowBytes; in != end; in += 4) {
            *out++ = in[2];
            *out++ = in[1];
            *out++ = in[0];
            *out++ = image.isTransparent ? in[3] : std::uint8_t{255};
        }
    }
    return array;
}

py::bytes PictureBytes(const StepImage& image, const std::string& format) {
    for (const PictureFormat& row : pictureFormats) {
        if (row.name == format) {
            std::string bytes;
            const std::string reason = BytesOfFile(
                [&](std::FILE* file) {
                    std::string why;
                    return row.write(image, file, why) ? std::string() : why;
                },
                bytes);
            if (!reason.empty()) {
                RaiseError("PictureError", "the picture cannot be written: " + reason);
            }
            return bytes;
        }
    }
    throw py::value_error("pictures are written as .png and .bmp, not as ." + format);
}

const ModelFormat& FindModelFormat(const std::string& extension) {
    for (const ModelFormat& row : modelFormats) {
        if (row.extension == extension) {
            return row;
        }
    }
    throw py::value_error("models are written as .glb and .stl, not as ." + extension);
}

py::bytes ModelBytes(const PythonRun& run, const std::string& extension, double tolerance) {
    const ModelFormat& format = FindModelFormat(extension);
    const std::size_t done = run.position.done.size();
    if (done == 0) {
        RaiseError("ModelError", "there is no stack before the first step was executed");
    }
    const ProcessModel model = run.plan->View(run.position.stack);
    const std::string name = Utf8FromWide(
        StepImageName(static_cast<std::int32_t>(done), model.steps[done - 1].description));
    std::string bytes;
    std::string reason;
    {
        const py::gil_scoped_release release;
        const StackModel stack = MakeStackModel(model, {tolerance});
        reason = stack.failure;
        if (reason.empty()) {
            reason = BytesOfFile([&](std::FILE* file) { return format.write(stack, name, file); },
                                 bytes);
        }
    }
    if (!reason.empty()) {
        RaiseError("ModelError", "the model could not be made: " + reason);
    }
    return bytes;
}

/// Makes the page of a run, of the positions that it is given one after the other.
class PageMaker {
public:
    PageMaker(const PythonRun& run, std::int32_t columns)
        : plan_(run.plan),
          grid_(ThinGrid(run.Model().grid, columns)),
          fields_(grid_),
          steps_(PageSteps(run.Model(), run.plan->commands)),
          page_(PageHead(
              run.Model(),
              {std::string("zelmo ") + programVersion, FileName(plan_->inputs.processName),
               FileName(plan_->inputs.layout->path), LinesOfProcessText(plan_->inputs.processText)},
              grid_)) {}

    void Take(const PythonRun& run, const StepImage* picture) {
        const std::size_t index = run.position.done.size() - 1;
        const DoneStep& done = run.position.done.at(index);
        PageStep step = steps_.at(index);
        step.seconds = done.seconds;
        step.console = done.console;
        const Stack stack = CopyStack(run.position.stack);
        const py::gil_scoped_release release;
        step.stack = fields_.Take(stack, plan_->model.grid.columns);
        if (picture != nullptr) {
            std::tie(step.picture, step.thumbnail) = EncodePagePictures(*picture);
        }
        page_.zero = static_cast<double>(stack.substrateThickness);
        page_.steps.push_back(std::move(step));
    }

    /// The page of all that was taken, with the notes of a run.
    py::bytes Html(const PythonRun& run) {
        Page page = page_;
        std::vector<Note> notes = plan_->notes;
        for (const DoneStep& done : run.position.done) {
            notes.insert(notes.end(), done.notes.begin(), done.notes.end());
        }
        AddPageNotes(page, notes, plan_->ProcessName());
        page.chunks = fields_.Chunks();
        const auto& folders = plan_->inputs.dataFolders;
        PageBundle bundle;
        std::string bytes;
        std::string reason = ReadPageBundle(FindDataFile(folders, "page.js"),
                                            FindDataFile(folders, "page.css"), bundle);
        if (reason.empty()) {
            reason =
                BytesOfFile([&](std::FILE* file) { return WritePage(page, bundle, file); }, bytes);
        }
        if (!reason.empty()) {
            RaiseError("Error", reason);
        }
        return bytes;
    }

private:
    static std::string FileName(const std::filesystem::path& path) {
        return ReadableText(TextOf(path.filename()));
    }

    std::shared_ptr<const RunPlan> plan_;
    PageGrid grid_;
    FieldStore fields_;
    std::vector<PageStep> steps_;
    Page page_;
};

}  // namespace

void AddPictures(py::module_& module, RunClass& run) {
    py::class_<StepImage>(module, "Picture").def("pixels", Pixels).def("bytes", PictureBytes);
    run.def("picture", TakePicture).def("model", ModelBytes);
    py::class_<PageMaker>(module, "PageMaker")
        .def(py::init<const PythonRun&, std::int32_t>())
        .def("take", &PageMaker::Take)
        .def("html", &PageMaker::Html);
}

}  // namespace zelmo
