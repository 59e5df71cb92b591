#pragma once

#include "common/messages.h"

#include <QPointer>
#include <QWidget>

namespace slipbook::shell {

// The message seam on screen: a modal QMessageBox over the parent window, if one is set.
class QtMessages : public Messages {
public:
    explicit QtMessages(QWidget* parent = nullptr) : parent_(parent) {}

    void setParent(QWidget* parent) { parent_ = parent; }
    QWidget* parent() const { return parent_; }

    MsgAnswer show(const Message& message) override;

private:
    QPointer<QWidget> parent_;
};

}  // namespace slipbook::shell
