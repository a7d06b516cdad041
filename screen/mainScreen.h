#pragma once

#include <QMainWindow>
#include <memory>
#include <optional>

#include "screen/bindControls.h"
#include "screen/chooserScreen.h"
#include "screen/guideScreen.h"

namespace tessel {

struct formTessel;
class DisplayView;
class ProgressLine;

/// The main window. The form must outlive it.
class MainScreen : public QMainWindow {
  public:
    explicit MainScreen(formTessel& form);
    ~MainScreen() override;
    /// Shows the form's folder chooser and returns when the user has closed it.
    void ShowChooser();
    /// Opens an image that another program passed, or that was dropped, once pending events have
    /// been processed; `path` has the host's separators. Does nothing while an image may not be
    /// opened.
    void OpenDropped(const QString& path);
    /// Shows how much of a long operation is done (0 to 1), at the display's top edge; hides it for
    /// nullopt.
    void ShowProgress(std::optional<double> fraction);

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void MakeHelpMenu();
    void MakeControls();
    void FollowSize();

    formTessel& Form;
    QWidget* Inside;  // the area below the menu bar
    EnabledStates* Enabled;
    DisplayView* Display = nullptr;
    ProgressLine* Line = nullptr;
    std::unique_ptr<ChooserScreen> Chooser;
    std::unique_ptr<GuideScreen> Guide;
    bool Sized = false;
};

}  // namespace tessel
