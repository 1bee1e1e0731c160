#pragma once

#include "support/viewporttest.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ViewerAPI::test {

/// The calls by which a pick clears its surface.
inline const Lines kClears = {"glClearColor 1 1 1 1", "glClear COLOR", "glClearColor 0 0 0 0",
                              "glClear DEPTH"};
/// The id of a pixel that shows nothing.
inline constexpr std::uint32_t kBackground = 0xFFFFFFFF;

inline Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// "0=10 2=12": what an id stands for.
std::string pickedText(const VlAttribute::GroupAttribute& picked);

/// A viewport of 8 by 4 pixels that is set up; its surface is framebuffer 1.
class PickingTest : public ViewportTest {
protected:
    void SetUp() override;

    void onEntry(const std::string& entry, const std::function<void()>& action) {
        plugins.hooks[entry] = [action](auto&) { action(); };
    }

    VlViewportLayerHostStruct* addCachedLayer();

    std::string pick(const PixelRegion& region = {0, 0, 2, 2}) {
        return pickedText(viewport->getPickedObjects(region, false, nullptr));
    }

    /// The journal, without the line of glViewport that comes with every binding of the context.
    Lines calls();

    std::unique_ptr<VlViewportHostStruct> viewport;
};

/// The same with a layer that draws one id per draw of its image, and counts its images.
class CachedPickingTest : public PickingTest {
protected:
    void SetUp() override;

    std::string pickLayer(bool deepPicking = false) {
        return pickedText(layer->getPickedObjects({0, 0, 2, 2}, deepPicking, nullptr));
    }

    VlViewportLayerHostStruct* layer = nullptr;
    int images = 0;
};

} // namespace ViewerAPI::test
