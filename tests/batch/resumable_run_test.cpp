#include "batch/resumable_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "batch/files/unfinished_files.h"
#include "batch/options.h"
#include "batch/reporting.h"
#include "examples/gds_writer.h"
#include "gds/gds_database.h"
#include "model/execute_step.h"
#include "process_run/load_layout.h"
#include "process_run/prepare_run.h"
#include "tests/model/grid_model.h"
#include "tests/support/case_count.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

// Runs that are done again after their files were edited, against fresh runs of the same files.

namespace zelmo {
namespace {

/// Everything that a picture or a number could be made of.
using State = std::vector<std::uint32_t>;

State StateOf(const ProcessModel& model, std::size_t index) {
    State state = BitsOf(model.stack.coverMap);
    for (const char character : model.steps[index].description + model.settings.cellName) {
        state.push_back(static_cast<std::uint32_t>(character));
    }
    state.push_back(std::bit_cast<std::uint32_t>(model.settings.cameraAngle));
    for (const auto& layer : model.stack.layers) {
        state.push_back(layer != nullptr ? 1 : 0);
        if (layer != nullptr) {
            std::ranges::copy(BitsOf(layer->top), std::back_inserter(state));
            std::ranges::copy(BitsOf(layer->bottom), std::back_inserter(state));
            std::ranges::copy(BitsOf(layer->color), std::back_inserter(state));
        }
    }
    return state;
}

/// Keeps the states that it was shown.
class StateListener : public StepListener {
public:
    Outcome Begin(const ProcessModel& model) override { return Restart(model, 0); }
    Outcome Restart(const ProcessModel& model, std::size_t first) override {
        states.resize(first);
        EXPECT_LE(first, model.steps.size());
        return {};
    }
    void BeforeStep(const ProcessModel& model, std::size_t index) override {
        if (index > 0) {
            EXPECT_EQ(StateOf(model, index - 1), states.at(index - 1));
        }
    }
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override {
        EXPECT_EQ(index, states.size());
        EXPECT_GT(record.seconds.size(), index);
        states.push_back(StateOf(model, index));
        ++taken;
        return {};
    }
    Outcome Finish(RunRecord&, bool isComplete) override {
        complete = isComplete;
        return {};
    }

    std::vector<State> states;
    std::size_t taken = 0;
    bool complete = false;
};

std::vector<std::uint8_t> Layout(std::int32_t size) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 3000, 3000, 3000 + size, 7000);
    writer.Rectangle(2, 5000, 2000, 6000, 8000);
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

class ResumableRunTest : public testing::Test {
protected:
    explicit ResumableRunTest(std::optional<std::uint64_t> memory = std::nullopt)
        : reporting_(true), options_(OptionsOf(memory)) {
        auto listener = std::make_unique<StateListener>();
        listener_ = listener.get();
        std::vector<std::unique_ptr<StepListener>> listeners;
        listeners.push_back(std::move(listener));
        run_ = std::make_unique<ResumableRun>(options_, std::move(listeners), reporting_, files_);
        UseLayout(4000);
    }

    static BatchOptions OptionsOf(std::optional<std::uint64_t> memory) {
        BatchOptions options;
        options.watch = true;
        options.memoryMebibytes = memory;
        return options;
    }

    void UseLayout(std::int32_t size) {
        RecordingConsole console;
        database_ = LoadLayout(folder_.Write("a.gds", Layout(size)), &console).database;
    }

    std::unique_ptr<ProcessModel> Prepare(const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        RecordingConsole console;
        const ColorTable colors;
        return PrepareRun(folder_.Write("a.txt", text), *database_, colors, &console).model;
    }

    /// Runs a file again; false if it is refused.
    bool Run(const std::vector<std::string>& lines) {
        auto model = Prepare(lines);
        if (model == nullptr) {
            return false;
        }
        EXPECT_FALSE(run_->Run(std::move(model), [] { return false; }).Failed());
        EXPECT_TRUE(listener_->complete);
        return true;
    }

