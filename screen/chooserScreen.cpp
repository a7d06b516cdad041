#include "screen/chooserScreen.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QShortcut>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "dialogs/dialogGetDirectory.h"
#include "screen/bindControls.h"
#include "screen/bindLists.h"
#include "screen/display/scale.h"
#include "screen/qtHost.h"

namespace tessel {
namespace {

/// A stored position in logical pixels, 0 if it is not a number; clamped to a limit.
int ToPixel(float twips) {
    constexpr float kMaxPixel = 100000;
    if (!std::isfinite(twips)) return 0;
    return static_cast<int>(std::clamp(twips / kTwipsPerPixel, -kMaxPixel, kMaxPixel));
}

/// The position nearest to `wanted` at which a window of this size is within a screen.
QPoint OnScreen(QPoint wanted, QSize size) {
    const QScreen* screen = QGuiApplication::screenAt(wanted);
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    return {std::max(area.left(), std::min(wanted.x(), area.right() + 1 - size.width())),
            std::max(area.top(), std::min(wanted.y(), area.bottom() + 1 - size.height()))};
}

}  // namespace

ChooserScreen::ChooserScreen(dialogGetDirectory& chooser, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                          Qt::MSWindowsFixedSizeDialogHint),
      Chooser(chooser) {
    setFixedSize(PixelsOf(chooser.Form.ScaleWidth), PixelsOf(chooser.Form.ScaleHeight));
    BindCaption(chooser.Form, *this);
    // In tab order.
    BindButton(chooser.OKButton, this);
    BindButton(chooser.CancelButton, this);
    Drives = BindDriveList(chooser.driveDriveBox, this);
    Folders = BindFolderList(chooser.dirDirBox, this);
    Line = BindTextBox(chooser.txtDirName, "Folder", this);
    Bubble = new QLabel(this);
    Bubble->setFont(Line->font());
    Bubble->setTextFormat(Qt::PlainText);
    Bubble->setFrameStyle(QFrame::Box | QFrame::Plain);
    Bubble->setAutoFillBackground(true);
    Bubble->setPalette(QToolTip::palette());
    Bubble->setForegroundRole(QPalette::ToolTipText);
    Bubble->setBackgroundRole(QPalette::ToolTipBase);
    Bubble->setMargin(3);
    Bubble->hide();
    connect(Line, &QLineEdit::textChanged, this, [this] { FollowLine(); });
    auto* newFolder = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N), this);
    connect(newFolder, &QShortcut::activated, Folders, &FolderView::AskNewFolder);
    chooser.Form.Visible.Observe([this](bool visible) {
        if (!visible && isVisible()) done(0);
    });
}

void ChooserScreen::ShowModal() {
    const NormalPointerScope pause;
    FillDriveList(Chooser.driveDriveBox, *Drives);
    Folders->Follow();
    move(OnScreen({ToPixel(Chooser.Form.Left), ToPixel(Chooser.Form.Top)}, size()));
    Chooser.Form.Visible = true;
    exec();
    Chooser.Form.Visible = false;  // also if the program ends while it is open
}

void ChooserScreen::FollowLine() {
    const QString folder = ToQt(Chooser.dirDirBox.Path());
    const bool differs = Line->text() != folder;
    const QString words = QStringLiteral("OK takes %1, the one opened above");
    const QFontMetrics metrics = Bubble->fontMetrics();
    const int available = Line->width() - metrics.horizontalAdvance(words) - 2 * Bubble->margin();
    Bubble->setText(words.arg(metrics.elidedText(folder, Qt::ElideMiddle, available)));
    Bubble->adjustSize();
    Bubble->move(Line->x(), Line->y() - Bubble->height() - 2);
    Bubble->setVisible(differs);
    // A screen reader speaks a description that changes at the control that has the focus.
    Line->setAccessibleDescription(differs ? words.arg(folder) : QString());
}

void ChooserScreen::closeEvent(QCloseEvent* event) {
    event->ignore();  // the record hides the window
    RaiseEvent(Chooser.Form.CloseBox);
}

void ChooserScreen::FollowPosition() {
    if (!isVisible() || !Chooser.Form.Normal) return;
    Chooser.Form.Left = static_cast<float>(x() * kTwipsPerPixel);
    Chooser.Form.Top = static_cast<float>(y() * kTwipsPerPixel);
}

void ChooserScreen::moveEvent(QMoveEvent* event) {
    QDialog::moveEvent(event);
    FollowPosition();
}

void ChooserScreen::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        Chooser.Form.Normal = !isMinimized() && !isMaximized() && !isFullScreen();
    }
}

}  // namespace tessel
