#include "support/fakehost.h"

#include "VlAttribute/IntAttribute.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/plugin/OptionIds.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string contentOf(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(OSTREL_SOURCE_DIRECTORY "/" + file).rdbuf();
    return text.str();
}

TEST(SelectionCounter, isLoadedAndCounts) {
    ViewerPlugin::pluginHost() = fakePluginHost();
    const PluginFile file("SelectionCounter", OSTREL_TEST_PLUGIN_DIRECTORY);
    const auto* suite = static_cast<const ViewerDelegateComponentPluginSuite*>(
        file.findSuite(VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE, "SelectionCounter"));
    ASSERT_NE(suite, nullptr);
    void* instance = suite->create(nullptr);
    const char* paths[] = {"/root/a", "/root/b"};
    suite->locationsSelected(instance, paths, 2);
    using VlAttribute::Attribute;
    const VlAttribute::IntAttribute count{Attribute::CreateAndSteal(
        suite->getOption(instance, ViewerPlugin::optionId("selectionCount")))};
    EXPECT_EQ(count.getValue(-1), 2);
    suite->destroy(instance);
}

TEST(PluginGuide, showsTheExampleAsItIsCompiled) {
    const std::string example = contentOf("plugins/examples/selectioncounter.cpp");
    ASSERT_FALSE(example.empty());
    EXPECT_NE(contentOf("docs/plugin-guide.md").find("```cpp\n" + example + "```"),
              std::string::npos);
}

} // namespace
