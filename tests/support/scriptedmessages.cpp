#include "support/scriptedmessages.h"

#include <gtest/gtest.h>

#include <string>

namespace slipbook::test {

namespace {

bool HasButton(MsgButtons buttons, MsgAnswer a) {
    switch (buttons) {
        case MsgButtons::Ok:
            return a == MsgAnswer::Ok;
        case MsgButtons::OkCancel:
            return a == MsgAnswer::Ok || a == MsgAnswer::Cancel;
        case MsgButtons::YesNo:
            return a == MsgAnswer::Yes || a == MsgAnswer::No;
        case MsgButtons::YesNoCancel:
            return a == MsgAnswer::Yes || a == MsgAnswer::No || a == MsgAnswer::Cancel;
        case MsgButtons::RetryCancel:
            return a == MsgAnswer::Retry || a == MsgAnswer::Cancel;
        case MsgButtons::AbortRetryIgnore:
            return a == MsgAnswer::Abort || a == MsgAnswer::Retry || a == MsgAnswer::Ignore;
    }
    return false;
}

std::string Describe(const Message& m) {
    return "\"" + m.title.toStdString() + "\": \"" + m.text.toStdString() + "\"";
}

MsgAnswer DefaultAnswer(const Message& message) {
    switch (message.buttons) {
        case MsgButtons::Ok:
            return MsgAnswer::Ok;
        case MsgButtons::OkCancel:
            return message.defaultAnswer == MsgAnswer::Cancel ? MsgAnswer::Cancel : MsgAnswer::Ok;
        default:
            return message.defaultAnswer;
    }
}

}  // namespace

const Message& ScriptedMessages::last() const {
    if (shown.empty()) {
        ADD_FAILURE() << "no box was shown";
        static const Message none;
        return none;
    }
    return shown.back();
}

ScriptedMessages::~ScriptedMessages() {
    if (strict && !script_.empty()) {
        ADD_FAILURE() << script_.size() << " scripted answer(s) left: no box came for them";
    }
}

MsgAnswer ScriptedMessages::show(const Message& message) {
    shown.push_back(message);
    if (!script_.empty()) {
        const MsgAnswer a = script_.front();
        script_.pop_front();
        if (strict) {
            EXPECT_TRUE(HasButton(message.buttons, a))
                << "the scripted answer " << static_cast<int>(a) << " is no button of the box "
                << Describe(message);
        }
        return a;
    }
    if (strict && message.buttons != MsgButtons::Ok) {
        ADD_FAILURE() << "a question nobody scripted an answer for: " << Describe(message);
    }
    return DefaultAnswer(message);
}

}  // namespace slipbook::test
