#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QTreeWidget>

#include "platform/controls.h"

class QComboBox;

namespace tessel {

/// The lines of a list record, as of the last Refresh.
class ListLines : public QAbstractListModel {
  public:
    ListLines(ListBox& list, QObject* parent) : QAbstractListModel(parent), List(list) {}
    void Refresh();
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Finds a line by the beginning of its name, which follows a blank or a bracket.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

  private:
    QString Hint(int line) const;

    ListBox& List;
    int Rows = 0;
};

/// Shows a list record. The record alone decides which line is selected, and the view follows it.
/// Handlers run outside the toolkit's own event handling, because they may refill the list, disable
/// it, or process pending events.
class ListView : public QListView {
  public:
    ListView(ListBox& list, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void FollowSoon();
    void FollowLines();
    void FollowSelection();
    void TakeSelection();
    int LineUnder(const QMouseEvent* event);

    void NotifyLine();

    ListBox& List;
    ListLines* Lines;
    bool Stale = false;    // the record's lines have changed since FollowLines
    bool Pressed = false;  // the mouse button went down on this list's lines
};

/// Shows a folder record: the folders above its path, the path itself, and its sub-folders.
class FolderView : public QTreeWidget {
  public:
    FolderView(FolderList& folders, QWidget* parent);
    /// Reads the sub-folders from the host again.
    void Follow();
    /// Asks for a name, creates a folder of that name in the open one, and opens it. Shows a
    /// message if that fails.
    void AskNewFolder();

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}

  private:
    void Enter(const QTreeWidgetItem* item);

    FolderList& Folders;
};

/// A list box in the display's font; `meaning` is its accessible name.
ListView* BindListBox(ListBox& list, const QString& meaning, QWidget* parent);
FolderView* BindFolderList(FolderList& folders, QWidget* parent);
/// The list is empty until FillDriveList is called.
QComboBox* BindDriveList(DriveList& drives, QWidget* parent);
/// Lists the host's current drives.
void FillDriveList(const DriveList& drives, QComboBox& view);

}  // namespace tessel
