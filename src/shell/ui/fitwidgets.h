#pragma once

// Widgets of the main window that fit the width they are given: a long title or a long event
// name never widens the window.

#include <QComboBox>
#include <QLabel>

namespace slipbook::shell {

// A one-line label that asks for no width of its own. Text that does not fit ends in "...",
// and then the whole text is the label's tip.
class ElidedLabel : public QLabel {
public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;
    // The text as it stands on screen.
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRect TextRect() const;
};

// A selector as wide as a number of characters, whatever its entries: the entry shown ends in
// "..." when it is longer, its tip adds the whole entry, and the list drops down as wide as its
// longest entry needs.
class SelectorBox : public QComboBox {
public:
    SelectorBox(int shownCharacters, QWidget* parent = nullptr);

    void showPopup() override;
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRect TextRect() const;
};

}  // namespace slipbook::shell
