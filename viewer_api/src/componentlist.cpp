#include "componentlist.h"

#include "vlviewerdelegatecomponenthost.h"

#include <algorithm>
#include <utility>

namespace ViewerAPI {

ComponentList::ComponentList(VlViewerDelegateHostStruct& delegate) : delegate_(delegate) {}

ComponentList::~ComponentList() {
    clear();
}

ComponentList::Component* ComponentList::addComponent(const std::string& pluginName,
                                                      const std::string& name) {
    // An added component is set up before it stands in the list, an inserted one after: plug-ins
    // that look for themselves from their setup have come to depend on either.
    std::unique_ptr<Component, RetireHostObject> component(new Component(pluginName, &delegate_));
    component->setup();
    entries_.push_back({std::make_unique<const std::string>(name), component.get()});
    snapshot_.reset();
    return component.release();
}

ComponentList::Component* ComponentList::insertComponent(const std::string& pluginName,
                                                         const std::string& name,
                                                         std::uint32_t index) {
    if (index > entries_.size()) {
        return nullptr;
    }
    std::unique_ptr<Component, RetireHostObject> component(new Component(pluginName, &delegate_));
    // The create entry may have changed the list.
    const auto place = std::min<std::size_t>(index, entries_.size());
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(place),
                    {std::make_unique<const std::string>(name), component.get()});
    snapshot_.reset();
    Component* const inserted = component.release();
    // Held here: its setup may remove it.
    const HostCall call(*inserted);
    try {
        inserted->setup();
    } catch (...) {
        if (take(inserted)) {
            HostObject::retire(inserted);
        }
        throw;
    }
    return contains(inserted) ? inserted : nullptr;
}

ComponentList::Component* ComponentList::getComponent(const std::string& name) const {
    const std::int32_t index = getComponentIndex(name);
    return index < 0 ? nullptr : entries_[static_cast<std::size_t>(index)].component;
}

std::int32_t ComponentList::getComponentIndex(const std::string& name) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return *entry.name == name; });
    return found == entries_.end() ? -1 : static_cast<std::int32_t>(found - entries_.begin());
}

ComponentList::Component* ComponentList::getComponentByIndex(std::uint32_t index) const {
    return index < entries_.size() ? entries_[index].component : nullptr;
}

const char* ComponentList::getComponentName(std::uint32_t index) const {
    return index < entries_.size() ? entries_[index].name->c_str() : "";
}

std::uint32_t ComponentList::getNumberOfComponents() const {
    return static_cast<std::uint32_t>(entries_.size());
}

void ComponentList::removeComponent(const std::string& name) {
    const std::int32_t index = getComponentIndex(name);
    if (index >= 0) {
        removeComponentByIndex(static_cast<std::uint32_t>(index));
    }
}

void ComponentList::removeComponentByIndex(std::uint32_t index) {
    if (index >= entries_.size()) {
        return;
    }
    const std::unique_ptr<Component, RetireHostObject> component(entries_[index].component);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    snapshot_.reset();
    component->cleanup();
}

void ComponentList::clear() {
    snapshot_.reset();
    for (const Entry& entry : std::exchange(entries_, {})) {
        HostObject::retire(entry.component);
    }
}

ComponentList::Snapshot ComponentList::snapshot() const {
    if (!snapshot_) {
        auto components = std::make_shared<std::vector<Component*>>();
        components->reserve(entries_.size());
        for (const Entry& entry : entries_) {
            components->push_back(entry.component);
        }
        snapshot_ = std::move(components);
    }
    return snapshot_;
}

bool ComponentList::contains(const Component* component) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const Entry& entry) { return entry.component == component; });
}

bool ComponentList::take(const Component* component) {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.component == component;
    });
    if (found == entries_.end()) {
        return false;
    }
    entries_.erase(found);
    snapshot_.reset();
    return true;
}

} // namespace ViewerAPI
