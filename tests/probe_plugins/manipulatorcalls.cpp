#include "callbuilder.h"

#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/plugin/HostSuites.h"

namespace probe {

const HostCalls& manipulatorCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ManipulatorHostSuite>();
        CallBuilder b;
        b.query("getPluginName", s.getPluginName);
        b.query("event", s.event);
        b.query("draw", s.draw);
        b.query("pickerDraw", s.pickerDraw);
        b.query("getXform", s.getXform);
        b.action("setXform", s.setXform);
        b.query("calculateXform", s.calculateXform);
        b.object("getViewport", s.getViewport);
        b.query("getLocationPaths", s.getLocationPaths);
        b.object("addManipulatorHandle", s.addManipulatorHandle);
        b.object("getManipulatorHandle", s.getManipulatorHandle);
        b.object("getManipulatorHandleByIndex", s.getManipulatorHandleByIndex);
        b.action("removeManipulatorHandle", s.removeManipulatorHandle);
        b.action("removeManipulatorHandleByIndex", s.removeManipulatorHandleByIndex);
        b.query("getNumberOfManipulatorHandles", s.getNumberOfManipulatorHandles);
        b.query("getManipulatorHandleName", s.getManipulatorHandleName);
        b.query("isEditable", s.isEditable);
        b.action("openManipulationGroup", s.openManipulationGroup);
        b.action("closeManipulationGroup", s.closeManipulationGroup);
        b.calls["getValue"] = [&s](void* host, Arguments& a) {
            return textOfResult(s.getValue(host, a.text(0), a.text(1)));
        };
        b.calls["setValue"] = [&s](void* host, Arguments& a) {
            return std::to_string(s.setValue(host, a.text(0), a.text(1),
                                             parseAttribute(a.rest(3)).getHandle(), a.number(2)));
        };
        // The tags of one plug-in: which others there are is not the probe's to say.
        b.calls["getRegisteredManipulatorsInfo"] = [&s](void*, Arguments& a) {
            const VlAttribute::GroupAttribute info(
                VlAttribute::Attribute::CreateAndSteal(s.getRegisteredManipulatorsInfo()));
            return textOfResult(info.getChildByName(a.text(0)).detach());
        };
        return b.calls;
    }();
    return kCalls;
}

const HostCalls& handleCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ManipulatorHandleHostSuite>();
        CallBuilder b;
        b.object("getManipulator", s.getManipulator);
        b.query("getCombinedXform", s.getCombinedXform);
        b.action("setLocalXform", s.setLocalXform);
        b.query("getLocalXform", s.getLocalXform);
        b.query("event", s.event);
        b.action("draw", s.draw);
        b.action("pickerDraw", s.pickerDraw);
        b.query("setEngaged", s.setEngaged);
        b.query("isEngaged", s.isEngaged);
        b.query("setMarked", s.setMarked);
        b.query("isMarked", s.isMarked);
        b.action("notifyPlugin", s.notifyPlugin);
        return b.calls;
    }();
    return kCalls;
}

} // namespace probe
