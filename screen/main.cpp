#include <QApplication>
#include <QIcon>

#include "app/formTessel.h"
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

}  // namespace

int main(int argc, char* argv[]) {
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Tessel");
    QCoreApplication::setApplicationName("Tessel");
    QCoreApplication::setApplicationVersion(tessel::ProgramVersion());
    QGuiApplication::setDesktopFileName("tessel");
    QApplication::setWindowIcon(ProgramIcon());

    tessel::FillHost();
    tessel::formTessel form;
    tessel::MainScreen screen(form);
    tessel::TheHost.ShowModal = [&screen](tessel::Window&) { screen.ShowChooser(); };
    tessel::TheHost.ShowProgress = [&screen](std::optional<double> share) {
        screen.ShowProgress(share);
    };
    form.Form_Load();
    screen.show();
    const int status = QApplication::exec();
    form.Form_Unload();
    return status;
}
