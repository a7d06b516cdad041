#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;

namespace tessel {

class FolderView;
struct dialogGetDirectory;

/// The folder chooser: a modal window of fixed size that does not appear in the task bar.
class ChooserScreen : public QDialog {
  public:
    ChooserScreen(dialogGetDirectory& chooser, QWidget* parent);
    /// Returns once the record's window is no longer visible.
    void ShowModal();
    /// Ignores Esc: closing the chooser returns the start folder, which is not what the user
    /// expects of Esc.
    void reject() override {}

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void FollowPosition();
    void FollowLine();

    dialogGetDirectory& Chooser;
    QComboBox* Drives;
    FolderView* Folders;
    QLineEdit* Line;
    QLabel* Bubble;  // shows which folder OK takes while the text box differs
};

}  // namespace tessel
