#include "hostcalls.h"

#include "probe.h"

#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuiteV2.h"
#include "viewer_api/plugin/HostSuites.h"

#include <stdexcept>

namespace probe {

namespace {

/// The calls that are the same in both versions, through the table of either.
template <class Suite>
HostCalls commonCalls(const Suite& s) {
    HostCalls calls;
    const auto list = [&calls](const char* name,
                               void (*entry)(void*, const char**, std::uint32_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.paths(), a.count());
            return std::string("done");
        };
    };
    list("openLocations", s.openLocations);
    list("closeLocations", s.closeLocations);
    list("pinLocations", s.pinLocations);
    list("unpinLocations", s.unpinLocations);
    list("activateSourceLocations", s.activateSourceLocations);
    list("deactivateSourceLocations", s.deactivateSourceLocations);
    list("selectLocations", s.selectLocations);
    list("hideLocations", s.hideLocations);
    list("unhideLocations", s.unhideLocations);

    const auto text = [&calls](const char* name, void (*entry)(void*, const char*)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, a.text(0));
            return std::string("done");
        };
    };
    text("selectLocation", s.selectLocation);
    text("openManipulationGroup", s.openManipulationGroup);
    text("closeManipulationGroup", s.closeManipulationGroup);
    text("removeComponent", s.removeComponent);
    text("removeViewport", s.removeViewport);

    const auto byte = [&calls](const char* name, void (*entry)(void*, std::uint8_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, static_cast<std::uint8_t>(a.number(0)));
            return std::string("done");
        };
    };
    byte("setWorkingSetVisibilityEnabled", s.setWorkingSetVisibilityEnabled);
    byte("setBoundingBoxesEnabled", s.setBoundingBoxesEnabled);
    byte("setProxyGeometryEnabled", s.setProxyGeometryEnabled);

    const auto removeAt = [&calls](const char* name, void (*entry)(void*, std::uint32_t)) {
        calls[name] = [entry](void* host, Arguments& a) {
            entry(host, static_cast<std::uint32_t>(a.number(0)));
            return std::string("done");
        };
    };
    removeAt("removeComponentByIndex", s.removeComponentByIndex);
    removeAt("removeViewportByIndex", s.removeViewportByIndex);

    const auto view = [&calls](const char* name,
                               VlAttributeStruct* (*entry)(void*, const char*, int)) {
        calls[name] = [entry](void* host, Arguments& a) {
            return textOfResult(entry(host, a.text(0), a.number(1, 0)));
        };
    };
    view("getAttributes", s.getAttributes);
    view("getWorldXform", s.getWorldXform);
    view("getParentXform", s.getParentXform);
    view("getLiveAttributes", s.getLiveAttributes);
    view("getCookedAttributes", s.getCookedAttributes);

    calls["getLocalXform"] = [&s](void* host, Arguments& a) {
        std::uint8_t isAbsolute = 7;
        const std::string matrix =
            textOfResult(s.getLocalXform(host, a.text(0), &isAbsolute, a.number(1, 0)));
        return matrix + " absolute=" + std::to_string(isAbsolute);
    };
    calls["setViewOp"] = [&s](void* host, Arguments& a) {
        return std::to_string(s.setViewOp(host, a.number(0)));
    };
    calls["getWorkingSetVisibilityEnabled"] = [&s](void* host, Arguments&) {
        return std::to_string(s.getWorkingSetVisibilityEnabled(host));
    };
    calls["isProcessing"] = [&s](void* host, Arguments&) {
        return std::to_string(s.isProcessing(host));
    };
    calls["setVisibilityWorkingSet"] = [&s](void* host, Arguments& a) {
        s.setVisibilityWorkingSet(host, parseAttribute(a.rest(0)).getHandle());
        return std::string("done");
    };
    calls["getSelectedLocations"] = [&s](void* host, Arguments&) {
        return textOfResult(s.getSelectedLocations(host));
    };
    calls["getHiddenLocations"] = [&s](void* host, Arguments&) {
        return textOfResult(s.getHiddenLocations(host));
    };
    calls["unhideAllLocations"] = [&s](void* host, Arguments&) {
        s.unhideAllLocations(host);
        return std::string("done");
    };
    calls["getDescendantLocations"] = [&s](void* host, Arguments& a) {
        return textOfResult(s.getDescendantLocations(host, a.text(0)));
    };
    calls["callPythonCallback"] = [&s](void* host, Arguments& a) {
        return textOfResult(
            s.callPythonCallback(host, a.text(0), parseAttribute(a.rest(1)).getHandle()));
    };
    calls["setManipulatedAttribute"] = [&s](void* host, Arguments& a) {
        return std::to_string(s.setManipulatedAttribute(
            host, a.text(0), a.text(1), parseAttribute(a.rest(3)).getHandle(), a.number(2)));
    };
    calls["computeMergedExtent"] = [&s](void* host, Arguments& a) {
        return textOfResult(s.computeMergedExtent(host, a.paths(1), a.count(1), a.text(0)));
    };

    calls["getCompatibleManipulatorsInfo"] = [&s](void* host, Arguments& a) {
        return textOfResult(s.getCompatibleManipulatorsInfo(host, a.paths(), a.count()));
    };

    calls["addComponent"] = [&s](void* host, Arguments& a) {
        FoundObject found;
        s.addComponent(host, a.text(0), a.text(1), &found.host, &found.instance, &found.suite);
        return found.text();
    };
    calls["insertComponent"] = [&s](void* host, Arguments& a) {
        FoundObject found;
        s.insertComponent(host, a.text(0), a.text(1), static_cast<std::uint32_t>(a.number(2)),
                          &found.host, &found.instance, &found.suite);
        return found.text();
    };
    calls["addViewport"] = [&s](void* host, Arguments& a) {
        s.addViewport(host, a.address(0), a.text(1));
        return std::string("done");
    };
    const auto byName = [&calls](const char* name,
                                 void (*entry)(void*, const char*, void**, void**, const void**)) {
        calls[name] = [entry](void* host, Arguments& a) {
            FoundObject found;
            entry(host, a.text(0), &found.host, &found.instance, &found.suite);
            return found.text();
        };
    };
    byName("getComponent", s.getComponent);
    byName("getViewport", s.getViewport);
    const auto byIndex = [&calls](const char* name, void (*entry)(void*, std::uint32_t, void**,
                                                                  void**, const void**)) {
        calls[name] = [entry](void* host, Arguments& a) {
            FoundObject found;
            entry(host, static_cast<std::uint32_t>(a.number(0)), &found.host, &found.instance,
                  &found.suite);
            return found.text();
        };
    };
    byIndex("getComponentByIndex", s.getComponentByIndex);
    byIndex("getViewportByIndex", s.getViewportByIndex);
    calls["getNumberOfComponents"] = [&s](void* host, Arguments&) {
        return std::to_string(s.getNumberOfComponents(host));
    };
    calls["getNumberOfViewports"] = [&s](void* host, Arguments&) {
        return std::to_string(s.getNumberOfViewports(host));
    };
    calls["getComponentName"] = [&s](void* host, Arguments& a) {
        return textOfResult(s.getComponentName(host, static_cast<std::uint32_t>(a.number(0))));
    };
    calls["getViewportName"] = [&s](void* host, Arguments& a) {
        return textOfResult(s.getViewportName(host, static_cast<std::uint32_t>(a.number(0))));
    };
    calls["getComponentIndex"] = [&s](void* host, Arguments& a) {
        return std::to_string(s.getComponentIndex(host, a.text(0)));
    };
    return calls;
}

} // namespace

