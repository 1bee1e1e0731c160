#pragma once

#include "factoryproduct.h"
#include "locationchange.h"

#include "VlAttribute/GroupAttribute.h"

#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace ViewerAPI {

class VlProxyFactory;
struct VlViewerDelegateHostStruct;

/// The two factories of a delegate, for bounding boxes and for proxy geometry. Every operation goes
/// to the one and then to the other.
///
/// A factory that is switched off costs nothing: it is not told of changes and knows no location.
/// Switched on, it learns from the owner's primary tree what it would have come to know.
/// [ui-thread]
class VlProxyFactoryList {
public:
    VlProxyFactoryList();
    ~VlProxyFactoryList();
    VlProxyFactoryList(const VlProxyFactoryList&) = delete;
    VlProxyFactoryList& operator=(const VlProxyFactoryList&) = delete;

    /// Until this is called the list is empty, and its operations do nothing.
    void createFactories();
    /// Throws std::runtime_error when the scene library's services are not to be had.
    void initialise();
    /// Not owned; it outlives the list. Without one, what is switched on knows nothing yet.
    void setOwner(VlViewerDelegateHostStruct* delegate);
    /// May be null.
    void setSystemArgs(const VlAttribute::GroupAttribute& args);

    void setBoundingBoxesEnabled(bool isEnabled);
    void setProxyGeometryEnabled(bool isEnabled);

    /// What plug-ins were told of the primary tree, in that order. Changes of generated locations
    /// are passed over: no factory works on what another made.
    void applyChanges(std::span<const LocationChange> changes);
    /// Appends what is to be done to the generated locations, in order.
    void collectProducts(std::vector<FactoryProduct>& out);
    [[nodiscard]] bool hasPendingWork() const;
    void removeSubtree(std::string_view path);
    void clear();

private:
    void setEnabled(VlProxyFactory& factory, bool isEnabled);
    /// Makes known what plug-ins have been told of.
    void learn(VlProxyFactory& factory) const;
    static void applyChange(VlProxyFactory& factory, const LocationChange& change);

    const VlViewerDelegateHostStruct* owner_ = nullptr;
    std::vector<std::unique_ptr<VlProxyFactory>> factories_;
};

} // namespace ViewerAPI
