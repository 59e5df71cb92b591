#include "shell/ui/fitwidgets.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>

#include <algorithm>

namespace slipbook::shell {

namespace {

// Shows the tip, or none when it is empty; the event is handled either way.
bool ShowTip(QWidget* widget, QEvent* event, const QString& tip) {
    if (tip.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, widget);
    }
    return true;
}

}  // namespace

QSize ElidedLabel::minimumSizeHint() const {
    const QMargins m = contentsMargins();
    const int margins = m.left() + m.right() + 2 * margin() + 2 * frameWidth();
    return {margins + fontMetrics().horizontalAdvance(QStringLiteral("W...")),
            QLabel::minimumSizeHint().height()};
}

QRect ElidedLabel::TextRect() const {
    return contentsRect().adjusted(margin(), margin(), -margin(), -margin());
}

QString ElidedLabel::shownText() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, TextRect().width());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawFrame(&painter);
    const Qt::Alignment align = QStyle::visualAlignment(layoutDirection(), alignment());
    style()->drawItemText(&painter, TextRect(), static_cast<int>(align), palette(), isEnabled(),
                          shownText(), foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        return ShowTip(this, event, shownText() == text() ? QString() : text());
    }
    return QLabel::event(event);
}

SelectorBox::SelectorBox(int shownCharacters, QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(shownCharacters);
}

QRect SelectorBox::TextRect() const {
    QStyleOptionComboBox opt;
    initStyleOption(&opt);
    return style()
        ->subControlRect(QStyle::CC_ComboBox, &opt, QStyle::SC_ComboBoxEditField, this)
        .adjusted(1, 0, -1, 0);
}

QString SelectorBox::shownText() const {
    return fontMetrics().elidedText(currentText(), Qt::ElideRight, TextRect().width());
}

void SelectorBox::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox opt;
    initStyleOption(&opt);
    painter.drawComplexControl(QStyle::CC_ComboBox, opt);
    opt.currentText = shownText();
    painter.drawControl(QStyle::CE_ComboBoxLabel, opt);
}

void SelectorBox::showPopup() {
    int widest = 0;
    const QFontMetrics fm = view()->fontMetrics();
    for (int i = 0; i < count(); ++i) {
        widest = std::max(widest, fm.horizontalAdvance(itemText(i)));
    }
    // Room for the item's padding and a scroll bar; never wider than the screen.
    int wanted =
        widest + 4 * fm.averageCharWidth() + view()->verticalScrollBar()->sizeHint().width();
    if (const QScreen* s = screen()) {
        wanted = std::min(wanted, s->availableGeometry().width());
    }
    view()->setMinimumWidth(std::max(wanted, width()));
    QComboBox::showPopup();
}

bool SelectorBox::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        QString tip = toolTip();
        if (shownText() != currentText()) {
            tip += (tip.isEmpty() ? QString() : QStringLiteral("\n")) + currentText();
        }
        return ShowTip(this, event, tip);
    }
    return QComboBox::event(event);
}

}  // namespace slipbook::shell
