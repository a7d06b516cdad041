#include "screen/display/findBar.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>

namespace tessel {
namespace {

/// The limits of one timer event.
constexpr int kStepsPerEvent = 4;
constexpr int kMillisecondsPerEvent = 10;

/// A label that screen readers take for a notification.
class Notification : public QLabel {};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* label = dynamic_cast<Notification*>(object);
    return label == nullptr ? nullptr : new QAccessibleWidget(label, QAccessible::Notification);
}

QToolButton* AddButton(QHBoxLayout* row, const QString& caption, const QString& tip) {
    auto* button = new QToolButton;
    button->setText(caption);
    button->setToolTip(tip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    row->addWidget(button);
    return button;
}

}  // namespace

FindBar::FindBar(const TextDisplay& text, View view, QWidget* parent)
    : QWidget(parent),
      Text(text),
      Owner(std::move(view)),
      Field(new QLineEdit),
      Case(new QCheckBox(QStringLiteral("Match case"))),
      StatusLabel(new Notification) {
    static const bool installed = (QAccessible::installFactory(MakeAccessible), true);
    static_cast<void>(installed);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(4);

    Field->setObjectName(QStringLiteral("findField"));
    Field->setPlaceholderText(QStringLiteral("Find"));
    Field->setAccessibleName(QStringLiteral("Find"));
    Field->setMaxLength(1000);
    Field->setMinimumWidth(60);
    row->addWidget(Field, 1);
    auto* next =
        AddButton(row, QStringLiteral("Next"), QStringLiteral("Find the next match (Enter or F3)"));
    auto* previous = AddButton(row, QStringLiteral("Previous"),
                               QStringLiteral("Find the previous match (Shift+Enter or Shift+F3)"));
    row->addWidget(Case);
    StatusLabel->setObjectName(QStringLiteral("findStatus"));
    row->addWidget(StatusLabel);
    auto* close = AddButton(row, QString(), QStringLiteral("Close the find bar (Esc)"));
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setAccessibleName(QStringLiteral("Close the find bar"));

    StepTimer.setInterval(0);
    connect(&StepTimer, &QTimer::timeout, this, [this] { Step(); });
    connect(Field, &QLineEdit::textEdited, this, [this] { CancelSearch(); });
    connect(Case, &QCheckBox::toggled, this, [this] { CancelSearch(); });
    connect(next, &QToolButton::clicked, this, [this] { Search(false); });
    connect(previous, &QToolButton::clicked, this, [this] { Search(true); });
    connect(close, &QToolButton::clicked, this, [this] { Close(); });
}

void FindBar::Open(const QString& text) {
    if (!text.isEmpty()) {
        CancelSearch();
        Field->setText(text);
    }
    Field->selectAll();
    Field->setFocus(Qt::ShortcutFocusReason);
}

QString FindBar::Query() const { return Field->text(); }

void FindBar::Close() {
    CancelSearch();
    hide();
    Owner.Closed();
}

void FindBar::Search(bool backwards) {
    if (Field->text().isEmpty()) return;
    SearchQuery query{Field->text().toStdString(), Case->isChecked(), backwards};
    if (Running && Running->Query() == query) return;  // already running
    const TextRange selected = Owner.Selected();
    const TextOffset from = backwards ? selected.From : selected.To;
    Running.emplace(Text, std::move(query), from);
    ShowStatus(QString());
    StepTimer.start();
}

void FindBar::CancelSearch() {
    StepTimer.stop();
    Running.reset();
    ShowStatus(QString());
}

QString FindBar::Status() const { return StatusLabel->text(); }

void FindBar::Step() {
    if (!Running || Running->IsOutdated()) {
        CancelSearch();
        return;
    }
    QElapsedTimer elapsed;
    elapsed.start();
    auto state = TextSearch::State::kSearching;
    for (int i = 0; i < kStepsPerEvent && state == TextSearch::State::kSearching; ++i) {
        if (elapsed.elapsed() >= kMillisecondsPerEvent) break;
        state = Running->Step();
    }
    if (state == TextSearch::State::kSearching) {
        const QString status = QStringLiteral("Searching… %1 %").arg(Running->Percent());
        if (status != StatusLabel->text()) ShowStatus(status);
        return;
    }
    const TextSearch finished = *Running;
    StepTimer.stop();
    Running.reset();
    if (state == TextSearch::State::kNone) {
        ShowStatus(QStringLiteral("No match"), true);
        return;
    }
    if (!finished.Wrapped()) {
        ShowStatus(QString());
    } else {
        ShowStatus(finished.Query().Backwards ? QStringLiteral("Continued from the end")
                                              : QStringLiteral("Continued from the top"));
    }
    Owner.ShowFound({finished.Hit(), finished.Hit() + finished.HitSize()});
}

void FindBar::ShowStatus(const QString& status, bool failed) {
    QPalette colours;
    if (failed) {
        const bool dark = palette().color(QPalette::Window).lightness() < 128;
        colours = palette();
        colours.setColor(QPalette::WindowText, dark ? QColor(255, 130, 120) : QColor(170, 0, 0));
    }
    StatusLabel->setPalette(colours);
    // Screen readers speak a notification when it is shown; the progress of a search, only once.
    if (!Running) StatusLabel->hide();
    StatusLabel->setText(status);
    StatusLabel->setAccessibleName(status);
    StatusLabel->setVisible(!status.isEmpty());
}

bool FindBar::event(QEvent* event) {
    // Esc closes the find bar and F3 searches, even if the window has shortcuts for them.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_F3) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
    switch (event->key()) {
        case Qt::Key_Escape:
            Close();
            break;
        case Qt::Key_F3:
            Search(shift);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* button = qobject_cast<QToolButton*>(focusWidget())) {
                button->click();
            } else {
                Search(shift);
            }
            break;
        default:
            break;
    }
    // Keys that the field does not use must not reach the display.
    event->accept();
}

}  // namespace tessel
