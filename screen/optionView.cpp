#include "screen/optionView.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

namespace tessel {
namespace {

/// The desktop's style with marks that fit into the option buttons' bounds.
class OptionStyle : public QProxyStyle {
  public:
    explicit OptionStyle(QObject* parent) { setParent(parent); }
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        switch (metric) {
            case PM_ExclusiveIndicatorWidth:
            case PM_ExclusiveIndicatorHeight:
                return OptionView::kMarkPixels;
            case PM_RadioButtonLabelSpacing:
                return OptionView::kMarkSpacing;
            default:
                return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
    /// Adds a ring in the text colour on dark palettes, where a style's mark may be hard to see.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        const QPalette& colours = option->palette;
        const bool dark = colours.color(QPalette::Window).lightness() < 128;
        if (element != PE_IndicatorRadioButton || !dark) return;
        QColor ring = colours.color(QPalette::WindowText);
        ring.setAlphaF(0.6F);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(ring);
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
        painter->restore();
    }
};

/// Reports a radio button to screen readers; the toolkit reports a check box for a button that is
/// not auto-exclusive.
class OptionAccessible : public QAccessibleWidget {
  public:
    explicit OptionAccessible(OptionView* view)
        : QAccessibleWidget(view, QAccessible::RadioButton, view->text()) {
        addControllingSignal(QLatin1String("toggled(bool)"));
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = View().isChecked();
        return state;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            View().click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    OptionView& View() const { return static_cast<OptionView&>(*object()); }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* view = qobject_cast<OptionView*>(object);
    return view == nullptr ? nullptr : new OptionAccessible(view);
}

}  // namespace

OptionView::OptionView(const QString& caption, QWidget* parent) : QRadioButton(caption, parent) {
    static const bool installed = (QAccessible::installFactory(MakeAccessible), true);
    static_cast<void>(installed);
    setStyle(new OptionStyle(this));
    setAutoExclusive(false);
}

void OptionView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (!event->isAutoRepeat()) click();
        return;
    }
    const int step = key == Qt::Key_Down || key == Qt::Key_Right ? 1
                     : key == Qt::Key_Up || key == Qt::Key_Left  ? -1
                                                                 : 0;
    if (step == 0) return QRadioButton::keyPressEvent(event);
    // In the order of creation, from top to bottom.
    const auto all = parentWidget()->findChildren<OptionView*>();
    for (qsizetype at = all.indexOf(this) + step; at >= 0 && at < all.size(); at += step) {
        if (!all[at]->isEnabled()) continue;
        all[at]->setFocus(Qt::TabFocusReason);
        return all[at]->click();
    }
}

}  // namespace tessel
