#include "screen/bindLists.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include "platform/hostFiles.h"
#include "screen/bindControls.h"
#include "screen/display/font.h"

namespace tessel {
namespace {

bool IsEnter(const QKeyEvent* event) {
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

/// `path` and the folders above it, the topmost first.
QStringList FoldersTo(const QString& path) {
    QStringList steps;
    for (QString step = QDir::cleanPath(path);; step = QFileInfo(step).path()) {
        steps.prepend(step);
        if (QDir(step).isRoot() || QFileInfo(step).path() == step) return steps;
    }
}

/// Draws a frame in a view that has the focus; the selected line alone does not show it.
void PaintFocus(QAbstractItemView& view) {
    if (!view.hasFocus()) return;
    QPainter painter(view.viewport());
    painter.setPen(view.palette().color(QPalette::Highlight));
    painter.drawRect(view.viewport()->rect().adjusted(0, 0, -1, -1));
}

void AddFolder(QTreeWidgetItem& item, const QString& path, const QIcon& icon) {
    const QString name = QDir(path).isRoot() ? path : QFileInfo(path).fileName();
    item.setText(0, QDir::toNativeSeparators(name));
    item.setData(0, Qt::UserRole, path);
    item.setIcon(0, icon);
}

}  // namespace

// --- Lines. -------------------------------------------------------------------------------------

void ListLines::Refresh() {
    beginResetModel();
    Rows = List.Count();
    endResetModel();
}

int ListLines::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : Rows; }

QVariant ListLines::data(const QModelIndex& index, int role) const {
    // The record may have lost lines since the last Refresh.
    if (!index.isValid() || index.row() >= List.Count()) return {};
    if (role == Qt::DisplayRole) return ToQt(List.Text(index.row()));
    if (!List.Hint) return {};
    if (role == Qt::AccessibleDescriptionRole) return Hint(index.row());
    if (role == Qt::ToolTipRole) return TipText(Hint(index.row()));
    return {};
}

QString ListLines::Hint(int line) const {
    try {
        return SingleLine(List.Hint(List.ItemData(line)));
    } catch (const RuntimeError&) {
        return {};  // the directory is being replaced
    }
}

QModelIndexList ListLines::match(const QModelIndex& start, int, const QVariant& value, int,
                                 Qt::MatchFlags) const {
    const QString wanted = value.toString();
    for (int step = 0; step < Rows; ++step) {
        const QModelIndex line = index((start.row() + step) % Rows);
        QString text = data(line, Qt::DisplayRole).toString();
        if (text.startsWith(u' ') || text.startsWith(u'[')) text.remove(0, 1);
        if (text.startsWith(wanted, Qt::CaseInsensitive)) return {line};
    }
    return {};
}

ListView::ListView(ListBox& list, QWidget* parent)
    : QListView(parent), List(list), Lines(new ListLines(list, this)) {
    setModel(Lines);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideNone);
    FollowLines();
    List.LinesChanged = [this] { FollowSoon(); };
    List.SelectionChanged = [this] { FollowSelection(); };
    // Changes from elsewhere, such as a screen reader's.
    connect(
        selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { TakeSelection(); },
        Qt::QueuedConnection);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (!selected.isEmpty()) setCurrentIndex(selected.indexes().front());
            });
}

void ListView::FollowSoon() {
    if (Stale) return;
    Stale = true;
    QMetaObject::invokeMethod(
        this, [this] { FollowLines(); }, Qt::QueuedConnection);
}

void ListView::FollowLines() {
    Stale = false;
    Pressed = false;
    Lines->Refresh();
    FollowSelection();
}

void ListView::FollowSelection() {
    if (Stale) return;
    const int line = List.ListIndex();
    if (currentIndex().row() == line && (line < 0 || selectionModel()->isSelected(currentIndex())))
        return;
    if (line < 0) {
        selectionModel()->clear();
    } else {
        setCurrentIndex(Lines->index(line));
    }
}

void ListView::TakeSelection() {
    const int line = currentIndex().row();
    if (Stale || !List.Enabled || line == List.ListIndex() || line < 0) {
        FollowSelection();
    } else {
        List.Select(line);
    }
}

int ListView::LineUnder(const QMouseEvent* event) {
    if (Stale) FollowLines();
    return indexAt(event->position().toPoint()).row();
}

void ListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    PaintFocus(*this);
}

void ListView::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    // After the toolkit has reported the focus of the list itself.
    QMetaObject::invokeMethod(
        this, [this] { NotifyLine(); }, Qt::QueuedConnection);
}

void ListView::NotifyLine() {
    const int line = currentIndex().row();
    if (line < 0 || !hasFocus()) return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(line);
    QAccessible::updateAccessibility(&event);
}

void ListView::mousePressEvent(QMouseEvent* event) {
    const int line = LineUnder(event);
    if (event->button() != Qt::LeftButton || line < 0) return;
    Pressed = true;
    List.ClickLine(line);
}

void ListView::mouseMoveEvent(QMouseEvent* event) {
    const int line = LineUnder(event);
    if (!event->buttons().testFlag(Qt::LeftButton)) Pressed = false;
    if (Pressed && line >= 0 && List.Enabled) List.Select(line);
}

void ListView::mouseReleaseEvent(QMouseEvent*) { Pressed = false; }

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    const int line = LineUnder(event);
    Pressed = false;
    if (event->button() != Qt::LeftButton || line < 0 || !List.Enabled) return;
    if (line == List.ListIndex()) {
        RaiseEvent(List.DblClick);  // the first press has already raised its Click
    } else {
        List.ClickLine(line);
    }
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (Stale) FollowLines();
    const int line = List.ListIndex();
    if (!List.Enabled) return event->ignore();
    if (IsEnter(event)) {
        if (line >= 0 && !event->isAutoRepeat()) List.DoubleClickLine(line);
    } else if (event->key() == Qt::Key_Escape) {
        event->ignore();  // the window handles it
    } else if (event->key() == Qt::Key_Space) {
        if (line >= 0 && !event->isAutoRepeat()) List.ClickLine(line);
    } else {
        QListView::keyPressEvent(event);
        TakeSelection();
    }
}

