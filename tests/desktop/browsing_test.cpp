#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/desktop/desktop.h"

namespace zelmo {
namespace {

TEST(Browsing, WithoutPicturesAKeyRaisesTheRangeError) {
    Desktop desktop;
    EXPECT_THROW(desktop.window.HandleLeftKey(), std::out_of_range);
    EXPECT_THROW(desktop.window.HandleRightKey(), std::out_of_range);
    EXPECT_TRUE(desktop.platform.Captions().empty());
}

TEST(Browsing, KeysShowTheNameAndRepaintTheWindow) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(2));
    desktop.FinishRun();
    const int repaints = desktop.platform.WindowRepaints();
    desktop.window.HandleRightKey();
    EXPECT_EQ(desktop.platform.Captions().back(), L"001 Substrate");
    desktop.window.HandleLeftKey();
    EXPECT_EQ(desktop.platform.Captions().back(), L"003 layer2 deposition");
    desktop.window.HandleLeftKey();
    EXPECT_EQ(desktop.platform.Captions().back(), L"002 layer1 deposition");
    EXPECT_EQ(desktop.platform.WindowRepaints(), repaints + 3);
}

TEST(Browsing, DuringTheFirstStepOfARunThereIsNoPicture) {
    Desktop desktop;
    desktop.LoadLayout();
    bool raised = false;
    desktop.DuringStep(L"Substrate", [&] {
        try {
            desktop.window.HandleLeftKey();
        } catch (const std::out_of_range&) {
            raised = true;
        }
    });
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    EXPECT_TRUE(raised);
}

TEST(Browsing, KeysDuringAStepChangeTheCaptionAndTheStepsEndShowsTheNewestAgain) {
    Desktop desktop;
    desktop.LoadLayout();
    bool hadContext = true;
    desktop.DuringStep(L"layer2 deposition", [&] {
        desktop.window.HandleLeftKey();
        hadContext = desktop.platform.HasContext();
    });
    desktop.StartRun(desktop.ProcessFile(2));
    desktop.FinishRun();
    const auto& captions = desktop.platform.Captions();
    ASSERT_EQ(captions.size(), 4u);
    EXPECT_EQ(captions[1], L"002 layer1 deposition");
    EXPECT_EQ(captions[2], L"001 Substrate");
    EXPECT_EQ(captions[3], L"003 layer2 deposition");
    EXPECT_EQ(desktop.window.Pictures().currentImage, 2);
    EXPECT_FALSE(hadContext);
}

}  // namespace
}  // namespace zelmo
