#include <png.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/batch/batch_fixture.h"

// A run that is killed: whatever has a picture's name is a whole picture.

namespace zelmo {
namespace {

using Clock = std::chrono::steady_clock;

bool IsWholePng(const std::string& bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) {
        return false;
    }
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0 &&
           image.warning_or_error == 0;
}

bool IsWholeBmp(const std::string& bytes) {
    std::uint32_t size = 0;
    for (std::size_t i = 0; i < 4 && bytes.size() > 54; ++i) {
        size |= std::uint32_t{static_cast<std::uint8_t>(bytes[2 + i])} << (8 * i);
    }
    return bytes.starts_with("BM") && size == bytes.size();
}

class KillTest : public BatchTest {
protected:
    KillTest() {
        std::string steps;
        for (int i = 0; i < 8; ++i) {
            steps.append("deposition -name M")
                .append(std::to_string(i))
                .append(" -type oxide -thickness 100 -sc 1 -color 200 100 50 100\n");
        }
        WriteProcess(steps);
    }

    pid_t Start(const std::string& folder, const char* format) const {
        const pid_t child = fork();
        if (child == 0) {
            const std::string program = BatchProgram().string();
            if (chdir(folder_.Path().c_str()) == 0) {
                execl(program.c_str(), program.c_str(), "--quiet", "--format", format, "-o",
                      folder.c_str(), "square.gds", "flow.txt", nullptr);
            }
            _exit(126);
        }
        return child;
    }

    /// Expects that all pictures in the folder are whole, and counts them.
    std::size_t CountPictures(const std::string& folder) const {
        std::size_t pictures = 0;
        if (!std::filesystem::exists(InFolder(folder))) {
            return 0;
        }
        for (const std::string& name : FilesIn(folder)) {
            if (name.starts_with(".zelmo-") && name.ends_with(".tmp")) {
                continue;
            }
            const std::string bytes = FileText((std::filesystem::path(folder) / name).string());
            EXPECT_TRUE(name.ends_with(".png") ? IsWholePng(bytes) : IsWholeBmp(bytes)) << name;
            ++pictures;
        }
        return pictures;
    }
};

TEST_F(KillTest, WhateverHasAPicturesNameIsWhole) {
    const auto start = Clock::now();
    int status = 0;
    ASSERT_EQ(waitpid(Start("whole", "png"), &status, 0) > 0 && WIFEXITED(status), true);
    ASSERT_EQ(WEXITSTATUS(status), 0);
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    ASSERT_EQ(CountPictures("whole"), 9u);

    const char* const wanted = std::getenv("ZELMO_KILLS");
    const int kills = wanted != nullptr ? std::atoi(wanted) : 12;
    std::mt19937 random(17);
    int within = 0;
    for (int i = 0; i < kills; ++i) {
        const std::string folder = "out" + std::to_string(i);
        const pid_t child = Start(folder, i % 2 == 0 ? "png" : "bmp");
        std::this_thread::sleep_for(whole * (random() % 1000) / 1000);
        kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const std::size_t pictures = CountPictures(folder);
        within += WIFSIGNALED(status) && pictures > 0 && pictures < 9 ? 1 : 0;
        std::filesystem::remove_all(InFolder(folder));
    }
    EXPECT_GT(within, 0);  // some of them while pictures were being written
}

TEST_F(KillTest, TheNextRunIntoTheSameFolderKeepsThePicturesThatAreThere) {
    int status = 0;
    ASSERT_GT(waitpid(Start("out", "bmp"), &status, 0), 0);
    folder_.Write("out/.zelmo-00000000.tmp", "what a killed run left");
    std::filesystem::remove(InFolder("out/009 009 M7 deposition.bmp"));
    const Ended again = Run({"--format", "bmp", "square.gds", "flow.txt", "-o", "out"});
    ExpectRefusal(again, 4, {"001 001 Substrate.bmp", "exists already"});
    EXPECT_EQ(CountPictures("out"), 8u);
}

}  // namespace
}  // namespace zelmo
