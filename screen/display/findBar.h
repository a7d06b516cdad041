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

/// The find bar below the display. A search runs in steps between events until it has a result,
/// another one is started, or it is cancelled.
class FindBar : public QWidget {
  public:
    /// The functions of the view that the find bar calls.
    struct View {
        std::function<TextRange()> Selected;       ///< the selection, or the caret as an empty one
        std::function<void(TextRange)> ShowFound;  ///< select a hit and scroll to it
        std::function<void()> Closed;              ///< the find bar was closed
    };

    FindBar(const TextDisplay& text, View view, QWidget* parent);

    /// Puts `text` into the field, unless `text` is empty, and gives the field the focus.
    void Open(const QString& text);
    /// The text in the field.
    QString Query() const;
    void Close();
    /// Searches for the field's text from the selection on; does nothing if the field is empty.
    void Search(bool backwards);
    /// Ends the running search, if any, and clears the status.
    void CancelSearch();

    bool IsSearching() const { return Running.has_value(); }
    QString Status() const;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Step();
    void ShowStatus(const QString& status, bool failed = false);

    const TextDisplay& Text;
    View Owner;
    QLineEdit* Field;
    QCheckBox* Case;
    QLabel* StatusLabel;
    QTimer StepTimer;
    std::optional<TextSearch> Running;
};

}  // namespace tessel
