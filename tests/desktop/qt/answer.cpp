#include "tests/desktop/qt/answer.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QtTest/QTest>
#include <stdexcept>
#include <utility>

namespace zelmo {

DialogAnswer::DialogAnswer(std::function<void(QDialog&)> answer) : answer_(std::move(answer)) {
    connect(&timer_, &QTimer::timeout, this, [this] { Look(); });
    timer_.start(10);
}

void DialogAnswer::Look() {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible() || given_) {
        return;
    }
    given_ = true;
    timer_.stop();
    answer_(*dialog);
}

void ClickButton(QDialog& dialog, const QString& text) {
    for (QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        if (button->text().remove('&') == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    ADD_FAILURE() << "no button " << text.toStdString();
    dialog.reject();
}

void ChooseFile(QDialog& dialog, const QString& name) {
    auto* field = dialog.findChild<QLineEdit*>("fileNameEdit");
    ASSERT_NE(field, nullptr);
    field->setText(name);
    ClickButton(dialog, "Open");
}

template <typename Kind>
static Kind& As(QDialog& dialog) {
    auto* kind = qobject_cast<Kind*>(&dialog);
    if (kind == nullptr) {
        dialog.reject();
        throw std::runtime_error("another dialog than expected");
    }
    return *kind;
}

QMessageBox& AsMessageBox(QDialog& dialog) {
    return As<QMessageBox>(dialog);
}

QFileDialog& AsFileDialog(QDialog& dialog) {
    return As<QFileDialog>(dialog);
}

}  // namespace zelmo
