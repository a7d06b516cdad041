#include "screen/inputDialog.h"

#include <QAbstractItemView>
#include <QAbstractListModel>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include "screen/bindControls.h"
#include "screen/qtHost.h"

namespace tessel {
namespace {

/// The choices as a model of a drop-down, which lists one text of each and enters another.
class ChoiceModel : public QAbstractListModel {
  public:
    ChoiceModel(const std::vector<InputChoice>& choices, QObject* parent)
        : QAbstractListModel(parent), Choices(choices) {}

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(Choices.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) return {};  // requested when no line is chosen
        const InputChoice& choice = At(index);
        if (role == Qt::EditRole) return ToQt(choice.Value);
        if (role == Qt::DisplayRole) return SingleLine(choice.Text);
        // For a line that is wider than the screen.
        if (role == Qt::ToolTipRole) return TipText(SingleLine(choice.Text));
        return {};
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const bool enabled = index.isValid() && At(index).Enabled;
        return enabled ? QAbstractListModel::flags(index) : Qt::ItemFlags();
    }

  private:
    const InputChoice& At(const QModelIndex& index) const {
        return Choices[static_cast<std::size_t>(index.row())];
    }

    const std::vector<InputChoice>& Choices;
};

/// Filters clicks on lines that cannot be chosen; the list would choose the highlighted line for
/// them.
class DisabledLineFilter : public QObject {
  public:
    explicit DisabledLineFilter(QAbstractItemView& list) : QObject(&list), List(list) {
        List.viewport()->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonRelease)
            return QObject::eventFilter(watched, event);
        const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
        const QModelIndex line = List.indexAt(at);
        return line.isValid() && !line.flags().testFlag(Qt::ItemIsEnabled);
    }

  private:
    QAbstractItemView& List;
};

/// Makes the text line of `dialog` an editable drop-down that lists the choices.
void OfferChoices(QInputDialog& dialog, const QString& text,
                  const std::vector<InputChoice>& choices) {
    constexpr int kLinesAtOnce = 16;
    dialog.setComboBoxEditable(true);
    dialog.setComboBoxItems({text});  // creates the drop-down
    auto& box = *dialog.findChild<QComboBox*>();
    box.setModel(new ChoiceModel(choices, &box));
    box.setInsertPolicy(QComboBox::NoInsert);
    box.setCompleter(nullptr);  // typed text is not completed
    box.setMaxVisibleItems(kLinesAtOnce);
    // Describes the number to a user who steps through the choices without seeing the list.
    QObject::connect(&box, &QComboBox::currentIndexChanged, &box, [&box](int line) {
        box.lineEdit()->setAccessibleDescription(box.itemData(line, Qt::DisplayRole).toString());
    });
    box.setCurrentIndex(box.findData(text, Qt::EditRole, Qt::MatchExactly));
    // The text line is as wide as a number, the list as wide as its lines.
    QAbstractItemView& list = *box.view();
    new DisabledLineFilter(list);
    const int wanted = list.sizeHintForColumn(0) + list.verticalScrollBar()->sizeHint().width();
    list.setMinimumWidth(std::min(wanted, dialog.screen()->availableSize().width()));
}

}  // namespace

std::string AskText(const std::string& prompt, const std::string& title, const std::string& text,
                    const std::vector<InputChoice>& choices) {
    const NormalPointerScope pause;
    QInputDialog dialog(DialogOwner());
    if (!choices.empty()) OfferChoices(dialog, ToQt(text), choices);
    dialog.setWindowTitle(ToQt(title));
    dialog.setLabelText(ToQt(prompt));
    dialog.setTextValue(ToQt(text));
    // The dialog's layout overrides a width of the dialog itself.
    dialog.findChild<QLabel*>()->setMinimumWidth(TitleWidth(dialog));
    for (QWidget* part : dialog.findChildren<QWidget*>()) {
        const bool takesText = qobject_cast<QLineEdit*>(part) || qobject_cast<QComboBox*>(part);
        if (takesText) part->setAccessibleName(ToQt(prompt));
    }
    dialog.findChild<QLineEdit*>()->selectAll();
    if (dialog.exec() != QDialog::Accepted) return "";
    return dialog.textValue().toStdString();
}

}  // namespace tessel
