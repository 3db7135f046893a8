#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/batch/batch_fixture.h"
#include "tests/batch/told_page.h"

// The program as it stays and runs again, against fresh runs of the same files.

namespace zelmo {
namespace {

constexpr std::chrono::seconds patience(120);

class WatchTest : public BatchTest {
protected:
    ~WatchTest() override {
        if (child_ > 0) {
            kill(child_, SIGKILL);
            waitpid(child_, nullptr, 0);
        }
    }

    void Start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--watch");
        StartProgram(std::move(arguments));
    }

    void StartProgram(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {BatchProgram().string(), "-o", "out"});
        arguments.insert(arguments.end(), {"square.gds", "flow.txt"});
        std::vector<char*> words;
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        child_ = fork();
        if (child_ == 0) {
            const int errors = chdir(folder_.Path().c_str()) == 0
                                   ? open("errors", O_WRONLY | O_CREAT | O_APPEND, 0666)
                                   : -1;
            const int output = open("output", O_WRONLY | O_CREAT | O_APPEND, 0666);
            if (errors >= 0 && output >= 0 && dup2(output, 1) == 1 && dup2(errors, 2) == 2) {
                signal(SIGINT, SIG_DFL);
                execv(words[0], words.data());
            }
            _exit(126);
        }
    }

    /// Ends the program, as the user does, and returns its exit status.
    int Interrupt() {
        kill(child_, SIGINT);
        int status = -1;
        waitpid(child_, &status, 0);
        child_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    static bool WaitUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return true;
    }

    std::map<std::string, std::string> Pictures(const std::string& folder) const {
        std::map<std::string, std::string> pictures;
        if (std::filesystem::exists(InFolder(folder))) {
            for (const std::string& name : FilesIn(folder)) {
                if (name.ends_with(".bmp")) {
                    pictures[name] = FileText(folder + "/" + name);
                }
            }
        }
        return pictures;
    }

    /// Whether a folder holds these pictures and no others. Looks no further than to the first that
    /// is another, from the last on, so that whoever waits leaves the processor to what he waits
    /// for.
    bool Holds(const std::string& folder,
               const std::map<std::string, std::string>& pictures) const {
        if (!std::filesystem::exists(InFolder(folder))) {
            return false;
        }
        const std::vector<std::string> names = FilesIn(folder);
        return std::count_if(names.begin(), names.end(),
                             [](const std::string& name) { return name.ends_with(".bmp"); }) ==
                   static_cast<std::ptrdiff_t>(pictures.size()) &&
               std::all_of(pictures.rbegin(), pictures.rend(), [&](const auto& picture) {
                   return std::find(names.begin(), names.end(), picture.first) != names.end() &&
                          FileText(folder + "/" + picture.first) == picture.second;
               });
    }

    /// Expects that the watched folder comes to hold what a fresh run with these options makes of
    /// the files.
    void ExpectFresh(const std::vector<std::string>& options = {}) {
        std::filesystem::remove_all(InFolder("fresh"));
        std::vector<std::string> arguments = {"--quiet", "--format",   "bmp",     "-o",
                                              "fresh",   "square.gds", "flow.txt"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Ended fresh = Run(arguments);
        ASSERT_EQ(fresh.status, 0) << fresh.errors;
        const auto expected = Pictures("fresh");
        EXPECT_TRUE(WaitUntil([&] { return Holds("out", expected); }))
            << FileText("errors") << Pictures("out").size() << " of " << expected.size();
    }

    void ExpectTold(const std::string& text) {
        EXPECT_TRUE(WaitUntil([&] {
            return std::filesystem::exists(InFolder("errors")) &&
                   FileText("errors").find(text) != std::string::npos;
        })) << text;
    }

    pid_t child_ = 0;
};

std::string Film(std::uint32_t name, std::uint32_t thickness) {
    return "deposition -name F" + std::to_string(name) + " -type oxide -thickness " +
           std::to_string(thickness) + " -sc 1 -color 200 100 50 100\n";
}

TEST_F(WatchTest, FollowsEditsOfBothFiles) {
    std::mt19937 random(17);
    std::vector<std::string> steps = {Film(1, 300), Film(2, 200), Film(3, 100)};
    const auto write = [&] {
        std::string text;
        for (const std::string& step : steps) {
            text += step;
        }
        WriteProcess(text +
                     "photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800 -taper 80\n"
                     "etch -name E -targets oxide -depth 200 -iso 0.5\nstrip -name P\n");
    };
    write();
    const std::vector<std::string> small = {"--width", "480"};
    Start({"--format", "bmp", small[0], small[1]});
    ExpectFresh(small);
    for (std::uint32_t edit = 0; edit < 12; ++edit) {
        const std::size_t at = random() % steps.size();
        if (edit % 6 == 5) {
            WriteLayout(SquareLayout(3000 + static_cast<std::int32_t>(edit) * 100));
        }
        switch (edit % 4) {
            case 0:
                steps[at] = Film(10 + edit, 50 + static_cast<std::uint32_t>(random() % 300));
                break;
            case 1:
                steps.insert(steps.begin() + static_cast<std::ptrdiff_t>(at), Film(30 + edit, 150));
                break;
            case 2:
                std::swap(steps[at], steps[random() % steps.size()]);
                break;
            default:
                steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(at));
        }
        write();
        ExpectFresh(small);
    }
    EXPECT_EQ(Interrupt(), 0);
}

