#include "optyperegistry.h"

#include <map>
#include <mutex>
#include <utility>

namespace VlScenelibEngine {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<const OpType>> types;
};

Registry& registry() {
    // Never destroyed: ops may be cooked until the process ends.
    static Registry& theRegistry = *new Registry;
    return theRegistry;
}

} // namespace

void registerOpType(const std::string& name, std::shared_ptr<const OpType> type) {
    Registry& types = registry();
    const std::lock_guard lock(types.mutex);
    types.types[name] = std::move(type);
}

std::vector<std::string> getOpTypeNames() {
    Registry& types = registry();
    const std::lock_guard lock(types.mutex);
    std::vector<std::string> names;
    names.reserve(types.types.size());
    for (const auto& [name, type] : types.types) {
        names.push_back(name);
    }
    return names;
}

std::shared_ptr<const OpType> findOpType(const std::string& name) {
    Registry& types = registry();
    const std::lock_guard lock(types.mutex);
    const auto found = types.types.find(name);
    return found == types.types.end() ? nullptr : found->second;
}

} // namespace VlScenelibEngine
