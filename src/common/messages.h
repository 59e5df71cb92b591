#pragma once

#include <QString>

namespace slipbook {

// Every message box and question of the program goes through this one seam, so that tests can
// answer questions and check exact texts and titles.
enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };
enum class MsgAnswer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

struct Message {
    QString text;
    QString title;
    MsgIcon icon = MsgIcon::None;
    MsgButtons buttons = MsgButtons::Ok;
    // The button that Enter presses; the first button of the set when left as Ok.
    MsgAnswer defaultAnswer = MsgAnswer::Ok;
};

class Messages {
public:
    virtual ~Messages() = default;
    virtual MsgAnswer show(const Message& message) = 0;

    // Shorthands for the common shapes.
    void inform(const QString& text, const QString& title = {}, MsgIcon icon = MsgIcon::None) {
        show({text, title, icon, MsgButtons::Ok, MsgAnswer::Ok});
    }
    MsgAnswer ask(const QString& text, const QString& title, MsgButtons buttons,
                  MsgAnswer defaultAnswer, MsgIcon icon = MsgIcon::Question) {
        return show({text, title, icon, buttons, defaultAnswer});
    }
};

}  // namespace slipbook
