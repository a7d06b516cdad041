#include "screen/guideScreen.h"

#include <QKeyEvent>
#include <QScreen>

namespace tessel {

GuideScreen::GuideScreen() {
    setWindowTitle("Tessel user guide");
    setAccessibleName(windowTitle());
    document()->setDocumentMargin(16);
    setSource(QUrl("qrc:/docs/guide.md"));
    // Wide enough for its pictures.
    resize(QSize(880, 700).boundedTo(screen()->availableSize()));
}

void GuideScreen::Show() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void GuideScreen::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QTextBrowser::keyPressEvent(event);
    }
}

}  // namespace tessel
