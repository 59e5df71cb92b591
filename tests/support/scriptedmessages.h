#pragma once

#include "common/messages.h"

#include <deque>
#include <vector>

namespace slipbook::test {

// Records every box and answers questions from a script; an unscripted question gets the
// box's default answer.
class ScriptedMessages : public Messages {
public:
    MsgAnswer show(const Message& message) override;
    void answer(MsgAnswer a) { script_.push_back(a); }

    std::vector<Message> shown;
    const Message& last() const { return shown.back(); }

private:
    std::deque<MsgAnswer> script_;
};

}  // namespace slipbook::test
