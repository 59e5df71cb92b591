#include "shell/ui/qtmessages.h"

#include <QMessageBox>
#include <utility>
#include <vector>

namespace slipbook::shell {

namespace {

QMessageBox::Icon BoxIcon(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::Critical:
            return QMessageBox::Critical;
        case MsgIcon::Question:
            return QMessageBox::Question;
        case MsgIcon::Exclamation:
            return QMessageBox::Warning;
        case MsgIcon::Information:
            return QMessageBox::Information;
        case MsgIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

using ButtonPair = std::pair<MsgAnswer, QMessageBox::StandardButton>;

std::vector<ButtonPair> BoxButtons(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::Ok:
            return {{MsgAnswer::Ok, QMessageBox::Ok}};
        case MsgButtons::OkCancel:
            return {{MsgAnswer::Ok, QMessageBox::Ok}, {MsgAnswer::Cancel, QMessageBox::Cancel}};
        case MsgButtons::YesNo:
            return {{MsgAnswer::Yes, QMessageBox::Yes}, {MsgAnswer::No, QMessageBox::No}};
        case MsgButtons::YesNoCancel:
            return {{MsgAnswer::Yes, QMessageBox::Yes},
                    {MsgAnswer::No, QMessageBox::No},
                    {MsgAnswer::Cancel, QMessageBox::Cancel}};
        case MsgButtons::RetryCancel:
            return {{MsgAnswer::Retry, QMessageBox::Retry},
                    {MsgAnswer::Cancel, QMessageBox::Cancel}};
        case MsgButtons::AbortRetryIgnore:
            return {{MsgAnswer::Abort, QMessageBox::Abort},
                    {MsgAnswer::Retry, QMessageBox::Retry},
                    {MsgAnswer::Ignore, QMessageBox::Ignore}};
    }
    return {{MsgAnswer::Ok, QMessageBox::Ok}};
}

// Texts are joined with a carriage return alone in places; a label only breaks on line feeds.
QString DisplayText(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    return text;
}

}  // namespace

MsgAnswer QtMessages::show(const Message& message) {
    QMessageBox box(parent_);
    box.setIcon(BoxIcon(message.icon));
    box.setWindowTitle(message.title);
    // Texts such as "<All Events>" must not be taken for markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(DisplayText(message.text));

    const std::vector<ButtonPair> buttons = BoxButtons(message.buttons);
    QMessageBox::StandardButtons standard;
    for (const ButtonPair& b : buttons) {
        standard |= b.second;
    }
    box.setStandardButtons(standard);
    QMessageBox::StandardButton preferred = buttons.front().second;
    for (const ButtonPair& b : buttons) {
        if (b.first == message.defaultAnswer) {
            preferred = b.second;
        }
    }
    box.setDefaultButton(preferred);
    // Escape answers Cancel where there is one, as the platform's boxes do.
    for (const ButtonPair& b : buttons) {
        if (b.first == MsgAnswer::Cancel) {
            box.setEscapeButton(b.second);
        }
    }

    const auto clicked = static_cast<QMessageBox::StandardButton>(box.exec());
    for (const ButtonPair& b : buttons) {
        if (b.second == clicked) {
            return b.first;
        }
    }
    // Closed by the window's own box: the answer of the escape path.
    for (const ButtonPair& b : buttons) {
        if (b.first == MsgAnswer::Cancel) {
            return MsgAnswer::Cancel;
        }
    }
    return message.buttons == MsgButtons::YesNo ? MsgAnswer::No : buttons.back().first;
}

}  // namespace slipbook::shell
