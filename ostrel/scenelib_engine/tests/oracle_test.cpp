#include "enginescene.h"
#include "plainscene.h"
#include "randomops.h"
#include "testops.h"
#include "toldlocations.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::LocationData;
using VlScenelib::LocationEvent;

/// One row: how large the random scenes are, how many ops and clients there are.
struct OracleShape {
    const char* name;
    std::vector<const char*> names;
    int depth;
    int ops;
    int clients;
    int steps;
    /// How often it is waited for the engine; otherwise what is asked meets it while it cooks.
    double checkPercent = 25;
};

std::string describe(const GroupAttribute& group) {
    std::string text = "{";
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        const VlAttribute::Attribute child = group.getChildByIndex(i);
        text += std::string(group.getChildName(i)) + "=";
        if (const GroupAttribute nested{child}) {
            text += describe(nested);
        } else if (const IntAttribute number{child}) {
            text += std::to_string(number.getValue());
        } else {
            text += StringAttribute(child).getValue();
        }
        text += " ";
    }
    return text + "}";
}

/// When that comes for which cooks wait.
enum class Post {
    Prompt, ///< soon
    Held,   ///< when the test waits for the engine
    Lost,   ///< never; an edit sees to it that nothing needs to wait, before the test does
};

/// Random edits of an op graph and of what clients ask for, of which after every pause each client
/// must have been told exactly what plain evaluation gives.
class Oracle {
public:
    Oracle(const OracleShape& oracleShape, int workers, unsigned oracleSeed)
        : shape(oracleShape), seed(oracleSeed), post(static_cast<Post>(oracleSeed % 3)),
          random(oracleShape.names, oracleShape.depth, oracleSeed), scene(workers) {
        registerTestOps();
        setLateHeld(post != Post::Prompt);
        for (int i = 0; i < shape.ops; ++i) {
            ops.push_back({scene.createOp("no-op"), "no-op", GroupAttribute::Empty(), {}});
        }
        for (int i = 0; i < shape.clients; ++i) {
            addClient();
        }
    }

    /// The engine ends while cooks wait, and perhaps while what they wait for comes.
    ~Oracle() { setLateHeld(false); }
    Oracle(const Oracle&) = delete;
    Oracle& operator=(const Oracle&) = delete;

    void run() {
        for (step = 0; step < shape.steps && !testing::Test::HasFailure(); ++step) {
            if (random.chance(25)) {
                editGraph();
            } else if (random.chance(4)) {
                scene.runtime->flushCaches();
                log("flush");
            } else if (random.chance(3)) {
                replaceClient();
            } else if (random.chance(3)) {
                replaceOp();
            } else {
                request();
            }
            if (random.chance(30)) {
                // Whatever has been cooked by now.
                ClientModel& client = clients[random.pick(clients.size())];
                fetch(client, random.chance(50) ? -1 : static_cast<int>(random.pick(4)) + 1, false);
            }
            if (random.chance(shape.checkPercent)) {
                check();
            }
        }
        check();
    }

    /// How often something was asked that ends cooks under way: a location is not active or not
    /// open any more, a client views another op, an op is edited.
    [[nodiscard]] long getNumberOfCancels() const { return cancels; }

private:
    struct OpModel {
        EngineScene::OpPtr op;
        std::string type;
        GroupAttribute args;
        std::vector<int> inputs;
    };
    struct ClientModel {
        EngineScene::ClientPtr client;
        int op = -1;
        bool allOpen = false;
        bool caching = false;
        /// With whether they have been answered since they became active.
        std::map<std::string, bool> active;
        std::set<std::string> open;
        ToldLocations told;
    };

