#include "store/ui/frmSplash.h"

#include "store/startup.h"

#include <QFrame>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace slipbook::store {

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
    setObjectName(QStringLiteral("frmSplash"));
    // Closing the splash must never count as closing the program's last window.
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_StyledBackground, true);
    setFixedSize(480, 300);
    setFocusPolicy(Qt::StrongFocus);
    setStyleSheet(
        QStringLiteral("#frmSplash { background: qlineargradient(x1:0, y1:0, x2:0, y2:1,"
                       " stop:0 #1b2430, stop:1 #0d1117); border: 1px solid #3a4656; }"
                       "#SSPanelPro { background: transparent; border-top: 3px solid #d62d20;"
                       " border-bottom: 3px solid #d62d20; }"
                       "#lblProduct { color: #ffffff; font-size: 34pt; font-weight: bold;"
                       " font-style: italic; letter-spacing: 2px; }"
                       "#lblTagline { color: #aab4c3; font-size: 10pt; }"
                       "#SSRibbonVersion { color: #f5c518; font-size: 11pt; font-weight: bold; }"
                       "#SSRibbonStatus { color: #d0d7e1; font-size: 9pt; background: #202a37;"
                       " border: 1px solid #3a4656; padding: 4px 8px; }"));

    // Kept for the window's make-up; never shown.
    panelDrag_ = new QFrame(this);
    panelDrag_->setObjectName(QStringLiteral("SSPanelDrag"));
    panelDrag_->hide();

    panelPro_ = new QFrame(this);
    panelPro_->setObjectName(QStringLiteral("SSPanelPro"));
    auto* product = new QLabel(AppTitle(), panelPro_);
    product->setObjectName(QStringLiteral("lblProduct"));
    product->setAlignment(Qt::AlignCenter);
    auto* tagline = new QLabel(QStringLiteral("The drag racer's logbook"), panelPro_);
    tagline->setObjectName(QStringLiteral("lblTagline"));
    tagline->setAlignment(Qt::AlignCenter);
    auto* proLayout = new QVBoxLayout(panelPro_);
    proLayout->setContentsMargins(12, 18, 12, 18);
    proLayout->addWidget(product);
    proLayout->addWidget(tagline);

    ribbonVersion_ = new QLabel(this);
    ribbonVersion_->setObjectName(QStringLiteral("SSRibbonVersion"));
    ribbonVersion_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    ribbonStatus_ = new QLabel(this);
    ribbonStatus_->setObjectName(QStringLiteral("SSRibbonStatus"));
    ribbonStatus_->setTextFormat(Qt::PlainText);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 28, 24, 20);
    layout->addStretch(1);
    layout->addWidget(panelPro_);
    layout->addSpacing(8);
    layout->addWidget(ribbonVersion_);
    layout->addStretch(1);
    layout->addWidget(ribbonStatus_);
}

void frmSplash::setVersion(const QString& text) {
    ribbonVersion_->setText(text);
}

void frmSplash::setStatus(const QString& text) {
    ribbonStatus_->setText(text);
    if (isVisible()) {
        ribbonStatus_->repaint();
    }
}

QString frmSplash::version() const {
    return ribbonVersion_->text();
}

QString frmSplash::status() const {
    return ribbonStatus_->text();
}

void frmSplash::showCentred() {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame = geometry();
        frame.moveCenter(screen->availableGeometry().center());
        move(frame.topLeft());
    }
    show();
    raise();
    activateWindow();
    setFocus();
    repaint();
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
    event->accept();
    close();
    Q_EMIT closedByKey();
}

}  // namespace slipbook::store
