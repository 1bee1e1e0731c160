#pragma once

#include "proxyjob.h"
#include "proxyresult.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace VlScenelib {
class Client;
class Op;
class ScenelibRuntime;
} // namespace VlScenelib

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// What became of a job that was submitted.
enum class SubmitStatus {
    Cooking = 0, ///< it cooks: from now on, or since before
    Full = 1,    ///< too many cook already; nothing happened
    NoOp = 2,    ///< what the job tells of makes no op
};

/// Cooks proxies, in a scene runtime of its own, so that they never show in the scene that is
/// viewed. Each job is a chain of ops that ends with the whole scene in one attribute of the root;
/// the first news of the root is the result. [ui-thread]
class ProxyRuntime {
public:
    static constexpr std::size_t kMaxInFlightCooks = 1024;

    ProxyRuntime();
    ~ProxyRuntime();
    ProxyRuntime(const ProxyRuntime&) = delete;
    ProxyRuntime& operator=(const ProxyRuntime&) = delete;

    /// Whom to ask, by the channel "getViewerProxyLoaderOp", how a file is loaded. Not owned.
    void setOwner(VlViewerDelegateHostStruct* delegate);
    /// Makes the runtime; once, before what follows. Throws std::runtime_error when there is none
    /// to be had.
    void initialise();

    /// Passes on what the channel's listener throws; then nothing cooks.
    SubmitStatus submit(const ProxyJob& job);

    struct FinishedCook {
        std::uint64_t key = 0;
        VlAttribute::GroupAttribute proxyAttrs;
        VlAttribute::GroupAttribute systemArgs;
        /// Null when the root had none.
        VlAttribute::GroupAttribute staticScene;
    };
    /// Never waits.
    [[nodiscard]] std::vector<FinishedCook> pollFinished();

    /// Drops a cook; nothing when there is none of this key.
    void cancel(std::uint64_t key) { inFlight_.erase(key); }
    [[nodiscard]] std::size_t getNumberOfCooks() const { return inFlight_.size(); }
    /// Drops all cooks, and what the runtime has memoised.
    void clear();

    /// Stores a scene, which may be null, in the place of what the key had: each level is a group
    /// of `a`, a location's attributes, and `c`, its children by name in the same form.
    static void storeStaticScene(std::uint64_t key, const VlAttribute::GroupAttribute& staticScene,
                                 std::map<std::uint64_t, ProxyResult>& results);

private:
    struct InFlightCook {
        VlAttribute::GroupAttribute proxyAttrs;
        VlAttribute::GroupAttribute systemArgs;
        std::shared_ptr<VlScenelib::Client> client; ///< its end is the cook's
    };
    [[nodiscard]] VlAttribute::GroupAttribute getOps(const ProxyJob& job) const;
    [[nodiscard]] std::shared_ptr<VlScenelib::Op>
    buildChain(const VlAttribute::GroupAttribute& ops,
               const VlAttribute::GroupAttribute& systemArgs);

    VlViewerDelegateHostStruct* owner_ = nullptr;
    std::shared_ptr<VlScenelib::ScenelibRuntime> runtime_;
    std::map<std::uint64_t, InFlightCook> inFlight_;
};

} // namespace ViewerAPI