    void editGraph() {
        ++cancels;
        const auto transaction = scene.runtime->createTransaction();
        for (std::size_t edits = random.pick(3) + 1; edits > 0; --edits) {
            const std::size_t index = random.pick(ops.size());
            OpModel& model = ops[index];
            if (random.chance(60)) {
                random.edit(model.type, model.args);
                transaction->setOpArgs(model.op, model.type, model.args);
                log("args of op " + std::to_string(index) + " " + model.type);
            } else if (random.chance(60)) {
                // From earlier ops alone, so that there is no cycle.
                model.inputs.clear();
                std::vector<EngineScene::OpPtr> inputs;
                std::string line = "inputs of op " + std::to_string(index) + ":";
                for (std::size_t i = 0; i < 3; ++i) {
                    if (index > 0 && random.chance(60)) {
                        model.inputs.push_back(static_cast<int>(random.pick(index)));
                        inputs.push_back(ops[static_cast<std::size_t>(model.inputs.back())].op);
                        line += " " + std::to_string(model.inputs.back());
                    }
                }
                transaction->setOpInputs(model.op, inputs);
                log(line);
            } else {
                const std::size_t which = random.pick(clients.size());
                ClientModel& client = clients[which];
                // Mostly one op for all, so that clients share views.
                client.op = random.chance(10)   ? -1
                            : random.chance(70) ? static_cast<int>(ops.size()) - 1
                                                : static_cast<int>(random.pick(ops.size()));
                transaction->setClientOp(
                    client.client,
                    client.op < 0 ? nullptr : ops[static_cast<std::size_t>(client.op)].op);
                log("client " + std::to_string(which) + " views " + std::to_string(client.op));
            }
        }
        scene.runtime->commit(transaction);
    }

    void request() {
        const std::size_t which = random.pick(clients.size());
        ClientModel& client = clients[which];
        const std::string path = random.pickPath();
        const std::string line = "client " + std::to_string(which) + " ";
        if (random.chance(8)) {
            client.allOpen = !client.allOpen;
            cancels += client.allOpen ? 0 : 1;
            client.client->setAllOpen(client.allOpen);
            log(line + "all open " + std::to_string(client.allOpen));
        } else if (random.chance(40)) {
            if (random.chance(60)) {
                client.active.emplace(path, false);
                client.client->setLocationsActive(paths({path}));
                log(line + "active " + path);
            } else {
                cancels += static_cast<long>(client.active.erase(path));
                client.client->setLocationsInactive(paths({path}));
                log(line + "inactive " + path);
            }
        } else if (random.chance(60)) {
            client.open.insert(path);
            client.client->setLocationsOpen(paths({path}));
            log(line + "open " + path);
        } else {
            cancels += static_cast<long>(client.open.erase(path));
            client.client->setLocationsClosed(paths({path}));
            log(line + "closed " + path);
        }
    }

    void addClient() {
        ClientModel client;
        client.op = static_cast<int>(ops.size()) - 1;
        client.client = scene.createClient(ops.back().op);
        client.caching = random.chance(50);
        client.client->setEventCachingEnabled(client.caching);
        clients.push_back(std::move(client));
    }

    void replaceClient() {
        const std::size_t which = random.pick(clients.size());
        clients.erase(clients.begin() + static_cast<std::ptrdiff_t>(which));
        addClient();
        log("replaced client " + std::to_string(which));
    }

    /// An op that nobody has as an input or views is dropped, and another takes its place.
    void replaceOp() {
        const std::size_t which = random.pick(ops.size());
        for (const OpModel& model : ops) {
            for (const int input : model.inputs) {
                if (input == static_cast<int>(which)) {
                    return;
                }
            }
        }
        for (const ClientModel& client : clients) {
            if (client.op == static_cast<int>(which)) {
                return;
            }
        }
        ops[which] = {scene.createOp("no-op"), "no-op", GroupAttribute::Empty(), {}};
        log("replaced op " + std::to_string(which));
    }

    static bool wants(const ClientModel& client, const std::string& path) {
        bool isBelowActive = false;
        bool isExpanded = false;
        std::size_t end = 0;
        do {
            end = path.find('/', end + 1);
            const std::string at = path.substr(0, end);
            bool holdsActive = false;
            for (const auto& [active, answered] : client.active) {
                holdsActive = holdsActive || active == at || active.starts_with(at + "/");
            }
            if (!isExpanded && !holdsActive) {
                return false;
            }
            isBelowActive = isBelowActive || client.active.contains(at);
            isExpanded = isBelowActive && (client.allOpen || client.open.contains(at));
        } while (end != std::string::npos);
        return true;
    }

    void evaluate() {
        scenes.clear();
        for (const OpModel& model : ops) {
            std::vector<PlainScene> inputs;
            for (const int input : model.inputs) {
                inputs.push_back(scenes[static_cast<std::size_t>(input)]);
            }
            scenes.push_back(evaluatePlainly(model.type, model.args, inputs));
        }
    }

    const PlainLocation* locate(const ClientModel& client, const std::string& path) const {
        return client.op < 0 ? nullptr
                             : findLocation(scenes[static_cast<std::size_t>(client.op)], path);
    }

