#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QTreeWidget>

#include "platform/controls.h"

class QComboBox;

namespace tessel {

/// The lines of a list record, as many as there were at the last Refresh.
class ListLines : public QAbstractListModel {
  public:
    ListLines(ListBox& list, QObject* parent) : QAbstractListModel(parent), List(list) {}
    void Refresh();
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Typing finds a line by its name, behind the blank or bracket that lines begin with.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

  private:
    ListBox& List;
    int Rows = 0;
};

/// Shows a list record. The record alone decides what is selected; the view follows it, and no
/// part of the toolkit is at work in it while a handler runs, since a handler may refill the list,
/// disable it, or let events in.
class ListView : public QListView {
  public:
    ListView(ListBox& list, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
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

    ListBox& List;
    ListLines* Lines;
    bool Stale = false;    // the record has other lines than the view
    bool Pressed = false;  // the mouse button went down on this list's lines
};

/// Shows a folder record: the folders above its path, the path itself, and its sub-folders.
class FolderView : public QTreeWidget {
  public:
    FolderView(FolderList& folders, QWidget* parent);
    /// Reads the sub-folders again: the host's may have changed.
    void Follow();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void drawBranches(QPainter*, const QRect&, const QModelIndex&) const override {}

  private:
    void Enter(const QTreeWidgetItem* item);

    FolderList& Folders;
};

/// A list box; its font is the display's.
ListView* BindListBox(ListBox& list, const QString& meaning, QWidget* parent);
FolderView* BindFolderList(FolderList& folders, QWidget* parent);
/// Fill it with FillDriveList before it is shown.
QComboBox* BindDriveList(DriveList& drives, QWidget* parent);
/// Lists the host's drives of now.
void FillDriveList(const DriveList& drives, QComboBox& view);

}  // namespace tessel
