#pragma once

#include "livevalues.h"
#include "support/delegatetest.h"

#include <string>
#include <utility>

namespace ViewerAPI::test {

inline constexpr FreezeState kFreezeStates[] = {FreezeState::Idle, FreezeState::Manipulating,
                                                FreezeState::Settling,
                                                FreezeState::WaitingForCommit};

/// A delegate on whose locations values are set as manipulators do. "/root/a" is in the primary
/// view, "/root/camera" in the look-through view, and "/root/both" in both.
class LiveValuesTest : public DelegateTest {
protected:
    LiveValuesTest() {
        client(kLookThroughClient).cache("/root/camera", named("camera"));
        client(kLookThroughClient).cache("/root/both", named("through"));
        populate({{"/root/a", named("a")}, {"/root/both", named("both")}});
    }

    bool set(const std::string& path, const std::string& name, const VlAttribute::Attribute& value,
             bool isFinal = false) {
        return delegate->setManipulatedAttribute(path, name, value, isFinal);
    }
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

    /// What the delegate plug-in was shown, as `path attributes`.
    Lines takeShown() {
        Lines lines;
        for (const RecordedEvent& event : std::exchange(plugin.events, {})) {
            lines.push_back(event.path + " " + textOf(event.attributes));
        }
        return lines;
    }
};

} // namespace ViewerAPI::test
