// "TileViewport" draws its tiles and then its layers; "TileLayer" and "CachedTileLayer" draw
// theirs, the latter with the picking cache.

#include "tiles.h"

#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"
#include "viewer_api/plugin/ViewportPlugin.h"

#include <GL/gl.h>

namespace {

using ViewerPlugin::PickRegion;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;

/// The tiles of a plug-in with this kind of host, which must outlive them.
template <class Host>
Tiles tilesOf(const Host& host) {
    return Tiles([&host](const Attribute& object) { return host.addPickableObject(object); },
                 [&host](const PickRegion& region, bool deepPicking, float* depth) {
                     return host.getPickedObjects(region, deepPicking, depth);
                 });
}

class TileViewport : public ViewerPlugin::ViewportPlugin {
public:
    using ViewportPlugin::ViewportPlugin;

    void draw() override {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        tiles.draw(host.getWidth(), host.getHeight());
        for (std::uint32_t i = 0; i < host.getNumberOfLayers(); ++i) {
            ViewerPlugin::ViewportLayerHost(host.getLayerByIndex(i).host).draw();
        }
    }
    void pickerDraw(const PickRegion&, const GroupAttribute& excluded) override {
        tiles.drawIds(excluded, host.getWidth(), host.getHeight());
    }
    void setOption(std::uint64_t optionId, const Attribute& value) override {
        tiles.setOption(ViewerPlugin::optionName(optionId), value);
    }
    Attribute getOption(std::uint64_t optionId) override {
        return tiles.getOption(ViewerPlugin::optionName(optionId));
    }

private:
    Tiles tiles = tilesOf(host);
};

class TileLayer : public ViewerPlugin::ViewportLayerPlugin {
public:
    using ViewportLayerPlugin::ViewportLayerPlugin;

    void draw() override { tiles.draw(viewport().getWidth(), viewport().getHeight()); }
    void pickerDraw(const PickRegion&, const GroupAttribute& excluded) override {
        tiles.drawIds(excluded, viewport().getWidth(), viewport().getHeight());
    }
    void setOption(std::uint64_t optionId, const Attribute& value) override {
        tiles.setOption(ViewerPlugin::optionName(optionId), value);
    }
    Attribute getOption(std::uint64_t optionId) override {
        return tiles.getOption(ViewerPlugin::optionName(optionId));
    }

private:
    Tiles tiles = tilesOf(host);
};

class CachedTileLayer : public TileLayer {
public:
    using TileLayer::TileLayer;
    bool usesPickingCache() override { return true; }
};

} // namespace

VL_REGISTER_PLUGIN(TileViewport, "TileViewport");
VL_REGISTER_PLUGIN(TileLayer, "TileLayer");
VL_REGISTER_PLUGIN(CachedTileLayer, "CachedTileLayer");
