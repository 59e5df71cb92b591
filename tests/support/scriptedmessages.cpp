#include "support/scriptedmessages.h"

namespace slipbook::test {

MsgAnswer ScriptedMessages::show(const Message& message) {
    shown.push_back(message);
    if (!script_.empty()) {
        MsgAnswer a = script_.front();
        script_.pop_front();
        return a;
    }
    switch (message.buttons) {
        case MsgButtons::Ok:
            return MsgAnswer::Ok;
        case MsgButtons::OkCancel:
            return message.defaultAnswer == MsgAnswer::Cancel ? MsgAnswer::Cancel : MsgAnswer::Ok;
        default:
            return message.defaultAnswer;
    }
}

}  // namespace slipbook::test
