#include "screen/qtHost.h"

#include <QApplication>
#include <QFontMetrics>
#include <QSettings>
#include <memory>

#include "platform/host.h"
#include "screen/bindControls.h"
#include "screen/fileDialog.h"
#include "screen/inputDialog.h"
#include "screen/messageBox.h"
#include "screen/settingsStore.h"

namespace tessel {

bool UseToolkitDialogs = false;
std::function<void()> OnMessageEsc;

namespace {

/// The pointer shape: at most one override cursor, however often the hourglass is requested.
struct Pointer {
    bool Hourglass = false;
    int Dialogs = 0;
    bool Shown = false;

    void Follow() {
        const bool show = Hourglass && Dialogs == 0;
        if (show == Shown) return;
        Shown = show;
        if (show) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else {
            QApplication::restoreOverrideCursor();
        }
    }
};
Pointer ThePointer;

void ShowMessage(const std::string& text, const std::string& title) {
    bool closedByEsc = false;
    ShowBox(ToQt(title), ToQt(text), QMessageBox::NoIcon, QMessageBox::Ok, QMessageBox::Ok,
            &closedByEsc);
    if (closedByEsc && OnMessageEsc) OnMessageEsc();
}

}  // namespace

NormalPointerScope::NormalPointerScope() {
    ++ThePointer.Dialogs;
    ThePointer.Follow();
}

NormalPointerScope::~NormalPointerScope() {
    --ThePointer.Dialogs;
    ThePointer.Follow();
}

int TitleWidth(const QWidget& dialog) {
    // Most desktops write titles in bold, with an icon at one end and up to three buttons at the
    // other.
    constexpr int kIconAndButtons = 200;
    QFont bold = dialog.font();
    bold.setBold(true);
    return QFontMetrics(bold).horizontalAdvance(dialog.windowTitle()) + kIconAndButtons;
}

QWidget* DialogOwner() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (QWidget* active = QApplication::activeWindow()) return active;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window) return window;
    }
    return nullptr;
}

void FillHost() {
    TheHost.MessageBox = ShowMessage;
    TheHost.InputBox = AskText;
    TheHost.ShowOpen = [](CommonDialog& dialog) { ShowFileDialog(dialog, false); };
    TheHost.ShowSave = [](CommonDialog& dialog) { ShowFileDialog(dialog, true); };
    TheHost.DoEvents = [] { QCoreApplication::processEvents(); };
    TheHost.SetPointer = [](bool hourglass) {
        ThePointer.Hourglass = hourglass;
        ThePointer.Follow();
    };
    // Not quit(), which first asks the windows to close: closing is what calls this.
    TheHost.EndProgram = [] { QCoreApplication::exit(0); };
    const auto settings = std::make_shared<SettingsStorage>();
    TheHost.Settings = {
        .Read = [settings](
                    const std::string& section, const std::string& key,
                    const std::string& fallback) { return settings->Read(section, key, fallback); },
        .Write = [settings](const std::string& section, const std::string& key,
                            const std::string& text) { settings->Write(section, key, text); },
        .Refresh = [settings] { settings->Refresh(); }};
    settings->Refresh();
    // The toolkit's file dialog would note the visited folders in a file of its own. Where its
    // settings are files, they now lead to a place where none can be created.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, ":/none");
}

}  // namespace tessel
