#include <algorithm>
#include <ctime>

#include "base/text.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::wstring>;

std::uint32_t U32(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return bytes.at(offset) | bytes.at(offset + 1) << 8 | bytes.at(offset + 2) << 16 |
           static_cast<std::uint32_t>(bytes.at(offset + 3)) << 24;
}

/// A byte of the picture over white, as blending leaves it: exact but for its rounding.
int OverWhite(int value, int alpha) {
    return (value * alpha + 255 * (255 - alpha) + 127) / 255;
}

/// How many bytes of colour differ by more than one from the bitmap scaled to fit, by the nearest
/// pixel, in the middle of a white window.
std::size_t CountDifferences(const ShownPicture& shown, const std::vector<std::uint8_t>& bitmap) {
    const int width = static_cast<int>(U32(bitmap, 18));
    const int height = static_cast<int>(U32(bitmap, 22));
    const float scale = std::min(static_cast<float>(shown.height) / static_cast<float>(height),
                                 static_cast<float>(shown.width) / static_cast<float>(width));
    const int scaledWidth = static_cast<int>(static_cast<float>(width) * scale);
    const int scaledHeight = static_cast<int>(static_cast<float>(height) * scale);
    const int left = (shown.width - scaledWidth) / 2;
    const int bottom = (shown.height - scaledHeight) / 2;
    std::size_t differences = 0;
    for (int y = 0; y < shown.height; ++y) {
        for (int x = 0; x < shown.width; ++x) {
            const int column = x - left;
            const int row = y - bottom;
            const bool inside =
                column >= 0 && column < scaledWidth && row >= 0 && row < scaledHeight;
            const int sourceColumn = static_cast<int>(static_cast<float>(column) / scale);
            const int sourceRow = static_cast<int>(static_cast<float>(row) / scale);
            const auto source = 54 + static_cast<std::size_t>(sourceRow * width + sourceColumn) * 4;
            const auto target = static_cast<std::size_t>(y * shown.width + x) * 4;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const int expected =
                    inside ? OverWhite(bitmap.at(source + channel), bitmap.at(source + 3)) : 255;
                differences += std::abs(shown.pixels.at(target + channel) - expected) > 1;
            }
        }
    }
    return differences;
}

}  // namespace

class WindowPicturesTest : public WindowTest {
protected:
    /// Saves the pictures and returns the new folder.
    fs::path Save() {
        const auto before = FoldersBeside("flow ");
        Program().Command(saveCommand);
        Program().WaitForLine(L"Saving images completed");
        for (const fs::path& folder : FoldersBeside("flow ")) {
            if (std::find(before.begin(), before.end(), folder) == before.end()) {
                return folder;
            }
        }
        throw std::runtime_error("no folder was made");
    }
};

TEST_F(WindowPicturesTest, SavedFilesAreTheBatchProgramsToTheByte) {
    WriteProcess("flow.txt",
                 "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
                 "photo -name Resist -mask_id 1 -type 1 -res 0.2 -thickness 900 -taper 80\n"
                 "etch -name Oxide -targets oxide -depth 300 -iso 0.2\n"
                 "strip -name Resist\n"
                 "coating -name Glass -type glass -thickness 400 -dop 0.5 -color 20 200 90 50\n");
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path saved = Save();
    RunBatch(folder_.Path(), L"--format bmp -o batch square.gds flow.txt");
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(File("batch"))) {
        const fs::path same = saved / entry.path().filename();
        ASSERT_TRUE(fs::exists(same)) << same.string();
        EXPECT_TRUE(Bytes(same) == Bytes(entry.path())) << same.string();
        ++files;
    }
    EXPECT_EQ(files, 6u);
    EXPECT_EQ(std::distance(fs::directory_iterator(saved), fs::directory_iterator()), 6);
    EXPECT_TRUE(fs::exists(saved / "005 005 Resist photoresist strip.bmp"));
}