const HostCalls& delegateCalls() {
    static const HostCalls kCalls = [] {
        const auto& s = ViewerPlugin::requireHostSuite<ViewerDelegateHostSuite>();
        HostCalls calls = commonCalls(s);
        calls["getPartialXform"] = [&s](void* host, Arguments& a) {
            return textOfResult(s.getPartialXform(host, a.text(0), a.text(1), a.text(2),
                                                  a.number(3), a.number(4), a.number(5),
                                                  a.number(6), a.number(7)));
        };
        return calls;
    }();
    return kCalls;
}

const HostCalls& delegateCalls2() {
    static const HostCalls kCalls = [] {
        const auto* found =
            static_cast<const ViewerDelegateHostSuiteV2*>(ViewerPlugin::pluginHost()->getSuite(
                VL_VIEWER_DELEGATE_HOST_SUITE, VL_VIEWER_DELEGATE_HOST_SUITE_VERSION_2));
        if (!found) {
            throw std::runtime_error("Probe: no ViewerDelegateHost version 2");
        }
        const auto& s = *found;
        HostCalls calls = commonCalls(s);
        calls["getPartialXform"] = [&s](void* host, Arguments& a) {
            return textOfResult(
                s.getPartialXform(host, a.text(0), a.text(1), a.text(2), a.number(3), a.number(4)));
        };
        return calls;
    }();
    return kCalls;
}

const HostCalls& componentCalls() {
    static const HostCalls kCalls = {
        {"getViewerDelegate", [](void* host, Arguments&) {
             FoundObject found;
             ViewerPlugin::requireHostSuite<ViewerDelegateComponentHostSuite>().getViewerDelegate(
                 host, &found.host, &found.instance, &found.suite);
             return found.text();
         }}};
    return kCalls;
}

} // namespace probe
