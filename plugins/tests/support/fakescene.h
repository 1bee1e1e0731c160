#pragma once

#include "support/fakehost.h"

#include "VlAttribute/GroupAttribute.h"

#include <Imath/ImathMatrix.h>

#include <cstdint>
#include <memory>
#include <string>

/// A delegate with viewports of the bundled plug-ins, in the fake host.
class FakeScene {
public:
    FakeScene();
    FakeScene(const FakeScene&) = delete;
    FakeScene& operator=(const FakeScene&) = delete;
    /// Destroys the plug-ins as the host does: layers, viewports, delegate.
    ~FakeScene();

    FakeViewport& addViewport(int width, int height);
    FakeLayer& addLayer(FakeViewport& viewport, const std::string& pluginName);
    /// A perspective camera at `eye` that looks at the origin, made active.
    FakeCamera& addCamera(FakeViewport& viewport, const Imath::V3d& eye);

    void tell(const std::string& path, const VlAttribute::GroupAttribute& attributes,
              const Imath::M44d& xform = {}, std::uint32_t flags = 0);
    void remove(const std::string& path);

    const PluginFile& getSceneView() const { return sceneView; }

    FakeDelegate delegate;
    std::vector<std::unique_ptr<FakeViewport>> viewports;

private:
    PluginFile sceneView;
    PluginFile cameras;
};
