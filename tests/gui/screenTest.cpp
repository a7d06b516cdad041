#include "tests/gui/screenTest.h"

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTest>

#include "screen/qtHost.h"
#include "volume/modGlobals.h"

namespace tessel {
namespace {

QAction* ActionOf(const QWidget& of, const QString& caption) {
    for (QAction* action : of.actions()) {
        if (action->text() == caption) return action;
    }
    return nullptr;
}

}  // namespace

ScreenTest::ScreenTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(At("settings")));
    UseToolkitDialogs = true;
    FillHost();
    Start();
    QObject::connect(&StepTimer, &QTimer::timeout, &StepTimer, [this] { RunSteps(); });
    StepTimer.start(1);
}

ScreenTest::~ScreenTest() {
    EXPECT_TRUE(Steps.empty()) << Steps.size()
                               << " expected dialogs or long operations did not appear";
    StepTimer.stop();
    End();
}

void ScreenTest::Start() {
    Form = std::make_unique<formTessel>();
    Screen = std::make_unique<MainScreen>(*Form);
    TheHost.ShowModal = [this](Window&) { Screen->ShowChooser(); };
    TheHost.ShowProgress = [this](std::optional<double> fraction) {
        Screen->ShowProgress(fraction);
    };
    Form->Form_Load();
    Screen->show();
    List = Screen->findChild<QListView*>();
    Display = Screen->findChild<DisplayView*>();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Screen.get()));
}

void ScreenTest::End() {
    Form->Form_Unload();
    Screen.reset();
    Form.reset();
}

void ScreenTest::RunSteps() {
    constexpr int kTimeout = 10000;  // ms
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) SinceStep.restart();
    if (!Steps.empty() && !Answering.contains(dialog) && Steps.front().IsReady()) {
        if (dialog != nullptr) Answering.insert(dialog);
        // Queued, because a timer does not fire again, for a dialog inside a dialog, while its slot
        // runs.
        QMetaObject::invokeMethod(
            &StepTimer,
            [this, dialog, act = std::move(Steps.front().Act)] {
                act();
                Answering.remove(dialog);
                SinceStep.restart();
            },
            Qt::QueuedConnection);
        Steps.pop_front();
    } else if (SinceStep.elapsed() > kTimeout) {
        auto* modal = qobject_cast<QDialog*>(dialog);
        ADD_FAILURE() << "unexpected dialog \"" << modal->windowTitle().toStdString() << '"';
        Steps.clear();
        modal->done(0);
    }
}

void ScreenTest::WhileBusy(std::function<void()> act) {
    Steps.push_back(
        {[this] { return Busy && Form->rtfDisplay.Text.LineCount() > 1000; }, std::move(act)});
}

void ScreenTest::AnswerFile(const std::string& typed) {
    OnDialog<QFileDialog>([typed](QFileDialog& dialog) {
        if (typed.empty()) return Key(Qt::Key_Escape);
        EXPECT_TRUE(dialog.findChild<QLineEdit*>("fileNameEdit")->hasFocus());
        Key(Qt::Key_A, Qt::ControlModifier);
        Type(QString::fromStdString(typed));
        Key(Qt::Key_Return);
    });
}

void ScreenTest::Click(QWidget& widget, QPoint at, bool twice) {
    QWindow* window = widget.window()->windowHandle();
    const QPoint point = widget.mapTo(widget.window(), at);
    if (twice) return QTest::mouseDClick(window, Qt::LeftButton, {}, point);
    QTest::mouseClick(window, Qt::LeftButton, {}, point);
}

void ScreenTest::Key(Qt::Key key, Qt::KeyboardModifiers with) {
    ASSERT_NE(QGuiApplication::focusWindow(), nullptr);
    QTest::keyClick(QGuiApplication::focusWindow(), key, with);
}

void ScreenTest::Type(const QString& text) {
    for (const QChar unit : text) {
        QTest::keyClick(QGuiApplication::focusWindow(), unit.toLatin1());
        QCoreApplication::processEvents();
    }
}

std::string ScreenTest::Menu(const QString& menu, const QString& entry) {
    QMenuBar& bar = *Screen->menuBar();
    QAction* title = ActionOf(bar, menu);
    Click(bar, bar.actionGeometry(title).center());
    QMenu& view = *title->menu();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.isVisible(); }));
    std::string entries;
    for (const QAction* action : view.actions()) {
        EXPECT_TRUE(action->shortcut().isEmpty());
        entries += (action->isEnabled() ? "" : "-") + action->text().toStdString() + '\n';
    }
    if (entry.isEmpty()) {
        Key(Qt::Key_Escape);
    } else {
        Click(view, view.actionGeometry(ActionOf(view, entry)).center());
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(view.isVisible());
    ActivateWindow();
    return entries;
}

void ScreenTest::ActivateWindow() {
    Screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Screen.get()));
}

void ScreenTest::OpenImage(const std::string& path) {
    AnswerFile(path);
    Menu("File", "Open");
    EXPECT_EQ(Title(), "FAT File System " + path);
}

QWidget& ScreenTest::The(const QString& name, const QWidget* in) const {
    for (QWidget* widget : (in != nullptr ? in : Screen.get())->findChildren<QWidget*>()) {
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        if (button != nullptr && button->text().remove('&') == name) return *widget;
        if (widget->accessibleDescription().startsWith(name)) return *widget;
    }
    throw std::invalid_argument("there is no " + name.toStdString());
}

bool ScreenTest::Hourglass() {
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

testing::AssertionResult ScreenTest::ScreenShowsText() {
    const TextDisplay& text = Form->rtfDisplay.Text;
    std::string expected = text.Lines(0, Display->VisibleLineCount() + 1);
    std::erase(expected, '\r');
    const std::string shown = Display->VisibleText().toStdString();
    return Same(shown, expected.substr(0, shown.size()));
}

}  // namespace tessel
