// "CountingDelegate": the least that a delegate plug-in can do with a scene. It reads the world
// matrix of every location it is told of, and keeps sums. Read with `getOption`, each a
// DoubleAttribute; set to anything, "reset" starts anew.
//
// | option | |
// |---|---|
// | "events" | location events |
// | "leaves" | of these, locations without children to show, with new attributes |
// | "checksum" | over these leaves: the translation of the world matrix, x + 3 y + 7 z |
// | "hidden" | events that changed whether the location is hidden |
// | "lastX", "lastZ" | the world translation along x and z of the leaf told of last |

#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegatePlugin.h"

#include <cstdint>
#include <string>

namespace {

class CountingDelegate final : public ViewerPlugin::ViewerDelegatePlugin {
public:
    explicit CountingDelegate(ViewerPlugin::ViewerDelegateHost delegateHost)
        : ViewerDelegatePlugin(delegateHost),
          suite(ViewerPlugin::requireHostSuite<ViewerDelegateHostSuite>()),
          handle(delegateHost.getHandle()) {}

    void locationEvent(const ViewerLocationEvent& event, bool /*handledByComponent*/) override {
        ++events;
        if ((event.flags & kVlLocationEventRemoved) != 0) {
            return;
        }
        if ((event.flags & kVlLocationEventHiddenChanged) != 0) {
            ++hidden;
        }
        if ((event.flags & kVlLocationEventAttributesChanged) == 0) {
            return;
        }
        const DoubleAttribute world(Attribute::CreateAndSteal(
            suite.getWorldXform(handle, event.locationPath, kVlViewerDelegatePrimary)));
        const auto values = world.getNearestSample(0.0F);
        if (values.size() == 16 && (event.flags & kVlLocationEventLeaf) != 0) {
            ++leaves;
            checksum += values[12] + 3.0 * values[13] + 7.0 * values[14];
            lastX = values[12];
            lastZ = values[14];
        }
    }

    void setOption(std::uint64_t optionId, const Attribute& /*value*/) override {
        if (optionId == resetId) {
            events = leaves = checksum = hidden = 0.0;
        }
    }

    Attribute getOption(std::uint64_t optionId) override {
        const std::string name = ViewerPlugin::optionName(optionId);
        for (const auto& [known, value] : {std::pair{"events", &events},
                                           {"leaves", &leaves},
                                           {"checksum", &checksum},
                                           {"hidden", &hidden},
                                           {"lastX", &lastX},
                                           {"lastZ", &lastZ}}) {
            if (name == known) {
                return DoubleAttribute(*value);
            }
        }
        return {};
    }

private:
    const ViewerDelegateHostSuite& suite;
    void* const handle;
    const std::uint64_t resetId = ViewerPlugin::optionId("reset");
    double events = 0.0;
    double leaves = 0.0;
    double checksum = 0.0;
    double hidden = 0.0;
    double lastX = 0.0;
    double lastZ = 0.0;
};

} // namespace

VL_REGISTER_PLUGIN(CountingDelegate, "CountingDelegate");
