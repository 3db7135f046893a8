#include "desktop/qt/existing_file_dialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QWindow>

#include "desktop/platform.h"

namespace zelmo {

ExistingFileDialog::ExistingFileDialog(QWidget* parent, const FileQuestion& question,
                                       const QString& folder)
    : QFileDialog(parent, QString::fromStdWString(question.title), folder,
                  QString::fromStdWString(question.filterName)),
      defaultExtension_(QString::fromStdWString(question.defaultExtension)) {
    setFileMode(QFileDialog::ExistingFile);
    // With a default suffix the toolkit would add it to every name without one while it is typed,
    // and find no file where one bears just that name.
    if (const auto* field = findChild<QLineEdit*>("fileNameEdit")) {
        connect(field, &QLineEdit::textChanged, this, [this] { OfferTypedName(); });
    } else {
        setDefaultSuffix(defaultExtension_);  // a dialog of the desktop's own
    }
}

QFileInfo ExistingFileDialog::Typed() const {
    return QFileInfo(selectedFiles().value(0));
}

// The toolkit offers to open only what it lists: no name without its extension, no file of another
// kind.
void ExistingFileDialog::OfferTypedName() noexcept {
    const QFileInfo typed = Typed();
    const bool extends = typed.suffix().isEmpty() && !typed.exists();
    const QString name = typed.filePath() + (extends ? "." + defaultExtension_ : QString());
    const auto* buttons = findChild<QDialogButtonBox*>();
    if (buttons != nullptr && QFileInfo(name).isFile()) {
        buttons->button(QDialogButtonBox::Open)->setEnabled(true);
    }
}

void ExistingFileDialog::accept() noexcept {
    const QString before = defaultSuffix();
    if (!Typed().exists()) {
        setDefaultSuffix(defaultExtension_);
    }
    QFileDialog::accept();
    if (isVisible()) {
        setDefaultSuffix(before);  // a folder was entered, or there is no such file
    }
}

void ExistingFileDialog::showEvent(QShowEvent* event) noexcept {
    // The frame is not there yet; it will be like that of the window behind.
    const QWindow* behind = parentWidget()->window()->windowHandle();
    const QMargins frame = behind != nullptr ? behind->frameMargins() : QMargins();
    const QSize largest = screen()->availableGeometry().marginsRemoved(frame).size();
    resize(size().boundedTo(largest));
    QFileDialog::showEvent(event);  // finds the place for the size
}

}  // namespace zelmo
