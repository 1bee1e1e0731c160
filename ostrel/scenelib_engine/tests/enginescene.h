#pragma once

#include "engine.h"

#include "VlScenelib/Client.h"
#include "VlScenelib/Op.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelib/Transaction.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// An engine behind a runtime, as its users see it, with short calls for tests.
class EngineScene {
public:
    using OpPtr = std::shared_ptr<VlScenelib::Op>;
    using ClientPtr = std::shared_ptr<VlScenelib::Client>;

    explicit EngineScene(int workers = 2);
    /// A runtime of its own on an engine that is there already.
    explicit EngineScene(std::shared_ptr<VlScenelibEngine::Engine> theEngine);

    OpPtr createOp(const std::string& type,
                   const VlAttribute::GroupAttribute& args = VlAttribute::GroupAttribute(),
                   const std::vector<OpPtr>& inputs = {});
    std::int64_t setArgs(const OpPtr& op, const std::string& type,
                         const VlAttribute::GroupAttribute& args);
    std::int64_t setInputs(const OpPtr& op, const std::vector<OpPtr>& inputs);
    ClientPtr createClient(const OpPtr& op);
    void setOp(const ClientPtr& client, const OpPtr& op);

    /// Waits until nothing is left to be cooked. Fails the test after a minute.
    void settle();
    /// Settles, then fetches everything. Each event as "+/root/a" or "-/root/a".
    std::vector<std::string> fetch(const ClientPtr& client);
    /// The same without waiting.
    static std::vector<std::string> fetchNow(const ClientPtr& client);
    /// The attributes of the location as the events of the last fetch() told them; null when they
    /// did not.
    [[nodiscard]] VlAttribute::GroupAttribute getFetched(const std::string& path) const;

    /// Cooks since the last call.
    std::uint64_t countCooks();

    std::shared_ptr<VlScenelibEngine::Engine> engine;
    std::shared_ptr<VlScenelib::ScenelibRuntime> runtime;

private:
    std::vector<VlScenelib::LocationEvent> events;
    std::uint64_t cooksBefore = 0;
};

[[nodiscard]] VlAttribute::StringAttribute paths(std::initializer_list<std::string_view> list);

/// The arguments of a "Scene.Literal" with a location per path; each has the int attribute `value`
/// of its row. Ancestors that are not named are there without attributes.
struct LiteralRow {
    std::string path;
    int value = 0;
};
[[nodiscard]] VlAttribute::GroupAttribute literalArgs(const std::vector<LiteralRow>& rows);
