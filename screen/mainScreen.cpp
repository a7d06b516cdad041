#include "screen/mainScreen.h"

#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QResizeEvent>
#include <QScreen>
#include <QShortcut>
#include <QUrl>

#include "app/formTessel.h"
#include "screen/bindLists.h"
#include "screen/display/scale.h"
#include "screen/display/view.h"
#include "screen/progressLine.h"
#include "screen/qtHost.h"

namespace tessel {
namespace {

/// The approximate size of a desktop's window frame, in logical pixels.
constexpr int kFrameWidth = 8;
constexpr int kFrameHeight = 32;

/// The dragged file; nullopt for a folder, several files, or a file of another host.
std::optional<QString> DroppedFile(const QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    if (urls.size() != 1 || !urls.front().isLocalFile()) return std::nullopt;
    const QString path = QDir::cleanPath(urls.front().toLocalFile());
    return QFileInfo(path).isDir() ? std::nullopt : std::optional(path);
}

}  // namespace

MainScreen::MainScreen(formTessel& form)
    : Form(form), Inside(new QWidget(this)), Enabled(new EnabledStates(this)) {
    setCentralWidget(Inside);
    Inside->installEventFilter(this);
    BindMenu(form.mnuFile, *menuBar());
    BindMenu(form.mnuOptions, *menuBar());
    MakeHelpMenu();
    MakeControls();
    setAcceptDrops(true);
    // A message may be one of many that a long operation shows.
    OnMessageEsc = [&form] { form.cmdABORT.Press(); };
    BindCaption(form.Form, *this);
    layout()->setSizeConstraint(QLayout::SetNoConstraint);  // no minimum size
    resize(PixelsOf(form.Form.ScaleWidth),
           PixelsOf(form.Form.ScaleHeight) + menuBar()->sizeHint().height());
}

void MainScreen::MakeHelpMenu() {
    QMenu* menu = menuBar()->addMenu("Help");
    const auto* letter = new QShortcut(QKeySequence("Alt+H"), this);
    connect(letter, &QShortcut::activated, this,
            [this, menu] { menuBar()->setActiveAction(menu->menuAction()); });
    QAction* guide = menu->addAction("&Guide");
    guide->setShortcut(QKeySequence::HelpContents);
    connect(guide, &QAction::triggered, this, [this] {
        if (!Guide) Guide = std::make_unique<GuideScreen>();
        Guide->Show();
    });
    // Queued, because a screen reader's request to choose the entry must return before the box
    // waits for the user.
    connect(
        menu->addAction("&About Tessel"), &QAction::triggered, this,
        [this] {
            QMessageBox::about(this, "About Tessel",
                               QString("Tessel %1\n\nShows images of FAT12 and FAT16 disks and "
                                       "extracts files from them. It never writes to an image.")
                                   .arg(ProgramVersion()));
        },
        Qt::QueuedConnection);
}

MainScreen::~MainScreen() { OnMessageEsc = nullptr; }

void MainScreen::MakeControls() {
    QWidget* frame = BindFrame(Form.Frame1, Inside);
    frame->setAccessibleName("Display mode");
    std::vector<QWidget*> options;
    for (OptionButton& option : Form.optDisplay) {
        OptionView* view = BindOptionButton(option, frame);
        Enabled->Follow(option.Enabled, *view);
        options.push_back(view);
    }
    BindLabel(Form.lblVolumeID, "Volume label", Inside);
    BindLabel(Form.lblSystemID, "File system type", Inside);
    BindLabel(Form.lblVersion, "Version", Inside);
    BindLabel(Form.lblDirectory, "Current directory", Inside);

    auto* list = BindListBox(Form.listDIR, "Directory list", Inside);
    Display = new DisplayView(Form.rtfDisplay, Inside);
    DisplayView* const display = Display;
    Line = new ProgressLine(Inside);
    Form.rtfDisplay.Bounds.Observe([display, line = Line](const ControlBounds& at) {
        const QRect bounds = ToPixels(at);
        display->setGeometry(bounds);
        line->setGeometry(bounds.left(), bounds.top(), bounds.width(), ProgressLine::kHeight);
    });
    auto* stop = BindButton(Form.cmdABORT, Inside);
    auto* bootSector = BindButton(Form.cmdDisplayBootSector, Inside);
    auto* fat0 = BindButton(Form.cmdFat0, Inside);
    auto* root = BindButton(Form.cmdRoot, Inside);
    auto* directory = BindButton(Form.cmdDirectory, Inside);

    // STOP gives the focus back when the operation has ended.
    Form.cmdABORT.Enabled.Observe([this, stop, list](bool on) {
        if (!on && stop->hasFocus()) Enabled->FocusNext(*list);
        stop->setEnabled(on);
    });
    Enabled->Follow(Form.listDIR.Enabled, *list);
    Enabled->Follow(Form.cmdDisplayBootSector.Enabled, *bootSector);
    Enabled->Follow(Form.cmdFat0.Enabled, *fat0);
    Enabled->Follow(Form.cmdRoot.Enabled, *root);
    Enabled->Follow(Form.cmdDirectory.Enabled, *directory);

    QWidget* before = list;
    for (QWidget* next : {static_cast<QWidget*>(display), static_cast<QWidget*>(stop),
                          static_cast<QWidget*>(bootSector), static_cast<QWidget*>(fat0),
                          static_cast<QWidget*>(root), options[3], options[2], options[1],
                          options[0], static_cast<QWidget*>(directory)}) {
        setTabOrder(before, next);
        before = next;
    }
}

void MainScreen::ShowChooser() {
    if (!Chooser) Chooser = std::make_unique<ChooserScreen>(*Form.Chooser, this);
    Chooser->ShowModal();
}

void MainScreen::ShowProgress(std::optional<double> fraction) { Line->Follow(fraction); }

void MainScreen::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (Sized) return;
    Sized = true;
    // The menu bar's height is known only now; some desktops show it outside the window.
    layout()->activate();
    const QSize wanted(PixelsOf(Form.Form.ScaleWidth), PixelsOf(Form.Form.ScaleHeight));
    const QSize available = screen()->availableSize() - QSize(kFrameWidth, kFrameHeight);
    resize((size() + wanted - Inside->size()).boundedTo(available));
    FollowSize();
}

