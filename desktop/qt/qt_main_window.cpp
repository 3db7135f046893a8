#include "desktop/qt/qt_main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
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
#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/data_files.h"
#include "base/text.h"
#include "desktop/picture_maker.h"
#include "desktop/qt/picture_view.h"
#include "desktop/qt/status_field_label.h"

namespace zelmo {

namespace {

constexpr int windowWidth = 1200;
constexpr int windowHeight = 800;

/// The current directory comes first: there the user can bring data files of his own.
std::vector<std::filesystem::path> DataFolders() {
    auto folders = InstalledDataFolders();
    folders.insert(folders.begin(), std::filesystem::path());
    return folders;
}

QString ToQString(const std::wstring& text) {
    return QString::fromStdWString(text);
}

}  // namespace

QtMainWindow::QtMainWindow() : logic_(*this), dialogFolder_(QDir::currentPath()) {
    CreateViews();
    CreateStatusBar();
    CreateMenuBar();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    resize(std::min(windowWidth, screen.width()), std::min(windowHeight, screen.height()));
    move(screen.center() - rect().center());
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
    const auto add = [this](MenuEntry entry, const char* text, void (MainWindow::*command)()) {
        QAction* action = menuBar()->addAction(QString::fromLatin1(text));
        connect(action, &QAction::triggered, this,
                [this, command]() noexcept { (logic_.*command)(); });
        menu_[entry] = action;
    };
    menuBar()->setNativeMenuBar(false);
    add(MenuEntry::SaveImages, "&Save images", &MainWindow::HandleSaveImages);
    add(MenuEntry::RunProcess, "&Run Process", &MainWindow::HandleRun);
    add(MenuEntry::Stop, "&Stop", &MainWindow::HandleStop);
    add(MenuEntry::LoadGds, "&Load GDSII", &MainWindow::HandleLoadGds);
    add(MenuEntry::About, "&About", &MainWindow::HandleAbout);
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

void QtMainWindow::LayOut() {
    const int width = centralWidget()->width();
    const int height = centralWidget()->height();
    const int all = height + statusBar()->height();
    const int pictureHeight = static_cast<int>(static_cast<float>(all) * 0.6f);
    pictureView_->setGeometry(0, 0, width, pictureHeight);
    consoleView_->setGeometry(0, pictureHeight, width, height - pictureHeight);
}

// The menu and the status bar take what they need; the rest changes with the window's size, the
// font and the desktop's style.
bool QtMainWindow::eventFilter(QObject* watched, QEvent* event) noexcept {
    if (watched == centralWidget() && event->type() == QEvent::Resize) {
        LayOut();
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
    if (event->key() == Qt::Key_Left) {
        logic_.HandleLeftKey();
    } else if (event->key() == Qt::Key_Right) {
        logic_.HandleRightKey();
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
    setWindowTitle(ToQString(text));
}

void QtMainWindow::SetNarrowCaption(const std::string& text) {
    setWindowTitle(ToQString(WidenBytes(text)));
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
    QFileDialog dialog(this, ToQString(question.title), dialogFolder_,
                       ToQString(question.filterName));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(ToQString(question.defaultExtension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
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
}

void QtMainWindow::Quit() {
    // Not quit(), which would ask the window again whether it may be closed.
    QCoreApplication::exit(0);
}

}  // namespace zelmo
