#pragma once

#include <QFileDialog>
#include <QMessageBox>
#include <QTimer>
#include <functional>

namespace zelmo {

/// Waits behind the program's back for a modal dialog to appear and hands it to `answer`, once.
/// The answer has to close the dialog.
class DialogAnswer : public QObject {
public:
    explicit DialogAnswer(std::function<void(QDialog&)> answer);

    bool Given() const { return given_; }

private:
    void Look();

    std::function<void(QDialog&)> answer_;
    QTimer timer_;
    bool given_ = false;
};

/// Clicks a button of a dialog by its text.
void ClickButton(QDialog& dialog, const QString& text);

/// Types a file name into the dialog's field and clicks Open.
void ChooseFile(QDialog& dialog, const QString& name);

/// The message box or file dialog that stands behind `dialog`; fails the test if it is another.
QMessageBox& AsMessageBox(QDialog& dialog);
QFileDialog& AsFileDialog(QDialog& dialog);

}  // namespace zelmo
