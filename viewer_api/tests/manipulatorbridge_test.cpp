#include "manipulatorbridge.h"

#include "pythonchannel.h"
#include "support/recordingbridge.h"

#include "VlAttribute/IntAttribute.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace ViewerAPI {
namespace {

using VlAttribute::Attribute;
using VlAttribute::IntAttribute;

TEST(ManipulatorBridge, withoutAFactoryAnswersEveryCallAsFailed) {
    setManipulatorBridgeFactory({});
    const auto bridge = createManipulatorBridge();
    ASSERT_NE(bridge, nullptr);
    EXPECT_FALSE(bridge->setValue("/root", "x", IntAttribute(1), true));
    EXPECT_FALSE(bridge->isNodeEditable("node"));
    EXPECT_FALSE(bridge->getValue("/root", "x").isValid());
    EXPECT_EQ(bridge->getManipulationCommitId(), -2);
    bridge->updateOp(1);
    bridge->updateOp(1, "text");
    bridge->openManipulationGroup("/root");
    bridge->closeManipulationGroup("/root");
    bridge->cleanupLiveAttributes("/root");
}

TEST(ManipulatorBridge, isMadeByTheFactoryThatIsSet) {
    test::PluginLog log;
    {
        const test::RecordingBridge recorder(log);
        createManipulatorBridge()->updateOp(7);
    }
    EXPECT_EQ(log.take(), std::vector<std::string>{"bridge updateOp 7"});
    EXPECT_EQ(createManipulatorBridge()->getManipulationCommitId(), -2);
}

TEST(PythonChannel, isSilentWithoutADispatch) {
    setChannelDispatch({});
    EXPECT_FALSE(dispatchChannel(nullptr, "x", IntAttribute(1)).isValid());
}

TEST(PythonChannel, passesObjectNameAndValueAndGivesTheAnswerBack) {
    int object = 0;
    void* seenObject = nullptr;
    std::string seenName;
    Attribute seenValue;
    setChannelDispatch([&](void* target, const char* name, const Attribute& value) {
        seenObject = target;
        seenName = name;
        seenValue = value;
        return IntAttribute(2);
    });
    const Attribute answer = dispatchChannel(&object, "x", IntAttribute(1));
    setChannelDispatch({});
    EXPECT_EQ(seenObject, &object);
    EXPECT_EQ(seenName, "x");
    EXPECT_EQ(seenValue, Attribute(IntAttribute(1)));
    EXPECT_EQ(answer, Attribute(IntAttribute(2)));
}

TEST(PythonChannel, letsTheListenersErrorPass) {
    setChannelDispatch([](void*, const char*, const Attribute&) -> Attribute {
        throw std::runtime_error("listener");
    });
    EXPECT_THROW(dispatchChannel(nullptr, "x", {}), std::runtime_error);
    setChannelDispatch({});
}

} // namespace
} // namespace ViewerAPI