TEST_F(WindowPicturesTest, SavingTellsWhatItDoes) {
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path folder = Save();
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Save images\" command ---",
                     L"Saving images to folder \"" + folder.wstring() + L"\". Please wait ...",
                     L"Saving images completed"}));
    Program().WaitForMenu("SR.LA");
    const auto bytes = Bytes(folder / "003 003 Nitride deposition.bmp");
    EXPECT_EQ(bytes.at(0), 'B');
    EXPECT_EQ(bytes.at(1), 'M');
    EXPECT_EQ(U32(bytes, 10), 54u);
    EXPECT_EQ(U32(bytes, 18), 1920u);
    EXPECT_EQ(bytes.size(), 54 + 1920 * U32(bytes, 22) * 4);
}

TEST_F(WindowPicturesTest, AFolderThatExistsAlreadyIsRefusedInABox) {
    StartWithLayout();
    Program().RunToEnd(Process());
    // Folders for the next minutes stand already, as two saves within a second would find one.
    const std::time_t now = std::time(nullptr);
    for (int second = -1; second < 300; ++second) {
        const std::time_t time = now + second;
        std::tm local{};
        localtime_s(&local, &time);
        char stamp[64];
        std::strftime(stamp, sizeof stamp, "flow %Y-%m-%d %H-%M-%S", &local);
        fs::create_directory(File(stamp));
    }
    Program().Command(saveCommand);
    const HWND box = Program().WaitForDialog(L"Zelmo");
    const std::wstring text = DesktopProgram::MessageText(box);
    const std::wstring start =
        L"Images not saved. Failed to create output folder \"" + File("flow 2").wstring();
    EXPECT_TRUE(text.starts_with(start)) << Utf8FromWide(text);
    EXPECT_TRUE(text.ends_with(L"\".")) << Utf8FromWide(text);
    EXPECT_EQ(GetWindow(box, GW_OWNER), Program().Window());
    EXPECT_EQ(Program().MenuStates(), "....A");
    EXPECT_EQ(Program().ConsoleLines(), (Lines{L"--- Handling \"Save images\" command ---"}));
    Program().CloseMessage(box);
    Program().WaitForMenu("SR.LA");
}

TEST_F(WindowPicturesTest, APictureWhoseNameIsNoFileNameIsReported) {
    WriteProcess("flow.txt",
                 "deposition -name a/b -type oxide -thickness 500 -color 200 100 50 100\n");
    StartWithLayout();
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"002 a/b deposition");
    Program().Command(saveCommand);
    Program().WaitForLine(L"Errors occurred saving images");
    ASSERT_EQ(FoldersBeside("flow ").size(), 1u);
    const std::wstring folder = FoldersBeside("flow ")[0].wstring();
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Save images\" command ---",
                     L"Saving images to folder \"" + folder + L"\". Please wait ...",
                     L"Error while saving image " + folder +
                         L"\\002 002 a/b deposition.bmp to output folder \"" + folder + L"\"",
                     L"Errors occurred saving images"}));
    EXPECT_TRUE(fs::exists(fs::path(folder) / "001 001 Substrate.bmp"));
}

TEST_F(WindowPicturesTest, TheWindowShowsThePictureScaledInTheMiddle) {
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path folder = Save();
    const auto last = Bytes(folder / "003 003 Nitride deposition.bmp");
    const auto first = Bytes(folder / "001 001 Substrate.bmp");
    const ShownPicture afterRun = Program().Pixels();
    ASSERT_GT(afterRun.width, 0);
    EXPECT_EQ(CountDifferences(afterRun, last), 0u);
    EXPECT_GT(CountDifferences(afterRun, first), 1000u);
    Program().KeyTo(VK_RIGHT, L"001 Substrate");
    EXPECT_EQ(CountDifferences(Program().Pixels(), first), 0u);
    Program().Ask(ProbeRequest::Repaint, LPARAM{2});
    EXPECT_EQ(CountDifferences(Program().Pixels(), first), 0u);
}

}  // namespace zelmo
