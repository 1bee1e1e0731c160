#include "support/fakehost.h"

#include "VlAttribute/IntAttribute.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/plugin/OptionIds.h"

#include <gtest/gtest.h>

// The example in C, loaded and driven as the host does it.
namespace {

class LocationCounter : public testing::Test {
protected:
    LocationCounter()
        : file("LocationCounter", OSTREL_TEST_PLUGIN_DIRECTORY),
          suite(static_cast<const ViewerDelegateComponentPluginSuite*>(
              file.findSuite(VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE, "LocationCounter"))) {
        ViewerPlugin::pluginHost() = fakePluginHost();
        instance = suite->create(this);
    }
    ~LocationCounter() override { suite->destroy(instance); }

    int tell(const char* path, std::uint32_t flags) {
        const ViewerLocationEvent event{path, nullptr, nullptr, flags};
        return suite->locationEvent(instance, &event, 0);
    }
    [[nodiscard]] int count() const {
        using VlAttribute::Attribute;
        return VlAttribute::IntAttribute(Attribute::CreateAndSteal(suite->getOption(
                                             instance, ViewerPlugin::optionId("locationCount"))))
            .getValue(-1);
    }

    PluginFile file;
    const ViewerDelegateComponentPluginSuite* suite;
    void* instance = nullptr;
};

TEST_F(LocationCounter, countsLocationsOnce) {
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(tell("/root", kVlLocationEventAttributesChanged), 0);
    tell("/root", kVlLocationEventXformChanged);
    tell("/root/a", kVlLocationEventAttributesChanged);
    EXPECT_EQ(count(), 2);
}

TEST_F(LocationCounter, removalCoversEverythingBelow) {
    for (const char* path : {"/root", "/root/a", "/root/a/b", "/root/ab"}) {
        tell(path, kVlLocationEventAttributesChanged);
    }
    tell("/root/a", kVlLocationEventRemoved);
    EXPECT_EQ(count(), 2);
}

TEST_F(LocationCounter, releasesTheReferenceThatComesWithAnOption) {
    VlAttribute::IntAttribute value(5);
    suite->setOption(instance, 1, value.getRetainedHandle());
    suite->setOption(instance, 1, nullptr);
    EXPECT_EQ(suite->getOption(instance, 1), nullptr);
}

} // namespace
