#pragma once

#include <QDialog>

class QComboBox;

namespace tessel {

class FolderView;
struct dialogGetDirectory;

/// The folder chooser on the screen: a modal window of a fixed size that is not in the task bar.
class ChooserScreen : public QDialog {
  public:
    ChooserScreen(dialogGetDirectory& chooser, QWidget* parent);
    /// Returns once the record's window is no longer visible.
    void ShowModal();
    /// Esc does nothing: the close box keeps the folder that the caller began with, which is not
    /// what a person who presses Esc wants.
    void reject() override {}

  protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void FollowPosition();

    dialogGetDirectory& Chooser;
    QComboBox* Drives;
    FolderView* Folders;
};

}  // namespace tessel
