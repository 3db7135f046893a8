#pragma once

#include <QFileDialog>
#include <QFileInfo>
#include <QString>

namespace zelmo {

struct FileQuestion;

/// Asks for an existing file. What the user types is taken as it stands where there is such a
/// file; else a name without an extension gets the question's default one. No larger than the
/// screen.
class ExistingFileDialog : public QFileDialog {
public:
    /// Begins in `folder`.
    ExistingFileDialog(QWidget* parent, const FileQuestion& question, const QString& folder);

protected:
    // An exception ends the program: none may pass through the toolkit.
    void accept() noexcept override;
    void showEvent(QShowEvent* event) noexcept override;

private:
    QFileInfo Typed() const;
    void OfferTypedName() noexcept;

    QString defaultExtension_;
};

}  // namespace zelmo
