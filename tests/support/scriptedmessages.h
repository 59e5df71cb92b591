#pragma once

#include "common/messages.h"

#include <deque>
#include <vector>

namespace slipbook::test {

// Records every box and answers from a script, in order. Strict (the default): a question (any
// box with more than an Ok button) that finds no scripted answer fails the test, naming its title
// and text, and is answered with its default; so does an answer the box has no button for, and an
// answer still waiting when the script goes. Plain boxes need no answer.
class ScriptedMessages : public Messages {
public:
    ScriptedMessages() = default;
    ~ScriptedMessages() override;
    ScriptedMessages(const ScriptedMessages&) = delete;
    ScriptedMessages& operator=(const ScriptedMessages&) = delete;

    MsgAnswer show(const Message& message) override;
    // The answer to the next box.
    void answer(MsgAnswer a) { script_.push_back(a); }

    std::vector<Message> shown;
    // The last box shown; with none, an empty one and a failure.
    const Message& last() const;
    // Off: an unscripted question gets its default answer, and nothing is checked.
    bool strict = true;

private:
    std::deque<MsgAnswer> script_;
};

}  // namespace slipbook::test
