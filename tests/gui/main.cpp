#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (const int points = qEnvironmentVariableIntValue("TEST_FONT_POINTS"); points > 0) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    return RUN_ALL_TESTS();
}