    void collectWanted(const ClientModel& client, const PlainLocation& location,
                       const std::string& path, std::vector<std::string>& wanted) const {
        if (!wants(client, path)) {
            return;
        }
        wanted.push_back(path);
        for (const auto& [name, child] : location.children) {
            collectWanted(client, child, path + "/" + name, wanted);
        }
    }

    void fetch(ClientModel& client, int limit, bool isSettled) {
        const std::map<std::string, LocationData> before = client.told.known;
        std::vector<LocationEvent> events;
        client.client->getLocationEvents(events, limit);
        client.told.replay(events);
        if (limit > 0 && events.size() > static_cast<std::size_t>(limit)) {
            fail(client, "more events than the limit");
        }
        for (const std::string& complaint : client.told.complaints) {
            fail(client, complaint);
        }
        for (const std::string& path : client.told.missing) {
            const auto active = client.active.find(path);
            if (active == client.active.end()) {
                fail(client, path + " is told missing and not active");
            } else if (active->second) {
                fail(client, path + " is told missing twice");
            }
        }
        for (auto& [path, answered] : client.active) {
            answered = answered || client.told.touched.contains(path);
        }
        if (!isSettled) {
            return;
        }
        if (client.told.touched.size() != events.size()) {
            fail(client, "a location was told twice in one fetch");
        }
        for (const std::string& path : client.told.gone) {
            if (locate(client, path)) {
                for (const ClientModel& other : clients) {
                    if (other.op == client.op && wants(other, path)) {
                        fail(client, path + " was retracted although it is shown");
                    }
                }
            }
        }
    }

    void settle() {
        if (post == Post::Lost) {
            const auto transaction = scene.runtime->createTransaction();
            for (OpModel& model : ops) {
                if (model.type == "Test.Late") {
                    model.args =
                        GroupBuilder().update(model.args).set("stamp", IntAttribute(0)).build();
                    transaction->setOpArgs(model.op, model.type, model.args);
                }
            }
            scene.runtime->commit(transaction);
            scene.settle();
            return;
        }
        setLateHeld(false);
        scene.settle();
        setLateHeld(post == Post::Held);
    }

    void check() {
        log("check");
        settle();
        evaluate();
        // Whether others still show something is decided client by client as they fetch.
        for (ClientModel& client : clients) {
            fetch(client, -1, true);
            std::vector<LocationEvent> more;
            client.client->getLocationEvents(more, -1);
            if (!more.empty() || client.client->hasLocationEvents()) {
                fail(client, "there is more after everything was fetched");
            }
            checkKnown(client);
            checkQueries(client);
        }
    }

    void checkKnown(ClientModel& client) {
        std::vector<std::string> wanted;
        if (client.op >= 0 && scenes[static_cast<std::size_t>(client.op)]) {
            collectWanted(client, *scenes[static_cast<std::size_t>(client.op)], "/root", wanted);
        }
        for (const std::string& path : wanted) {
            const auto known = client.told.known.find(path);
            if (known == client.told.known.end()) {
                fail(client, path + " was not told");
                continue;
            }
            const PlainLocation& expected = *locate(client, path);
            const LocationData& data = known->second;
            if (!(data.getAttrs() == expected.attrs)) {
                fail(client, path + " has other attributes: " + describe(data.getAttrs()) +
                                 " instead of " + describe(expected.attrs));
            }
            std::vector<std::string> children;
            for (const std::string_view name : data.getPotentialChildren().getNearestSample(0)) {
                children.emplace_back(name);
            }
            if (children != expected.getChildNames()) {
                fail(client, path + " has other children");
            }
        }
        const std::set<std::string> own(wanted.begin(), wanted.end());
        for (const auto& [path, data] : client.told.known) {
            if (own.contains(path)) {
                continue;
            }
            bool isShown = false;
            for (const ClientModel& other : clients) {
                isShown = isShown || (other.op == client.op && wants(other, path));
            }
            if (!isShown || !locate(client, path)) {
                fail(client, path + " was not retracted");
            }
        }
    }

