#include "VlAttribute/IntAttribute.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegateComponentPlugin.h"

/// Counts the selected locations. Option "selectionCount" (int, read only).
class SelectionCounter : public ViewerPlugin::ViewerDelegateComponentPlugin {
public:
    using ViewerDelegateComponentPlugin::ViewerDelegateComponentPlugin;

    void locationsSelected(std::span<const char* const> paths) override {
        count = static_cast<std::int32_t>(paths.size());
    }
    Attribute getOption(std::uint64_t optionId) override {
        return optionId == countId ? VlAttribute::IntAttribute(count) : Attribute();
    }

private:
    const std::uint64_t countId = ViewerPlugin::optionId("selectionCount");
    std::int32_t count = 0;
};

VL_REGISTER_PLUGIN(SelectionCounter, "SelectionCounter");
