#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFileOpenEvent>
#include <QFont>
#include <QIcon>
#include <QTimer>

#include "app/formTessel.h"
#include "platform/process.h"
#include "screen/commandLine.h"
#include "screen/mainScreen.h"
#include "screen/qtHost.h"

namespace {

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/tessel-%1.png").arg(size));
    }
    return icon;
}

/// The application; macOS passes a file to open as an event instead of an argument.
class Application : public QApplication {
  public:
    using QApplication::QApplication;
    std::function<void(const QString&)> OpenFile{};

  protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::FileOpen || !OpenFile) return QApplication::event(event);
        OpenFile(QDir::toNativeSeparators(static_cast<QFileOpenEvent*>(event)->file()));
        return true;
    }
};

/// Windows maps "MS Shell Dlg" to an installed font; elsewhere (Wine) it stays a mere name, for
/// which the toolkit takes any font, even one with serifs.
void ReplaceMappedFonts() {
    for (const char* widgets : {"", "QMenu", "QMenuBar", "QMessageBox"}) {
        const char* const name = *widgets == '\0' ? nullptr : widgets;
        QFont font = QApplication::font(name);
        if (!font.family().startsWith("MS Shell Dlg")) continue;
        font.setFamilies({"Tahoma", "Microsoft Sans Serif", "Arial", "Liberation Sans"});
        QApplication::setFont(font, name);
    }
}

}  // namespace

int main(int argc, char* argv[]) {
    constexpr int kUsageError = 2;
    tessel::PrepareProcess();
    QCoreApplication::setOrganizationName("Tessel");
    QCoreApplication::setApplicationName("Tessel");
    QCoreApplication::setApplicationVersion(tessel::ProgramVersion());
    if (tessel::AsksForText(argc, argv)) {
        const QCoreApplication textOnly(argc, argv);
        return tessel::ImageFromCommandLine() ? 0 : kUsageError;
    }
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QGuiApplication::setDesktopFileName("tessel");
    Application application(argc, argv);
    const std::optional<QString> image = tessel::ImageFromCommandLine();
    if (!image) return kUsageError;
    QApplication::setWindowIcon(ProgramIcon());
    ReplaceMappedFonts();

    tessel::FillHost();
    tessel::formTessel form;
    tessel::MainScreen screen(form);
    tessel::TheHost.ShowModal = [&screen](tessel::Window&) { screen.ShowChooser(); };
    tessel::TheHost.ShowProgress = [&screen](std::optional<double> fraction) {
        screen.ShowProgress(fraction);
    };
    application.OpenFile = [&screen](const QString& path) { screen.OpenDropped(path); };
    form.Form_Load();
    screen.show();
    if (!image->isEmpty()) screen.OpenDropped(*image);
    const int status = QApplication::exec();
    form.Form_Unload();
    return status;
}
