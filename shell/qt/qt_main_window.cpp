#include "shell/qt/qt_main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
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

#include "shell/data_files.h"
#include "shell/picture_maker.h"
#include "shell/qt/picture_view.h"
#include "shell/text.h"

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

QtMainWindow::QtMainWindow() : logic_(*this) {
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
    pictureView_ = new PictureView(centralWidget(), logic_.Pictures(), *this);
    consoleView_ = new QPlainTextEdit(centralWidget());
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    consoleView_->setFont(font);
    console_ = std::make_unique<TextViewConsole>(*consoleView_);
}

void QtMainWindow::CreateStatusBar() {
    // Four fields with their right edges at 80, 600, 680 and the window's own.
    const std::pair<const char*, int> fields[] = {
        {"GDS file:", 80}, {"Not loaded", 520}, {"Process file:", 80}, {"Not loaded", 520}};
    QLabel* labels[4] = {};
    for (int i = 0; i < 4; ++i) {
        const auto& [text, width] = fields[i];
        labels[i] = new QLabel(QString::fromLatin1(text), this);
        labels[i]->setTextFormat(Qt::PlainText);
        labels[i]->setMinimumWidth(80);
        labels[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        statusBar()->addWidget(labels[i], width);
    }
    status_ = {{StatusField::GdsFile, labels[1]}, {StatusField::ProcessFile, labels[3]}};
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
        return Fail("Could not initialize graphics");
    }
    const auto folders = DataFolders();
    if (!logic_.LoadColors(FindDataFile(folders, "colors.txt"))) {
        return Fail("Could not load color file or color file contains errors. Redo installation.");
    }
    logic_.FinishCreation(CreateGlPictureMaker(FindDataFile(folders, "surface.shader"),
                                               FindDataFile(folders, "point.shader"),
                                               console_.get()));
    return true;
}

bool QtMainWindow::Fail(const QString& message) {
    QMessageBox(QMessageBox::NoIcon, "Zelmo", message, QMessageBox::Ok, this).exec();
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

void QtMainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    LayOut();
}

void QtMainWindow::closeEvent(QCloseEvent* event) {
    // The logic decides; during a run the window stays until the step has ended.
    event->ignore();
    logic_.HandleClose();
}

// A key without a picture to show raises an error that ends the program.
void QtMainWindow::keyPressEvent(QKeyEvent* event) {
    const auto handle = [this](int key) noexcept {
        if (key == Qt::Key_Left) {
            logic_.HandleLeftKey();
        } else if (key == Qt::Key_Right) {
            logic_.HandleRightKey();
        }
    };
    handle(event->key());
}

void QtMainWindow::wheelEvent(QWheelEvent* event) {
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
    pictureView_->repaint();
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

void QtMainWindow::SetStatusText(StatusField field, const std::wstring& text) {
    status_.at(field)->setText(ToQString(text));
}

std::optional<std::filesystem::path> QtMainWindow::AskForFile(const FileQuestion& question) {
    QFileDialog dialog(this, ToQString(question.title));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilter(ToQString(question.filterName));
    dialog.setDefaultSuffix(ToQString(question.defaultExtension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return PathFromText(dialog.selectedFiles().constFirst().toStdWString());
}

void QtMainWindow::ShowMessage(const std::wstring& text, const std::wstring& caption) {
    QMessageBox(QMessageBox::NoIcon, ToQString(caption), ToQString(text), QMessageBox::Ok, this)
        .exec();
}

void QtMainWindow::Quit() {
    QCoreApplication::quit();
}

}  // namespace zelmo
