#pragma once

#include "support/delegatetest.h"
#include "support/factorytest.h"
#include "vlproxygeometryfactory.h"

#include "VlAttribute/FloatAttribute.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace ViewerAPI::test {

/// A proxy factory whose cooks finish when, and as, the test says. Its delegate is there only for
/// the channel that files are asked for by.
class ProxyFactoryTest : public DelegateTest {
protected:
    ProxyFactoryTest() {
        factory.setAttributeName("proxies");
        factory.skipGeometry = false;
        factory.initialise();
        factory.setOwner(delegate.get());
        cooks().takeCalls();
    }

    ScriptedRuntime& cooks() { return runtime->independent(); }

    /// The attributes of a location with this proxy: an op that loads `what`, and more children of
    /// the proxy group.
    static VlAttribute::GroupAttribute
    proxied(const std::string& what,
            std::initializer_list<std::pair<const char*, VlAttribute::Attribute>> more = {}) {
        VlAttribute::GroupBuilder builder;
        builder.set("proxies.viewer.load.opType", VlAttribute::StringAttribute("Load"));
        builder.set("proxies.viewer.load.opArgs.what", VlAttribute::StringAttribute(what));
        for (const auto& [name, value] : more) {
            builder.set(std::string("proxies.") + name, value);
        }
        return builder.build();
    }

    static VlAttribute::GroupAttribute systemAt(float time) {
        return VlAttribute::GroupBuilder()
            .set("timeSlice.currentTime", VlAttribute::FloatAttribute(time))
            .build();
    }

    /// A scene of these locations, each path ("/a/b") after its parent's, below a root; each with
    /// an attribute `of`, which says `text`.
    static VlAttribute::GroupAttribute sceneOf(const std::string& text,
                                               const std::vector<std::string>& paths) {
        const VlAttribute::StringAttribute of(text);
        VlAttribute::GroupBuilder builder;
        builder.set("a.of", of);
        for (const std::string& path : paths) {
            std::string place;
            for (std::size_t begin = 1; begin <= path.size();) {
                const std::size_t end = std::min(path.find('/', begin), path.size());
                place += "c." + path.substr(begin, end - begin) + ".";
                begin = end + 1;
            }
            builder.set(place + "a.of", of);
        }
        return builder.build();
    }

    /// Knows the location as the view does, and asks for its proxy where that is called for.
    void tell(const char* path, const VlAttribute::GroupAttribute& attributes) {
        const LocationPath location(path);
        if (factory.storeLocation(location, attributes)) {
            factory.requestProduce(location);
        }
    }
    /// The location does not qualify any more.
    void forget(const char* path) {
        factory.forgetLocation(path);
        factory.requestRemove(LocationPath(path));
    }
    void finish(int clientNumber, const VlAttribute::GroupAttribute& scene) {
        cooks().client(clientNumber).report("/root", {{"staticScene", scene}});
    }
    Lines collected() { return linesOf(collect(factory)); }
    /// Brings the location's proxy, cooked by that client, and forgets the products.
    void show(const char* path, const VlAttribute::GroupAttribute& attributes, int clientNumber,
              const VlAttribute::GroupAttribute& scene) {
        tell(path, attributes);
        collected();
        finish(clientNumber, scene);
        collected();
    }
    bool isCooking(int clientNumber) { return !cooks().client(clientNumber).isReleased; }

    VlProxyGeometryFactory factory{"__VlOst_proxy"};
};

} // namespace ViewerAPI::test
