#include <gtest/gtest.h>

#include <QEvent>
#include <QPalette>
#include <QtTest/QTest>
#include <algorithm>
#include <vector>

#include "tests/desktop/qt/desktop_user.h"
#include "tests/desktop/qt/x_server.h"

namespace zelmo {

namespace {

/// The saved pictures of a run, in their order, on white.
std::vector<QImage> SavedPictures(DesktopUser& user) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(user.SaveImages())) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<QImage> pictures;
    for (const auto& file : files) {
        pictures.push_back(QImage(ToQString(file)).convertToFormat(QImage::Format_RGB32));
    }
    return pictures;
}

/// A picture as it has to stand in an area of this size: the nearest pixel of the source counted
/// from its bottom left, centred, with white margins.
QImage Expected(const QImage& picture, QSize area) {
    const float scale =
        std::min(static_cast<float>(area.height()) / static_cast<float>(picture.height()),
                 static_cast<float>(area.width()) / static_cast<float>(picture.width()));
    const int width = static_cast<int>(static_cast<float>(picture.width()) * scale);
    const int height = static_cast<int>(static_cast<float>(picture.height()) * scale);
    const int left = (area.width() - width) / 2;
    const int bottom = (area.height() - height) / 2;
    QImage image(area, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < height; ++y) {
        const int row =
            std::min(static_cast<int>(static_cast<float>(y) / scale), picture.height() - 1);
        for (int x = 0; x < width; ++x) {
            const int column =
                std::min(static_cast<int>(static_cast<float>(x) / scale), picture.width() - 1);
            image.setPixel(left + x, area.height() - 1 - bottom - y,
                           picture.pixel(column, picture.height() - 1 - row));
        }
    }
    return image;
}

int DifferentPixels(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) {
        return -1;
    }
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            different += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        }
    }
    return different;
}

/// How many pixels of the display show something else than the picture fitted into them.
int PixelsThatAreNot(const QImage& picture, const QImage& shown) {
    return DifferentPixels(shown, Expected(picture, shown.size()));
}

class QtPictures : public testing::Test {
protected:
    QtPictures() {
        user_.LoadLayout();
        user_.Run();
        pictures_ = SavedPictures(user_);
    }

    void ExpectShown(std::size_t picture) {
        EXPECT_EQ(PixelsThatAreNot(pictures_[picture], user_.Shown()), 0) << picture;
    }

    DesktopUser user_;
    std::vector<QImage> pictures_;
};

TEST_F(QtPictures, ShownPictureIsTheSavedOneScaled) {
    ASSERT_EQ(pictures_.size(), 5u);
    EXPECT_NE(DifferentPixels(pictures_[0], pictures_[4]), 0);
    ExpectShown(4);
    user_.PressKey(Qt::Key_Right);
    ExpectShown(0);
    user_.PressKey(Qt::Key_Right);
    ExpectShown(1);
    user_.PressKey(Qt::Key_Left);
    user_.PressKey(Qt::Key_Left);
    ExpectShown(4);
}

/// Counts how often a widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int Count() const { return count_; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count_ += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int count_ = 0;
};

TEST_F(QtPictures, EveryArrowKeyPaintsThePictureOnceAtOnce) {
    QTest::qWait(100);
    const PaintCounter counter(user_.Picture());
    user_.PressKey(Qt::Key_Right);
    EXPECT_EQ(counter.Count(), 1);
    user_.PressKey(Qt::Key_Left);
    EXPECT_EQ(counter.Count(), 2);
}

TEST_F(QtPictures, PictureIsScaledWithTheWindowAlsoPastItsOwnSize) {
    for (const QSize size : {QSize(700, 900), QSize(1400, 500), QSize(2300, 2500)}) {
        user_.Window().resize(size);
        QTest::qWait(50);
        ASSERT_EQ(user_.Window().size(), size);
        ExpectShown(4);
    }
}

TEST_F(QtPictures, OldPictureStaysUntilTheFirstNewOne) {
    user_.PressKey(Qt::Key_Left);
    const QImage before = user_.Shown();
    user_.StartRun();
    EXPECT_EQ(DifferentPixels(user_.Shown(), before), 0);
    user_.Window().resize(640, 480);
    EXPECT_EQ(PixelsThatAreNot(pictures_[3], user_.Shown()), 0);
    user_.Click("&Stop");
    user_.WaitForRunEnd();
    ExpectShown(0);  // the first picture of both runs shows the same
}

TEST_F(QtPictures, ArrowKeysDuringAStepChangeTheCaptionButNotThePicture) {
    user_.StartRunAndHold(3);
    const QImage before = user_.Shown();
    EXPECT_EQ(PixelsThatAreNot(pictures_[1], before), 0);
    ASSERT_NE(PixelsThatAreNot(pictures_[0], before), 0);
    user_.PressKey(Qt::Key_Left);
    EXPECT_TRUE(user_.Window().windowTitle().startsWith("006 "));
    EXPECT_EQ(DifferentPixels(user_.Shown(), before), 0);
    user_.PressKey(Qt::Key_Right);
    EXPECT_TRUE(user_.Window().windowTitle().startsWith("007 "));
    user_.PressKey(Qt::Key_Right);
    EXPECT_TRUE(user_.Window().windowTitle().startsWith("006 "));
    EXPECT_EQ(DifferentPixels(user_.Shown(), before), 0);
    user_.Click("&Stop");
    user_.Window().Release();
    user_.WaitForRunEnd();
    EXPECT_TRUE(user_.Window().windowTitle().startsWith("008 "));
    ExpectShown(2);  // the step's end shows the newest again
}

class QtPicturesOnXServer : public QtPictures {};

TEST_F(QtPicturesOnXServer, UncoveringDuringAStepBringsBackWhatWasShownBefore) {
    ASSERT_TRUE(OnXServer());
    user_.StartRunAndHold(3);
    QTest::qWait(100);
    const QImage before = user_.OnScreen();
    EXPECT_EQ(PixelsThatAreNot(pictures_[1], before), 0);
    user_.PressKey(Qt::Key_Left);  // what the next painting would show with a context
    QWidget cover(nullptr, Qt::Window | Qt::BypassWindowManagerHint);
    cover.setPalette(QPalette(Qt::darkRed));
    cover.setGeometry(user_.Window().frameGeometry());
    cover.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&cover));
    WaitUntil([&] { return user_.OnScreen().pixelColor(100, 100) == QColor(Qt::darkRed); });
    cover.hide();
    WaitUntil([&] { return DifferentPixels(user_.OnScreen(), before) == 0; });
    user_.Picture().update();
    QTest::qWait(100);
    EXPECT_EQ(DifferentPixels(user_.OnScreen(), before), 0);
    user_.Click("&Stop");
    user_.Window().Release();
    user_.WaitForRunEnd();
    EXPECT_EQ(DifferentPixels(user_.OnScreen(), Expected(pictures_[2], user_.Picture().size())), 0);
}

}  // namespace

}  // namespace zelmo