ListView* BindListBox(ListBox& list, const QString& meaning, QWidget* parent) {
    auto* view = new ListView(list, parent);
    view->setFont(DisplayFont().Font());
    view->setAccessibleName(meaning);
    list.TakeFocus = [view] { view->setFocus(Qt::OtherFocusReason); };
    list.Bounds.Observe([view](const ControlBounds& at) { view->setGeometry(ToPixels(at)); });
    return view;
}

// --- Folders. ---------------------------------------------------------------------------------

FolderView::FolderView(FolderList& folders, QWidget* parent)
    : QTreeWidget(parent), Folders(folders) {
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setIndentation(12);
    setAccessibleName("Folder list");
    Folders.PathChanged = [this] { Follow(); };
}

void FolderView::Follow() {
    clear();
    if (Folders.Path().empty()) return;
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);
    const QString path = ToQt(Folders.Path());
    QTreeWidgetItem* here = invisibleRootItem();
    for (const QString& step : FoldersTo(path)) {
        auto* item = new QTreeWidgetItem(here);
        AddFolder(*item, step, open);
        item->setExpanded(true);
        here = item;
    }
    const QDir folder(path);
    const auto names = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot,
                                        QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
    QList<QTreeWidgetItem*> items;
    for (const QString& name : names) {
        items.append(new QTreeWidgetItem);
        AddFolder(*items.last(), folder.absoluteFilePath(name), closed);
    }
    here->addChildren(items);
    here->setExpanded(true);
    setCurrentItem(here);
    scrollToItem(here, PositionAtTop);
}

void FolderView::Enter(const QTreeWidgetItem* item) {
    if (item == nullptr) return;
    const QString path = item->data(0, Qt::UserRole).toString();
    // A folder that exists but cannot be read or entered stays closed.
    const bool closed = !QFileInfo(path).isReadable() || !QFileInfo::exists(path + "/.");
    if (closed && QFileInfo::exists(path)) return;
    try {
        Folders.SetPath(QDir::toNativeSeparators(path).toStdString());
    } catch (const RuntimeError&) {
        Follow();  // the folder no longer exists
    }
}

void FolderView::AskNewFolder() {
    const QString title = QStringLiteral("New Folder");
    const QDir open(ToQt(Folders.Path()));
    bool accepted = false;
    const QString name =
        QInputDialog::getText(this, title, QStringLiteral("Name of the new folder:"),
                              QLineEdit::Normal, QString(), &accepted)
            .trimmed();
    if (!accepted || name.isEmpty()) return;
    QString refusal;
    if (QFileInfo(name).fileName() != name || name == QLatin1String("..")) {
        refusal = QStringLiteral("A folder name cannot contain a path");
    } else if (QFileInfo(open, name).exists()) {
        refusal = QStringLiteral("A file or folder with this name already exists");
    } else if (!open.mkdir(name)) {
        refusal = QStringLiteral("The folder cannot be created here");
    }
    if (refusal.isEmpty()) {
        Folders.SetPath(QDir::toNativeSeparators(open.filePath(name)).toStdString());
    } else {
        QMessageBox::warning(this, title, refusal + ":\n" + name);
    }
}

void FolderView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Open"), this, [this] { Enter(currentItem()); });
    menu->addAction(QStringLiteral("New Folder..."), this, [this] { AskNewFolder(); })
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    menu->popup(event->globalPos());
}

void FolderView::paintEvent(QPaintEvent* event) {
    QTreeWidget::paintEvent(event);
    PaintFocus(*this);
}

void FolderView::mousePressEvent(QMouseEvent* event) {
    QTreeWidgetItem* item = itemAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && item != nullptr) setCurrentItem(item);
}

void FolderView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) Enter(itemAt(event->position().toPoint()));
}

void FolderView::keyPressEvent(QKeyEvent* event) {
    if (IsEnter(event)) {
        if (!event->isAutoRepeat()) Enter(currentItem());
    } else if (event->key() == Qt::Key_Escape) {
        event->ignore();  // the window handles it
    } else {
        QTreeWidget::keyPressEvent(event);
    }
}

FolderView* BindFolderList(FolderList& folders, QWidget* parent) {
    auto* view = new FolderView(folders, parent);
    view->setGeometry(ToPixels(folders.Bounds));
    view->setFont(CaptionFont(view->size()));
    return view;
}

QComboBox* BindDriveList(DriveList& drives, QWidget* parent) {
    auto* view = new QComboBox(parent);
    view->setGeometry(ToPixels(drives.Bounds));
    view->setFont(CaptionFont(view->size()));
    view->setAccessibleName("Drive list");
    const auto follow = [&drives, view] {
        view->setCurrentIndex(view->findText(ToQt(drives.Drive())));
    };
    drives.DriveChanged = follow;
    QObject::connect(view, &QComboBox::activated, view, [&drives, view, follow](int line) {
        try {
            drives.SetDrive(view->itemText(line).toStdString());
        } catch (const RuntimeError&) {
            follow();  // the drive cannot be read: back to the previous one
        }
    });
    return view;
}

void FillDriveList(const DriveList& drives, QComboBox& view) {
    view.clear();
    for (const std::string& drive : HostDrives()) view.addItem(ToQt(drive));
    view.setCurrentIndex(view.findText(ToQt(drives.Drive())));
}

}  // namespace tessel