    void checkQueries(ClientModel& client) {
        for (const auto& [path, answered] : client.active) {
            if (client.op >= 0 && !answered) {
                fail(client, path + " was made active and never told");
            }
        }
        for (int i = 0; i < 5; ++i) {
            const std::string path = random.pickPath();
            const bool isCooked = client.op >= 0 && wants(client, path) && locate(client, path);
            const bool isKnownMissing =
                client.op >= 0 && client.active.contains(path) && !locate(client, path);
            const bool isExpected = isCooked || isKnownMissing;
            if (client.client->isLocationDataCurrent(path, -1) != isExpected) {
                fail(client, path + " is current: " + (isExpected ? "expected" : "unexpected"));
            }
            if (client.client->isLocationActive(path) != client.active.contains(path)) {
                fail(client, path + " is active differs");
            }
            const auto [cached, isFound] = client.client->getCachedLocation(path);
            if (isFound && (!client.caching ||
                            cached.doesLocationExist() != client.told.known.contains(path))) {
                fail(client, path + " is cached and should not be");
            }
            if (client.caching && isCooked &&
                !(isFound && cached.getAttrs() == client.told.known[path].getAttrs())) {
                fail(client, path + " is not cached as told");
            }
        }
        StringAttribute active;
        client.client->getActiveLocations(active, "");
        std::set<std::string> names;
        for (const std::string_view path : active.getNearestSample(0)) {
            names.emplace(path);
        }
        std::set<std::string> expected;
        for (const auto& [path, answered] : client.active) {
            expected.insert(path);
        }
        if (names != expected) {
            fail(client, "the active locations differ");
        }
    }

    void log(const std::string& line) {
        history.push_back(std::to_string(step) + ": " + line);
        if (history.size() > 60) {
            history.erase(history.begin());
        }
    }

    void fail(const ClientModel& client, const std::string& what) {
        std::string trace;
        if (!testing::Test::HasFailure()) {
            for (const std::string& line : history) {
                trace += line + "\n";
            }
        }
        ADD_FAILURE() << shape.name << " seed " << seed << " step " << step << " client "
                      << &client - clients.data() << ": " << what << "\n"
                      << trace;
    }

    const OracleShape& shape;
    unsigned seed;
    Post post;
    RandomOps random;
    EngineScene scene;
    std::vector<OpModel> ops;
    std::vector<ClientModel> clients;
    std::vector<PlainScene> scenes;
    std::vector<std::string> history;
    int step = 0;
    long cancels = 0;
};

using OracleRow = std::tuple<OracleShape, int>;

class EngineOracle : public testing::TestWithParam<OracleRow> {};

TEST_P(EngineOracle, whatClientsAreToldEqualsPlainEvaluation) {
    const auto& [shape, workers] = GetParam();
    const char* seedText = std::getenv("OSTREL_ORACLE_SEED");
    const char* countText = std::getenv("OSTREL_ORACLE_COUNT");
    const unsigned firstSeed =
        seedText ? static_cast<unsigned>(std::strtoul(seedText, nullptr, 10)) : 20260701;
    const unsigned count =
        countText ? static_cast<unsigned>(std::strtoul(countText, nullptr, 10)) : 4;
    for (unsigned seed = firstSeed; seed < firstSeed + count; ++seed) {
        Oracle(shape, workers, seed).run();
        if (HasFailure()) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, EngineOracle,
    testing::Combine(testing::Values(OracleShape{"oneClient", {"a", "b"}, 3, 4, 1, 1500},
                                     OracleShape{"twoClients", {"a", "b"}, 3, 5, 2, 1500},
                                     OracleShape{"pinnedPair", {"a", "b", "c"}, 3, 2, 2, 1500},
                                     OracleShape{"deepChain", {"a", "b"}, 6, 8, 2, 600},
                                     OracleShape{"wide",
                                                 {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j",
                                                  "k", "l", "m", "n", "o", "p", "q", "r", "s", "t"},
                                                 2,
                                                 4,
                                                 3,
                                                 500},
                                     OracleShape{"manyClients", {"a", "b"}, 3, 6, 4, 1200}),
                     testing::Values(1, 2, 8)),
    [](const testing::TestParamInfo<OracleRow>& row) {
        return std::string(std::get<OracleShape>(row.param).name) +
               std::to_string(std::get<int>(row.param)) + "Workers";
    });

class EngineCancels : public testing::TestWithParam<int> {};

// Requests and edits come much faster than they are cooked.
TEST_P(EngineCancels, loseAndDoubleNothing) {
    constexpr long kCancels = 100'000;
    const OracleShape shape{"cancels", {"a", "b", "c", "d", "e", "f"}, 3, 4, 3, 20'000, 0.5};
    long cancels = 0;
    for (unsigned seed = 1; cancels < kCancels && !HasFailure(); ++seed) {
        Oracle oracle(shape, GetParam(), seed);
        oracle.run();
        cancels += oracle.getNumberOfCancels();
    }
}

INSTANTIATE_TEST_SUITE_P(Workers, EngineCancels, testing::Values(1, 2, 8));

} // namespace