    std::vector<State> Fresh(const std::vector<std::string>& lines) {
        const auto model = Prepare(lines);
        std::vector<State> states;
        for (std::size_t index = 0; index < model->steps.size(); ++index) {
            ExecuteStep(*model, model->steps[index], nullptr);
            states.push_back(StateOf(*model, index));
        }
        return states;
    }

    /// Runs a file again and counts the steps that were taken.
    std::size_t StepsTaken(const std::vector<std::string>& lines) {
        const std::size_t before = listener_->taken;
        EXPECT_TRUE(Run(lines));
        EXPECT_EQ(listener_->states, Fresh(lines));
        return listener_->taken - before;
    }

    TempFolder folder_;
    Reporting reporting_;
    UnfinishedFiles files_;
    BatchOptions options_;
    StateListener* listener_ = nullptr;
    std::unique_ptr<GdsDatabase> database_;
    std::unique_ptr<ResumableRun> run_;
};

const std::vector<std::string> head = {"settings -version 4 -N 200 -angle 40",
                                       "location -x 2 -y 4 -dx 6 -dy 0.3", "gds -cell_name TOP"};

std::string Film(int name, int thickness) {
    return "deposition -name F" + std::to_string(name) + " -type oxide -thickness " +
           std::to_string(thickness) + " -sc 1 -color 200 100 50 100";
}

std::vector<std::string> Flow() {
    std::vector<std::string> lines = head;
    lines.push_back(Film(1, 300));
    lines.emplace_back("photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800 -taper 80");
    lines.emplace_back("etch -name E -targets oxide -depth 200 -iso 0.5");
    lines.emplace_back("strip -name P");
    lines.push_back(Film(2, 200));
    return lines;
}

TEST_F(ResumableRunTest, TakesAllStepsTheFirstTimeAndNoneWhenNothingChanged) {
    EXPECT_EQ(StepsTaken(Flow()), 6u);
    EXPECT_EQ(StepsTaken(Flow()), 0u);
}

TEST_F(ResumableRunTest, TakesWhatAnEditedStepTouches) {
    StepsTaken(Flow());
    auto lines = Flow();
    lines.back() = Film(2, 250);
    EXPECT_EQ(StepsTaken(lines), 1u);
    lines[5] = "etch -name E -targets oxide -depth 250 -iso 0.5";
    EXPECT_EQ(StepsTaken(lines), 3u);
    lines.insert(lines.begin() + 3, "# a remark that moves the lines");
    EXPECT_EQ(StepsTaken(lines), 0u);
}

TEST_F(ResumableRunTest, AnotherLayoutTouchesTheMaskThatIsDrawnOtherwise) {
    StepsTaken(Flow());
    UseLayout(4000);
    EXPECT_EQ(StepsTaken(Flow()), 0u);
    UseLayout(3000);
    EXPECT_EQ(StepsTaken(Flow()), 4u);
}

TEST_F(ResumableRunTest, AnotherCameraTakesAllStepsAndExecutesNone) {
    StepsTaken(Flow());
    auto lines = Flow();
    lines[0] = "settings -version 4 -N 200 -angle 20";
    EXPECT_EQ(StepsTaken(lines), 6u);
}

TEST_F(ResumableRunTest, GoesOnWhereItWasSuperseded) {
    int asked = 0;
    ASSERT_FALSE(run_->Run(Prepare(Flow()), [&asked] { return ++asked > 3; }).Failed());
    EXPECT_EQ(listener_->taken, 3u);
    EXPECT_FALSE(listener_->complete);
    EXPECT_EQ(StepsTaken(Flow()), 3u);
}

/// Random edits of a process file, of which some are faulty.
class RandomEdits {
public:
    explicit RandomEdits(std::uint32_t seed) : random_(seed) {}

    std::uint32_t Below(std::uint32_t limit) { return random_.Below(limit); }

    void Edit(std::vector<std::string>& lines) {
        const std::size_t steps = lines.size() - head.size();
        const std::size_t at =
            head.size() + (steps > 0 ? Below(static_cast<std::uint32_t>(steps)) : 0);
        switch (steps < 3 ? 0 : Below(5)) {
            case 0:
            case 1:
                lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), NewLine());
                break;
            case 2:
                lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at));
                break;
            case 3:
                std::swap(lines[at], lines[head.size() + Below(static_cast<std::uint32_t>(steps))]);
                break;
            default:
                lines[at] = NewLine();
        }
        if (Below(8) == 0) {
            lines[0] = "settings -version 4 -N " + std::to_string(200 + Below(3)) + " -angle " +
                       std::to_string(10 + Below(3));
        }
    }

