#include "manipulatorregistry.h"

#include "pluginentries.h"
#include "plugininstance.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlPluginSystem/PluginManager.h"

#include <algorithm>
#include <string>
#include <vector>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

namespace {

template <class Predicate>
GroupAttribute collectTags(const Predicate& isListed) {
    const PluginKindInfo& kind = pluginKindInfo(PluginKind::Manipulator);
    std::vector<std::string> names;
    PluginManager::getPluginNames(kind.typeName, names, kind.apiVersion);
    GroupBuilder info;
    for (const std::string& name : names) {
        const ManipulatorPluginSuite* const suite = loadManipulatorSuite(name);
        // One that no instance can be made of must not keep the others from being listed.
        if (suite && getMissingEntries(PluginKind::Manipulator, suite).empty() &&
            isListed(*suite)) {
            info.set(name, GroupAttribute(Attribute::CreateAndSteal(suite->getTags())));
        }
    }
    return info.build();
}

} // namespace

const ManipulatorPluginSuite* loadManipulatorSuite(std::string_view pluginName) {
    return static_cast<const ManipulatorPluginSuite*>(
        loadPluginSuite(PluginKind::Manipulator, pluginName));
}

GroupAttribute getRegisteredManipulatorsInfo() {
    return collectTags([](const ManipulatorPluginSuite&) { return true; });
}

GroupAttribute getCompatibleManipulatorsInfo(std::span<const GroupAttribute> locations) {
    return collectTags([locations](const ManipulatorPluginSuite& suite) {
        return std::any_of(locations.begin(), locations.end(), [&suite](const auto& attributes) {
            return suite.matches(attributes.getHandle()) != 0;
        });
    });
}

} // namespace ViewerAPI
