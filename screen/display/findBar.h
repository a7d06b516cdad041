#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "screen/display/text/textSearch.h"
#include "screen/display/text/textSelection.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace tessel {

/// The line below the display in which a person searches its text. A search runs in steps between
/// events, and ends when it is answered, when another is begun, or when it is given up.
class FindBar : public QWidget {
  public:
    /// What the line asks of the view that it belongs to.
    struct View {
        std::function<TextRange()> Selected;       ///< the selection, or the caret as an empty one
        std::function<void(TextRange)> ShowFound;  ///< select a hit and bring it into sight
        std::function<void()> Closed;              ///< the line was closed: take the focus back
    };

    FindBar(const TextDisplay& text, View view, QWidget* parent);

    /// Puts `wanted` into the field, unless that is empty, and the focus there.
    void Open(const QString& wanted);
    /// What the field holds.
    QString Query() const;
    void Close();
    /// Searches on for what the field holds; does nothing when that is nothing.
    void Search(bool backwards);
    /// Ends a search that has not been answered yet, and takes back what was said about the last.
    void CancelSearch();

    bool IsSearching() const { return Running.has_value(); }
    QString Status() const;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Step();
    void ShowStatus(const QString& words, bool failed = false);

    const TextDisplay& Text;
    View Owner;
    QLineEdit* Field;
    QCheckBox* Case;
    QLabel* Words;
    QTimer Turn;
    std::optional<TextSearch> Running;
};

}  // namespace tessel
