#include "livevalues.h"

#include "support/delegatetest.h"

#include <functional>
#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// setManipulatedAttribute and the manipulation groups: what a manipulator's value does at once,
/// and what ends it. "/root/a" is in the primary view, "/root/camera" in the look-through view,
/// "/root/both" in both.
class LiveValuesTest : public DelegateTest {
protected:
    LiveValuesTest() {
        client(kLookThroughClient).cache("/root/camera", named("camera"));
        client(kLookThroughClient).cache("/root/both", named("both through"));
        populate({{"/root/a", named("a")}, {"/root/both", named("both")}});
    }

    bool set(const std::string& path, const std::string& name, const Attribute& value,
             bool isFinal = false) {
        return delegate->setManipulatedAttribute(path, name, value, isFinal);
    }
    bool set(const std::string& path, int value) { return set(path, "live", IntAttribute(value)); }
    void pump() { delegate->processLocationEvents(); }

    [[nodiscard]] std::string shown(const std::string& path, int view = 0) const {
        return textOf(delegate->getAttributes(path, view));
    }
    [[nodiscard]] std::string live(const std::string& path, int view = 0) const {
        return textOf(delegate->getLiveAttributes(path, view));
    }
    [[nodiscard]] std::string cooked(const std::string& path, int view = 0) const {
        return textOf(delegate->getCookedAttributes(path, view));
    }
    [[nodiscard]] FreezeState state() const { return delegate->manipulationFreeze.freezeState; }

    /// What the plug-in was shown, in order, as `path attributes`.
    Lines heard() {
        Lines lines;
        for (const RecordedEvent& event : std::exchange(plugin.events, {}))
            lines.push_back(event.path + " " + textOf(event.attributes));
        return lines;
    }
};

// ---- One value, step by step

TEST_F(LiveValuesTest, aValueGoesToTheBridgeFirstAndToThePluginLast) {
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_THAT(log.take(), ElementsAre("bridge setValue /root/a x 1",
                                        "D locationEvent /root/a attributesChanged "
                                        "handled=0"));
}

} // namespace
} // namespace ViewerAPI::test
