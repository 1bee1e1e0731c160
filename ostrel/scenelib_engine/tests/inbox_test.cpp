#include "inbox.h"

#include "oprecord.h"

#include "VlAttribute/IntAttribute.h"

#include <gtest/gtest.h>

namespace {

using namespace VlScenelibEngine;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

GraphEdit argsOf(const std::shared_ptr<OpRecord>& op, int value) {
    GraphEdit edit;
    edit.kind = GraphEdit::Kind::Args;
    edit.op = op;
    edit.typeName = "no-op";
    edit.args = GroupAttribute{{"value", IntAttribute(value)}};
    return edit;
}

TEST(Inbox, ofArgumentsThatFollowEachOtherTheNewestWait) {
    const auto inbox = std::make_shared<Inbox>();
    const auto dragged = std::make_shared<OpRecord>(1, inbox);
    const auto other = std::make_shared<OpRecord>(2, inbox);
    for (int id = 1; id <= 1000; ++id) {
        inbox->postCommit({id, {argsOf(dragged, id)}});
    }
    inbox->postCommit({1001, {argsOf(other, 1)}});
    inbox->postCommit({1002, {argsOf(other, 2), argsOf(dragged, 2)}});
    inbox->postCommit({1003, {argsOf(dragged, 3)}});
    const Inbox::Letters letters = inbox->take(Inbox::Activity::Working);
    ASSERT_EQ(letters.commits.size(), 4U);
    EXPECT_EQ(letters.commits[0].id, 1000);
    EXPECT_EQ(IntAttribute(letters.commits[0].edits[0].args.getChildByName("value")).getValue(),
              1000);
    EXPECT_EQ(letters.commits[3].id, 1003);
    EXPECT_EQ(inbox->getNewestCommit(), 1003);
}

} // namespace
