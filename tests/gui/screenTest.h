#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QListView>
#include <QSet>
#include <QTimer>
#include <deque>

#include "app/formTessel.h"
#include "screen/display/view.h"
#include "screen/mainScreen.h"
#include "tests/fixture.h"

namespace tessel {

/// Tests of the program's real window and the toolkit's own dialogs. Mouse and key events go
/// through the windows, so a control that is disabled, covered or without the focus does not get
/// them.
class ScreenTest : public TesselTest {
  protected:
    ScreenTest();
    ~ScreenTest() override;
    /// Start the program, and end it as main does after its event loop; the settings are kept.
    void Start();
    void End();

    // --- User input. -----------------------------------------------------------------------------
    static void Click(QWidget& widget, bool twice = false) {
        Click(widget, widget.rect().center(), twice);
    }
    static void Click(QWidget& widget, QPoint at, bool twice = false);
    void ClickLine(int line, bool twice = false) { Click(*List->viewport(), LineAt(line), twice); }
    static void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier);
    static void Type(const QString& text);
    /// Opens a menu, and clicks an entry or closes the menu. Returns its entries, one per line,
    /// disabled ones after a "-".
    std::string Menu(const QString& menu, const QString& entry = {});
    /// Activates the window again after a menu or a dialog, as a desktop does.
    void ActivateWindow();
    /// Opens an image through the menu and the dialog.
    void OpenImage(const std::string& path);

    /// Calls `act` once a dialog of this type is active. Dialogs are expected in the order of the
    /// calls; an unexpected one is an error.
    template <class Dialog>
    void OnDialog(std::function<void(Dialog&)> act) {
        Steps.push_back({[] { return Modal<Dialog>() != nullptr; },
                         [act = std::move(act)] { act(*Modal<Dialog>()); }});
    }
    /// Replaces the name in the next file dialog and presses Enter; Cancel if `typed` is empty.
    void AnswerFile(const std::string& typed);
    /// Calls `act` during the next long operation, once the display has some lines.
    void WhileBusy(std::function<void()> act);

    // --- What the window shows. ------------------------------------------------------------------
    /// The button with this caption, or the label with this accessible description.
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
    /// The text of the display's record, and whether the view shows it from its first line on.
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
    void RunSteps();

    std::deque<Step> Steps;
    QSet<QWidget*> Answering;  // dialogs whose step still runs; the next step waits for another
    QTimer StepTimer;
    QElapsedTimer SinceStep;
};

}  // namespace tessel
