#include "desktop/qt/qt_main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/data_files.h"
#include "base/text.h"
#include "desktop/picture_maker.h"
#include "desktop/qt/existing_file_dialog.h"
#include "desktop/qt/letter_menu_bar.h"
#include "desktop/qt/picture_view.h"
#include "desktop/qt/status_field_label.h"

namespace zelmo {

namespace {

constexpr QSize outerSize(1200, 800);

/// The current directory comes first: there the user can bring data files of his own.
std::vector<std::filesystem::path> DataFolders() {
    auto folders = InstalledDataFolders();
    folders.insert(folders.begin(), std::filesystem::path());
    return folders;
}

QString ToQString(const std::wstring& text) {
    return QString::fromStdWString(text);
}

/// A caption as the toolkit takes it. In place of an empty one it would show the program's name,
/// and "[*]" is its mark for a document with changes, unless it stands twice.
QString ToolkitCaption(const std::wstring& text) {
    return text.empty() ? QString(" ") : ToQString(text).replace("[*]", "[*][*]");
}

}  // namespace

QtMainWindow::QtMainWindow() : logic_(*this), dialogFolder_(QDir::currentPath()) {
    CreateViews();
    CreateStatusBar();
    CreateMenuBar();
    SetCaption(std::wstring());
    create();
    windowHandle()->installEventFilter(this);
    Place();
    setFocusPolicy(Qt::StrongFocus);
    setWindowIcon(QIcon(ToQString(PathText(FindDataFile(DataFolders(), "zelmo.ico")))));
}

QtMainWindow::~QtMainWindow() = default;

void QtMainWindow::CreateViews() {
    setCentralWidget(new QWidget(this));
    centralWidget()->setMinimumSize(400, 300);
    centralWidget()->installEventFilter(this);
    pictureView_ = new PictureView(centralWidget(), logic_.Pictures(), *this);
    pictureView_->setObjectName("picture");
    consoleView_ = new QPlainTextEdit(centralWidget());
    consoleView_->setObjectName("console");
    consoleView_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    console_ = std::make_unique<TextViewConsole>(*consoleView_);
}

void QtMainWindow::CreateStatusBar() {
    // Four fields with their right edges at 80, 600, 680 and the window's own.
    const auto add = [this](const char* text, int width) {
        auto* label = new StatusFieldLabel(this);
        label->setText(QString::fromLatin1(text));
        label->setMinimumWidth(std::max(80, label->sizeHint().width()));
        statusBar()->addWidget(label, width);
        return label;
    };
    add("GDS file:", 80);
    status_[StatusField::GdsFile] = add("Not loaded", 520);
    add("Process file:", 80);
    status_[StatusField::ProcessFile] = add("Not loaded", 520);
}

void QtMainWindow::CreateMenuBar() {
    auto* bar = new LetterMenuBar(this);
    bar->setNativeMenuBar(false);
    setMenuBar(bar);
    const auto add = [this](MenuEntry entry, const char* text, void (MainWindowLogic::*command)()) {
        QAction* action = menuBar()->addAction(QString::fromLatin1(text));
        connect(action, &QAction::triggered, this,
                [this, command]() noexcept { (logic_.*command)(); });
        menu_[entry] = action;
    };
    add(MenuEntry::SaveImages, "&Save images", &MainWindowLogic::HandleSaveImages);
    add(MenuEntry::RunProcess, "&Run Process", &MainWindowLogic::HandleRun);
    add(MenuEntry::Stop, "&Stop", &MainWindowLogic::HandleStop);
    add(MenuEntry::LoadGds, "&Load GDSII", &MainWindowLogic::HandleLoadGds);
    add(MenuEntry::About, "&About", &MainWindowLogic::HandleAbout);
}

bool QtMainWindow::Prepare() {
    std::string reason;
    context_ = CreateOffscreenGlContext(reason);
    if (!context_) {
        return Fail(L"Could not initialize graphics");
    }
    const auto folders = DataFolders();
    if (!logic_.LoadColors(FindDataFile(folders, "colors.txt"))) {
        return Fail(L"Could not load color file or color file contains errors. Redo installation.");
    }
    logic_.FinishCreation(CreateGlPictureMaker(FindDataFile(folders, "surface.shader"),
                                               FindDataFile(folders, "point.shader"),
                                               console_.get()));
    return true;
}

bool QtMainWindow::Fail(const std::wstring& message) {
    ShowMessage(message, L"Zelmo");
    return false;
}

void QtMainWindow::Place() {
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const QSize size = outerSize.boundedTo(screen.size());
    const QPoint corner((screen.width() - size.width()) / 2, (screen.height() - size.height()) / 2);
    const QRect outer(screen.topLeft() + corner, size);
    setGeometry(outer.marginsRemoved(windowHandle()->frameMargins()));
}

void QtMainWindow::LayOut() {
    const int width = centralWidget()->width();
    const int height = centralWidget()->height();
    const int clientHeight = height + statusBar()->height();
    const int pictureHeight = static_cast<int>(static_cast<float>(clientHeight) * 0.6f);
    pictureView_->setGeometry(0, 0, width, pictureHeight);
    consoleView_->setGeometry(0, pictureHeight, width, height - pictureHeight);
}

bool QtMainWindow::eventFilter(QObject* watched, QEvent* event) noexcept {
    if (watched == centralWidget() && event->type() == QEvent::Resize) {
        // The menu and the status bar take what they need; the rest changes with the window's
        // size, the font and the desktop's style.
        LayOut();
    } else if (watched == windowHandle() && event->type() == QEvent::Expose && !framed_ &&
               windowHandle()->isExposed()) {
        // The frame is the window manager's, and is known once the window stands on the screen.
        framed_ = true;
        Place();
    }
    return QMainWindow::eventFilter(watched, event);
}

void QtMainWindow::closeEvent(QCloseEvent* event) noexcept {
    // The logic decides; during a run the window stays until the step has ended.
    event->ignore();
    logic_.HandleClose();
}

// A key without a picture to show raises an error that ends the program.
void QtMainWindow::keyPressEvent(QKeyEvent* event) noexcept {
    if (event->modifiers().testFlag(Qt::AltModifier)) {
        event->ignore();  // the desktop's and the menu's
    } else if (event->key() == Qt::Key_Left) {
        logic_.HandleLeftKey();
    } else if (event->key() == Qt::Key_Right) {
        logic_.HandleRightKey();
    } else if (event->matches(QKeySequence::Copy)) {
        // The console's own menu names these keys, but the console never has the keyboard.
        consoleView_->copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        consoleView_->selectAll();
    }
}

void QtMainWindow::wheelEvent(QWheelEvent* event) noexcept {
    // The wheel scrolls the console, wherever the pointer stands.
    QCoreApplication::sendEvent(consoleView_->viewport(), event);
}

void QtMainWindow::StartThread(std::function<void()> body) {
    std::thread(std::move(body)).detach();
}

void QtMainWindow::SendStepDone(const ProcessStep& step) {
    QMetaObject::invokeMethod(
        this, [this, &step]() noexcept { logic_.RunStepDone(step); }, Qt::BlockingQueuedConnection);
}

std::uint64_t QtMainWindow::ThreadNumber() const {
    return std::hash<std::thread::id>()(std::this_thread::get_id());
}

void QtMainWindow::RepaintPicture() {
    pictureView_->repaint();
}

void QtMainWindow::RepaintWindow() {
    repaint();
    pictureView_->repaint();  // opaque, so the window leaves it out
}

void QtMainWindow::SetCaption(const std::wstring& text) {
    setWindowTitle(ToolkitCaption(text));
}

void QtMainWindow::SetNarrowCaption(const std::string& text) {
    SetCaption(WidenBytes(text));
}

void QtMainWindow::EnableMenuEntry(MenuEntry entry, bool enabled) {
    menu_.at(entry)->setEnabled(enabled);
}

void QtMainWindow::RedrawMenu() {
    menuBar()->repaint();
}

void QtMainWindow::SetStatusText(StatusField field, const std::wstring& text) {
    status_.at(field)->setText(ToQString(text));
}

std::optional<std::filesystem::path> QtMainWindow::AskForFile(const FileQuestion& question) {
    ExistingFileDialog dialog(this, question, dialogFolder_);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    activateWindow();  // without a window manager nobody else gives the keyboard back
    if (!accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    const QString file = dialog.selectedFiles().constFirst();
    dialogFolder_ = QFileInfo(file).absolutePath();
    return PathFromText(file.toStdWString());
}

void QtMainWindow::ShowMessage(const std::wstring& text, const std::wstring& caption) {
    QMessageBox box(QMessageBox::NoIcon, ToQString(caption), ToQString(text), QMessageBox::Ok,
                    this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    activateWindow();  // without a window manager nobody else gives the keyboard back
}

void QtMainWindow::Quit() {
    // Not quit(), which would ask the window again whether it may be closed.
    QCoreApplication::exit(0);
}

}  // namespace zelmo
