#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI {

struct VlViewerDelegateComponentHostStruct;
struct VlViewerDelegateHostStruct;

/// A delegate's components in order. Names need not be unique: a look-up finds the first.
///
/// A plug-in may change the list from within any of its entries. So the list is walked by its
/// snapshot(), passing over what it no longer contains(), and a component that is removed during
/// its own call is deleted when the outermost call returns. [ui-thread]
class ComponentList {
public:
    using Component = VlViewerDelegateComponentHostStruct;
    using Snapshot = std::shared_ptr<const std::vector<Component*>>;

    explicit ComponentList(VlViewerDelegateHostStruct& delegate);
    /// Ends the components that are left, as clear() does.
    ~ComponentList();
    ComponentList(const ComponentList&) = delete;
    ComponentList& operator=(const ComponentList&) = delete;

    /// Makes a component, sets it up and appends it; throws when its plug-in can't be loaded.
    Component* addComponent(const std::string& pluginName, const std::string& name);

    /// Makes a component, inserts it before the one at `index` and sets it up there. Null, and
    /// nothing is made, when `index` exceeds the count; throws as addComponent does.
    Component* insertComponent(const std::string& pluginName, const std::string& name,
                               std::uint32_t index);

    [[nodiscard]] Component* getComponent(const std::string& name) const;
    /// -1 when there is none.
    [[nodiscard]] std::int32_t getComponentIndex(const std::string& name) const;
    [[nodiscard]] Component* getComponentByIndex(std::uint32_t index) const;
    /// "" when out of range; valid until the component goes.
    [[nodiscard]] const char* getComponentName(std::uint32_t index) const;
    [[nodiscard]] std::uint32_t getNumberOfComponents() const;

    /// Takes the component out, calls its cleanup and ends it.
    void removeComponent(const std::string& name);
    void removeComponentByIndex(std::uint32_t index);

    /// Ends all components, first to last, without their cleanup. The list is empty before the
    /// first of them ends.
    void clear();

    /// The list as it is now; cheap.
    [[nodiscard]] Snapshot snapshot() const;
    /// Whether the list is still as it was then.
    [[nodiscard]] bool isCurrent(const Snapshot& snapshot) const { return snapshot == snapshot_; }
    [[nodiscard]] bool contains(const Component* component) const;

private:
    struct Entry {
        /// Behind a pointer, so that getComponentName()'s answer outlives changes of the list.
        std::unique_ptr<const std::string> name;
        Component* component;
    };

    bool take(const Component* component);

    VlViewerDelegateHostStruct& delegate_;
    std::vector<Entry> entries_;
    mutable Snapshot snapshot_;
};

} // namespace ViewerAPI