TEST_F(WatchTest, TellsOfAFaultyFileAndGoesOnWhenItIsMended) {
    Start({"--format", "bmp"});
    ExpectFresh();
    const auto before = Pictures("out");
    WriteProcess("depositoin -name A\n");
    ExpectTold("Error in line 4: Unknown command");
    EXPECT_EQ(Pictures("out"), before);
    WriteProcess(Film(1, 100) + Film(2, 400));
    ExpectFresh();
}

TEST_F(WatchTest, TellsEditorsWhereAFileIsFaulty) {
    WriteProcess("nonsense\n");
    Start({"--no-pictures", "--diagnostics", "gcc"});
    ExpectTold("flow.txt:4: error: Unknown command\n");
    ExpectTold("zelmo-batch: watching flow.txt and square.gds; Ctrl-C ends it\n");
    WriteProcess(Film(1, 100) + "depositoin -name A\n");
    ExpectTold("flow.txt:5: error: Unknown command\n");
}

TEST_F(WatchTest, BeginsWithAFaultyFile) {
    WriteProcess("nonsense\n");
    Start({"--format", "bmp"});
    ExpectTold("Unknown command");
    ExpectTold("watching flow.txt and square.gds");
    WriteProcess(Film(1, 100));
    ExpectFresh();
}

TEST_F(WatchTest, WritesTheModelAnewWhenTheLastStepIsAnother) {
    WriteProcess(Film(1, 100));
    Start({"--format", "bmp", "--export", "stack.stl"});
    ExpectFresh();
    for (const std::string& steps : {Film(1, 100) + Film(2, 400), Film(1, 300) + Film(2, 400),
                                     Film(1, 300), Film(1, 300) + Film(3, 50)}) {
        WriteProcess(steps);
        ExpectFresh();
        ASSERT_EQ(
            Run({"square.gds", "flow.txt", "--no-pictures", "--overwrite", "--export", "fresh.stl"})
                .status,
            0);
        const std::string fresh = FileText("fresh.stl");
        EXPECT_TRUE(WaitUntil([&] { return FileText("stack.stl") == fresh; })) << steps;
    }
    EXPECT_EQ(Interrupt(), 0);
}

TEST_F(WatchTest, ComesToTheLastOfManyRapidSaves) {
    Start({"--format", "bmp"});
    for (int round = 0; round < 3; ++round) {
        for (std::uint32_t save = 0; save < 40; ++save) {
            WriteProcess(Film(1, 100 + save) + Film(2, 300 - save));
            std::this_thread::sleep_for(std::chrono::milliseconds(save % 7));
        }
        ExpectFresh();
    }
}

