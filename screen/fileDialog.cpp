#include "screen/fileDialog.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QRegularExpression>
#include <QTreeView>
#include <algorithm>
#include <array>

#include "platform/hostFiles.h"
#include "screen/bindControls.h"
#include "screen/messageBox.h"
#include "screen/qtHost.h"

namespace tessel {
namespace {

/// The pattern; on hosts with case-sensitive names also one that ignores case, such as
/// "*.[iI][mM][gG]" for "*.img".
QString AnyCase(const QString& pattern) {
    if (pattern == "*.*") return "*";  // also names without a dot
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return pattern;
#else
    QString folded;
    for (const QChar unit : pattern) {
        if (unit.isLetter()) {
            folded += QString("[%1%2]").arg(unit.toLower()).arg(unit.toUpper());
        } else {
            folded += unit;
        }
    }
    return folded == pattern ? pattern : pattern + ' ' + folded;
#endif
}

/// "description|*.a;*.b|..." as the toolkit's "description (*.a *.b)", one for each pair.
QStringList NameFilters(const std::string& filter) {
    const QStringList items = ToQt(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < items.size(); i += 2) {
        QStringList patterns;
        for (const QString& pattern : items[i + 1].split(';', Qt::SkipEmptyParts)) {
            patterns += AnyCase(pattern.trimmed());
        }
        filters += items[i].trimmed() + " (" + patterns.join(' ') + ')';
    }
    return filters;
}

/// The chosen path with the default extension where the dialog's rules add it.
QString WithExtension(const QString& path, const CommonDialog& dialog, bool saving) {
    const QFileInfo file(path);
    const bool complete =
        dialog.DefaultExt.empty() || file.fileName().contains('.') || file.isDir();
    if (complete || (!saving && file.exists())) return path;
    return path + '.' + ToQt(dialog.DefaultExt);
}

QString PathText(const QString& path) { return QDir::toNativeSeparators(path) + '\n'; }

void Refuse(const QString& path, const QString& why, const QString& title) {
    ShowBox(title, PathText(path) + why, QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok);
}

bool MayOverwrite(const QString& path, const QString& title) {
    return ShowBox(title, PathText(path) + "This file already exists. Do you want to replace it?",
                   QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No,
                   QMessageBox::No) == QMessageBox::Yes;
}

/// Why the program would not save at `path`; "" when it would.
std::string Refusal(const QString& path, const CommonDialog& dialog) {
    return dialog.Refusal ? dialog.Refusal(QDir::toNativeSeparators(path).toStdString()) : "";
}

/// Whether the flags allow the user to choose `path`; shows a message if not.
bool Accepts(const QString& path, const CommonDialog& dialog, bool saving) {
    const QFileInfo file(path);
    const QString title = ToQt(dialog.Title);
    const auto has = [&dialog](FileDialogFlag flag) { return (dialog.Flags & flag) != 0; };
    if (file.isDir()) {
        Refuse(path, "This is a folder. Please choose a file.", title);
    } else if (has(kFileMustExist) && !file.exists()) {
        Refuse(path, "There is no such file. Please check its name.", title);
    } else if (has(kPathMustExist) && !QFileInfo(file.path()).isDir()) {
        Refuse(path, "There is no such folder. Please check its name.", title);
    } else if (has(kNoReadOnlyReturn) &&
               ((file.exists() && !file.isWritable()) || !QFileInfo(file.path()).isWritable())) {
        Refuse(path, "This file or its folder is not writable. Please choose another one.", title);
    } else if (const std::string refusal = saving ? Refusal(path, dialog) : ""; !refusal.empty()) {
        Refuse(path, ToQt(refusal) + " Please choose another one.", title);
    } else {
        return !saving || !has(kOverwritePrompt) || !file.exists() || MayOverwrite(path, title);
    }
    return false;
}

/// Makes the dialog return the typed name. While the user types, the toolkit's dialog selects
/// matching files in its list (for a path also the folders on the way) and would return those
/// instead.
void TrustTypedPaths(QFileDialog& view) {
    auto* const name = view.findChild<QLineEdit*>("fileNameEdit");
    auto* const list = view.findChild<QListView*>("listView");
    if (name == nullptr || list == nullptr) return;  // the desktop's dialog
    QObject::connect(name, &QLineEdit::textChanged, list, [name, list] {
        if (name->hasFocus()) list->selectionModel()->clearSelection();
    });
}

/// The suggested file name, which may come from an image, made safe: it names a file in the folder
/// that the dialog shows.
QString Suggestion(const std::string& name) {
    // In the toolkit's dialog quotation marks separate names, and "~NAME" is a home folder.
    QString safe = ToQt(SafeName(name)).replace('"', '_');
    const bool home = safe.startsWith('~') && !safe.contains('.');
    return home ? '_' + safe.mid(1) : safe;
}

void Prepare(QFileDialog& view, const CommonDialog& dialog, bool saving) {
    view.setOption(QFileDialog::DontUseNativeDialog, UseToolkitDialogs);
    view.setOption(QFileDialog::DontConfirmOverwrite);
    view.setOption(QFileDialog::HideNameFilterDetails);
    view.setWindowTitle(ToQt(dialog.Title));
    view.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    view.setFileMode(QFileDialog::AnyFile);  // existence is checked after the dialog

    const QStringList filters = NameFilters(dialog.Filter);
    view.setNameFilters(filters);
    const qsizetype preselected = dialog.FilterIndex - 1;
    if (preselected >= 0 && preselected < filters.size()) {
        view.selectNameFilter(filters[preselected]);
    }
    const QString folder = ToQt(dialog.InitDir);
    view.setDirectory(QFileInfo(folder).isDir() ? folder : QDir::currentPath());
    if (!dialog.FileName.empty()) view.selectFile(Suggestion(dialog.FileName));
}

/// Makes the columns of the toolkit's list, and the dialog with them, wide enough for sizes and
/// dates.
void WidenColumns(QFileDialog& view) {
    auto* const list = view.findChild<QTreeView*>("treeView");
    if (list == nullptr) return;  // the desktop's dialog
    constexpr int kNameWidth = 240;
    constexpr int kPadding = 12;
    const QFontMetrics metrics = list->fontMetrics();
    const QString date =
        QLocale().toString(QDateTime({2000, 12, 30}, {22, 22, 22}), QLocale::ShortFormat);
    const std::array<int, 4> widths = {kNameWidth,
                                       metrics.horizontalAdvance("1000.00 MiB") + kPadding,
                                       metrics.horizontalAdvance("Raw disk image") + kPadding,
                                       metrics.horizontalAdvance(date) + 2 * kPadding};
    int all = 0;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        list->setColumnWidth(static_cast<int>(column), widths[column]);
        all += widths[column];
    }
    constexpr int kSideBar = 160;
    view.resize(std::max(view.width(), all + kSideBar), view.height());
}

/// The path that the user chooses; empty after Cancel.
QString Choose(const CommonDialog& dialog, bool saving) {
    const NormalPointerScope pause;
    QFileDialog view(DialogOwner());
    Prepare(view, dialog, saving);
    TrustTypedPaths(view);
    WidenColumns(view);
    while (view.exec() == QDialog::Accepted) {
        const QStringList chosen = view.selectedFiles();
        if (chosen.isEmpty()) continue;
        const QString typed = QDir::cleanPath(chosen.first());
        QString path = WithExtension(typed, dialog, saving);
        if (Accepts(path, dialog, saving)) return path;
        view.selectFile(QFileInfo(typed).fileName());
    }
    return {};
}

}  // namespace

void ShowFileDialog(CommonDialog& dialog, bool saving) {
    const QString path = Choose(dialog, saving);
    dialog.FileName = QDir::toNativeSeparators(path).toStdString();
    dialog.FileTitle = QFileInfo(path).fileName().toStdString();
    if (path.isEmpty() && dialog.CancelError) Raise(kCancelled);
}

}  // namespace tessel