void MainScreen::FollowSize() {
    Form.Form.ScaleWidth = TwipsOf(Inside->width());
    Form.Form.ScaleHeight = TwipsOf(Inside->height());
    RaiseEvent(Form.Form.Resize);
}

bool MainScreen::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Inside && event->type() == QEvent::Resize && Sized) FollowSize();
    return QMainWindow::eventFilter(watched, event);
}

void MainScreen::closeEvent(QCloseEvent* event) {
    RaiseEvent(Form.Form.CloseBox);
    // The record ends the program itself. A close that has to wait for a long operation is ignored;
    // ignoring any other would block the end of the user's session.
    event->setAccepted(!Form.ExitIsPending());
}

void MainScreen::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        Form.cmdABORT.Press();
    } else if (!Display->RunViewCommand(event)) {
        QMainWindow::keyPressEvent(event);
    }
}

void MainScreen::dragEnterEvent(QDragEnterEvent* event) {
    if (DroppedFile(*event)) event->acceptProposedAction();
}

void MainScreen::dropEvent(QDropEvent* event) {
    const std::optional<QString> path = DroppedFile(*event);
    if (!path) return;
    event->acceptProposedAction();
    OpenDropped(QDir::toNativeSeparators(*path));
}

void MainScreen::OpenDropped(const QString& path) {
    // Queued, so that the drag ends for its source first: opening may show a message that waits for
    // the user.
    QMetaObject::invokeMethod(
        this,
        [this, path] {
            activateWindow();
            Form.DropImage(path.toStdString(), QFileInfo(path).fileName().toStdString());
        },
        Qt::QueuedConnection);
}

}  // namespace tessel