TEST_F(WatchTest, ThePageIsThatOfAFreshRun) {
    const std::filesystem::path assets = std::filesystem::current_path();
    std::filesystem::create_directory(InFolder("assets"));
    std::filesystem::copy_file(assets / "colors.txt", InFolder("assets/colors.txt"));
    folder_.Write("assets/page.js", "let page = 1;");
    folder_.Write("assets/page.css", "a{}");
    const std::vector<std::string> common{"--no-pictures", "--assets", "assets", "--steps",
                                          "2-last"};
    const auto with = [&](const std::vector<std::string>& more) {
        std::vector<std::string> all = common;
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    const auto expectFreshPage = [&] {
        const std::string path = "fresh.html";
        ASSERT_EQ(Run(with({"--overwrite", "--report", path, "square.gds", "flow.txt"})).status, 0);
        const std::string fresh = PageWithoutTimes(FileText(path));
        ASSERT_FALSE(fresh.empty());
        EXPECT_TRUE(WaitUntil([&] {
            return std::filesystem::exists(InFolder("page.html")) &&
                   PageWithoutTimes(FileText("page.html")) == fresh;
        })) << FileText("errors");
    };
    const std::string end =
        "photo -name P -mask_id 1 -type 1 -res 0.2 -thickness 800 -taper 80\n"
        "etch -name E -targets oxide -depth 200 -iso 0.5\nstrip -name P\n";
    WriteProcess(Film(1, 300) + Film(2, 200) + end);
    Start(with({"--report", "page.html"}));
    expectFreshPage();
    for (const std::string& steps :
         {Film(1, 300) + Film(2, 250) + end, Film(1, 300) + "# moved\n" + Film(2, 250) + end,
          Film(1, 300) + Film(2, 250) + end + Film(3, 50), Film(1, 300),
          Film(3, 300) + Film(2, 250) + end}) {
        WriteProcess(steps);
        expectFreshPage();
    }
    EXPECT_EQ(Interrupt(), 0);
}

TEST_F(WatchTest, APageOfOthersIsKept) {
    folder_.Write("page.html", "mine");
    ExpectRefusal(
        Run({"--watch", "--no-pictures", "--report", "page.html", "square.gds", "flow.txt"}), 5,
        {"page.html exists already"});
    EXPECT_EQ(FileText("page.html"), "mine");
}

TEST_F(WatchTest, RefusesAFolderOfOthers) {
    std::filesystem::create_directory(InFolder("out"));
    folder_.Write("out/thesis.tex", "years of work");
    const Ended ended = Run({"--watch", "-o", "out", "square.gds", "flow.txt"});
    ExpectRefusal(ended, 4, {"out", "holds files of others", "--output"});
    EXPECT_EQ(FilesIn("out"), std::vector<std::string>{"thesis.tex"});
}

TEST_F(WatchTest, APlainRunThatIsEndedTellsWhichPicturesAreWhole) {
    std::string steps;
    for (std::uint32_t i = 0; i < 150; ++i) {
        steps += Film(i, 10);
    }
    WriteProcess(steps);
    StartProgram({"--format", "bmp", "--no-notes"});
    ASSERT_TRUE(WaitUntil([&] { return Pictures("out").size() > 2; }));
    EXPECT_EQ(Interrupt(), 130);
    const auto pictures = Pictures("out");
    ASSERT_FALSE(pictures.empty());
    EXPECT_EQ(FileText("errors"),
              "zelmo-batch: ended by the user; " + std::to_string(pictures.size()) +
                  " pictures are whole, the last is " + pictures.rbegin()->first + "\n");
}

TEST_F(WatchTest, LeavesNothingHalfWrittenWheneverItIsEnded) {
    std::mt19937 random(23);
    std::string steps;
    for (std::uint32_t i = 0; i < 6; ++i) {
        steps += Film(i, 100);
    }
    WriteProcess(steps);
    for (int round = 0; round < 12; ++round) {
        Start({"--quiet", "--format", "bmp"});
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 900));
        const int status = Interrupt();
        EXPECT_TRUE(status == 0 || status == 128 + SIGINT) << status;  // the latter: not begun
        if (!std::filesystem::exists(InFolder("out"))) {
            continue;
        }
        for (const std::string& name : FilesIn("out")) {
            EXPECT_FALSE(name.ends_with(".tmp")) << name;
        }
    }
}

}  // namespace
}  // namespace zelmo
