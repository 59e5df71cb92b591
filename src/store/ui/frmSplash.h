#pragma once

#include <QWidget>

class QLabel;
class QFrame;

namespace slipbook::store {

// The splash shown while the logbook opens and the main window loads. Any key closes it.
class frmSplash : public QWidget {
    Q_OBJECT

public:
    explicit frmSplash(QWidget* parent = nullptr);

    void setVersion(const QString& text);
    void setStatus(const QString& text);
    QString version() const;
    QString status() const;

    // Shows the splash in the middle of the screen and paints it at once.
    void showCentred();

Q_SIGNALS:
    void closedByKey();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QFrame* panelDrag_ = nullptr;
    QFrame* panelPro_ = nullptr;
    QLabel* ribbonVersion_ = nullptr;
    QLabel* ribbonStatus_ = nullptr;
};

}  // namespace slipbook::store