private:
    std::string NewLine() {
        const std::string name = std::to_string(Below(1000));
        const std::string value = std::to_string(100 + Below(4) * 100);
        switch (Below(7)) {
            case 0:
            case 1:
                return Film(static_cast<int>(Below(1000)), 100 + static_cast<int>(Below(4)) * 50);
            case 2:
                return "coating -name C" + name + " -type metal -thickness " + value +
                       " -dop 0.5 -color 20 30 40 100";
            case 3:
                return "etch -name E" + name + " -targets oxide metal -depth " + value +
                       " -iso 0.5";
            case 4:
                return "release -name R" + name + " -targets metal";
            case 5:
                return "photo -name P" + name + " -mask_id 1 -type 1 -res 0.2 -thickness " + value +
                       " -taper 80";
            default:
                return "strip -name P" + name;
        }
    }

    TestRandom random_;
};

TEST_F(ResumableRunTest, GivesWhatFreshRunsGiveAfterRandomEdits) {
    RandomEdits edits(91);
    std::vector<std::string> lines = Flow();
    std::uint32_t good = 0;
    const std::uint32_t cases = CaseCount(300);
    for (std::uint32_t i = 0; i < cases; ++i) {
        edits.Edit(lines);
        if (edits.Below(10) == 0) {
            UseLayout(2000 + static_cast<std::int32_t>(edits.Below(3)) * 500);
        }
        auto model = Prepare(lines);
        if (model == nullptr) {
            if (edits.Below(2) == 0) {
                lines = Flow();
            }
            continue;
        }
        std::uint32_t steps = edits.Below(3) == 0 ? edits.Below(6) : 1000;
        ASSERT_FALSE(run_->Run(std::move(model), [&steps] { return steps-- == 0; }).Failed());
        const std::vector<State> fresh = Fresh(lines);
        ASSERT_LE(listener_->states.size(), fresh.size());
        ASSERT_TRUE(std::equal(listener_->states.begin(), listener_->states.end(), fresh.begin()))
            << i;
        if (listener_->states.size() == fresh.size()) {
            ++good;
        }
    }
    EXPECT_GT(good, cases / 4);
}

TEST_F(ResumableRunTest, ARunThatIsDoneOnceGivesTheSame) {
    options_.watch = false;
    auto listener = std::make_unique<StateListener>();
    StateListener* const once = listener.get();
    std::vector<std::unique_ptr<StepListener>> listeners;
    listeners.push_back(std::move(listener));
    ResumableRun run(options_, std::move(listeners), reporting_, files_);
    EXPECT_EQ(run.FinishedModel(), nullptr);
    ASSERT_FALSE(run.Run(Prepare(Flow()), [] { return false; }).Failed());
    EXPECT_EQ(once->states, Fresh(Flow()));
    EXPECT_TRUE(once->complete);
    ASSERT_NE(run.FinishedModel(), nullptr);
    EXPECT_EQ(run.Record().seconds.size(), run.FinishedModel()->steps.size());
}

/// With memory for the first and the last state alone.
class ForgetfulRunTest : public ResumableRunTest {
protected:
    ForgetfulRunTest() : ResumableRunTest(0) {}
};

TEST_F(ForgetfulRunTest, MakesWhatItForgotAnew) {
    StepsTaken(Flow());
    auto lines = Flow();
    for (const int thickness : {150, 250, 350}) {
        lines.back() = Film(2, thickness);
        EXPECT_EQ(StepsTaken(lines), 1u);
        lines[5] = "etch -name E -targets oxide -iso 0.5 -depth " + std::to_string(thickness);
        EXPECT_EQ(StepsTaken(lines), 3u);
    }
    lines[0] = "settings -version 4 -N 200 -angle 20";
    EXPECT_EQ(StepsTaken(lines), 6u);
}

}  // namespace
}  // namespace zelmo
