#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QListView>
#include <QTimer>
#include <deque>

#include "app/formTessel.h"
#include "screen/display/view.h"
#include "screen/mainScreen.h"
#include "tests/fixture.h"

namespace tessel {

/// A case in front of the program's real window and the toolkit's own dialogs. Mouse and keys go
/// through the windows, so what is disabled, covered or without the keyboard gets nothing of them.
class ScreenTest : public TesselTest {
  protected:
    ScreenTest();
    ~ScreenTest() override;
    /// Starts the program, and ends it as main does behind its event loop; the settings last.
    void Start();
    void End();

    // --- The hand. -------------------------------------------------------------------------------
    static void Click(QWidget& widget, bool twice = false) {
        Click(widget, widget.rect().center(), twice);
    }
    static void Click(QWidget& widget, QPoint at, bool twice = false);
    void ClickLine(int line, bool twice = false) { Click(*List->viewport(), LineAt(line), twice); }
    static void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier);
    static void Type(const QString& text);
    /// Opens a menu, and clicks an entry of it or leaves it. Returns its entries, a line each, "-"
    /// in front of what is disabled.
    std::string Menu(const QString& menu, const QString& entry = {});
    /// Without a desktop nobody hands the keyboard back when a menu or a dialog has gone.
    void TakeKeyboard();
    /// Opens an image through the menu and the dialog.
    void OpenImage(const std::string& path);

    /// What the person does once the next dialog of this type has the keyboard; dialogs come in the
    /// order in which they are told of. One that nobody waits for is a failure.
    template <class Dialog>
    void OnDialog(std::function<void(Dialog&)> act) {
        Steps.push_back({[] { return Modal<Dialog>() != nullptr; },
                         [act = std::move(act)] { act(*Modal<Dialog>()); }});
    }
    /// Types a name over the one in the next file dialog, and Enter; Cancel when it is empty.
    void AnswerFile(const std::string& typed);
    /// Amid the next long operation, once the display has some lines.
    void WhileBusy(std::function<void()> act);

    // --- The eyes. -------------------------------------------------------------------------------
    /// The button with this caption, or the label with this meaning.
    QWidget& The(const QString& name, const QWidget* in = nullptr) const;
    bool IsChosen(const QString& mode) const {
        return static_cast<const QAbstractButton&>(The(mode)).isChecked();
    }
    std::string LabelText(const QString& meaning) const {
        return The(meaning).accessibleName().toStdString();
    }
    QPoint LineAt(int line) const {
        return List->visualRect(List->model()->index(line, 0)).center();
    }
    std::string Title() const { return Screen->windowTitle().toStdString(); }
    static bool Hourglass();
    /// The display's text in its record, and whether the screen shows it, from its first line on.
    std::string DisplayText() const { return Form->rtfDisplay.Text.Text(); }
    testing::AssertionResult ScreenShowsText();

    std::unique_ptr<formTessel> Form;
    std::unique_ptr<MainScreen> Screen;
    QListView* List = nullptr;
    DisplayView* Display = nullptr;

  private:
    struct Step {
        std::function<bool()> IsReady;
        std::function<void()> Act;
    };
    template <class Dialog>
    static Dialog* Modal() {
        QWidget* modal = QApplication::activeModalWidget();
        const bool ready = modal != nullptr && modal->isVisible() && modal->isActiveWindow();
        return ready ? dynamic_cast<Dialog*>(modal) : nullptr;
    }
    void Look();

    std::deque<Step> Steps;
    QTimer Eyes;
    QElapsedTimer SinceStep;
};

}  // namespace tessel
