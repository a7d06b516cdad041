#include "screen/qtHost.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QSettings>

#include "platform/host.h"
#include "screen/bindControls.h"
#include "screen/fileDialog.h"
#include "screen/inputDialog.h"

namespace tessel {

bool UseToolkitDialogs = false;

namespace {

constexpr const char* kStoreName = "Tessel";

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
    const NormalPointerScope pause;
    QMessageBox box(DialogOwner());
    box.setWindowTitle(ToQt(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(BreakLongWords(ToQt(text).replace("\r\n", "\n")));
    box.setStandardButtons(QMessageBox::Ok);
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addItem(new QSpacerItem(TitleWidth(box), 0), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    box.exec();
}

QString SettingKey(const std::string& section, const std::string& key) {
    return ToQt(section) + '/' + ToQt(key);
}

std::string ReadSetting(const std::string& section, const std::string& key,
                        const std::string& fallback) {
    QSettings store(kStoreName, kStoreName);
    store.setFallbacksEnabled(false);
    return store.value(SettingKey(section, key), ToQt(fallback)).toString().toStdString();
}

void WriteSetting(const std::string& section, const std::string& key, const std::string& text) {
    QSettings store(kStoreName, kStoreName);
    store.setValue(SettingKey(section, key), ToQt(text));
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

QString BreakLongWords(QString text) {
    constexpr QChar kMayBreak(0x200B);
    constexpr int kLongWord = 60;
    int word = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        word = text[i].isSpace() ? 0 : word + 1;
        if (word > kLongWord && !text[i].isLowSurrogate()) {
            text.insert(i, kMayBreak);
            word = 0;
        }
    }
    return text;
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
    TheHost.Settings = {ReadSetting, WriteSetting};
}

}  // namespace tessel
