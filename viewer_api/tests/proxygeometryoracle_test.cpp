#include "support/knownview.h"
#include "support/plainproxies.h"
#include "support/proxyfactorytest.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// Long random lives of a few locations with proxies: whatever comes, is cancelled and is finished
/// in whatever order, what stands in the tree is what the plain rules say.
class ProxyGeometryOracle : public ProxyFactoryTest {
protected:
    ProxyGeometryOracle() {
        list.createFactories();
        list.initialise();
        list.setOwner(delegate.get());
        for (const std::string& path : paths) {
            delegate->locationTree.openLocation(path);
        }
        list.setSystemArgs(systemAt(1));
        cooks().takeCalls();
    }

    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }
    template <class Container>
    const auto& anyOf(const Container& container) {
        return *std::next(container.begin(), upTo(static_cast<int>(container.size())));
    }

    /// Attributes with proxies of a kind: "!..." can't be loaded, "static..." doesn't move.
    static GroupAttribute attributesOf(const std::string& proxies) {
        if (proxies.front() == '!') {
            return GroupBuilder().set("proxies.viewer", StringAttribute(proxies)).build();
        }
        if (proxies.rfind("static", 0) == 0) {
            return proxied(proxies, {{"static", IntAttribute(1)}});
        }
        return proxied(proxies);
    }

    /// The locations of a cooked job: a few, by the text of the job, and not the same for each.
    static std::vector<std::string> pathsOf(const std::string& job) {
        std::vector<std::string> paths;
        std::size_t bits = 1469598103U;
        for (const char character : job) {
            bits = (bits ^ static_cast<unsigned char>(character)) * 16777619U;
        }
        for (const char* path : {"/a", "/a/b", "/a/c", "/b", "/b/a", "/b/a/a", "/c"}) {
            const std::string parent(path, std::string(path).rfind('/'));
            const bool hasParent =
                parent.empty() || std::find(paths.begin(), paths.end(), parent) != paths.end();
            bits /= 3;
            if (hasParent && bits % 3 != 0) {
                paths.emplace_back(path);
            }
        }
        return paths;
    }

    /// The job that each client since the last call cooks, by the args of the op made before it.
    void learnCooks() {
        std::erase_if(jobOfClient, [this](const auto& entry) { return !isCooking(entry.first); });
        std::string what;
        for (const std::string& line : cooks().takeCommands()) {
            if (line.find(" Load ") != std::string::npos) {
                const auto between = [&line](const char* begin, char end) {
                    const std::size_t from = line.find(begin) + std::string(begin).size();
                    return line.substr(from, line.find(end, from) - from);
                };
                what = between("what=\"", '"') + "@" + between("currentTime=", '}');
            }
            if (line.rfind("createClient ", 0) == 0) {
                jobOfClient[std::stoi(line.substr(line.find("client", 13) + 6))] = what;
            }
        }
    }

    /// Lets a random part of what cooks finish; answers which jobs.
    std::set<std::string> finishSome() {
        std::set<std::string> finished;
        for (const auto& [number, job] : jobOfClient) {
            if (isCooking(number) && oneIn(3)) {
                finish(number, sceneOf(job, pathsOf(job)));
                finished.insert(job);
            }
        }
        return finished;
    }

    std::set<std::string> cookingJobs() {
        std::set<std::string> jobs;
        for (const auto& [number, job] : jobOfClient) {
            if (isCooking(number)) {
                EXPECT_TRUE(jobs.insert(job).second) << job << " cooks twice";
            }
        }
        return jobs;
    }

    // The tree, and what a plug-in knows of it.

    void show(const std::string& path, const GroupAttribute& attributes) {
        delegate->locationTree.cook(path, attributes, {}, false, true);
        list.applyChanges(deliver());
    }
    void remove(const std::string& path) {
        delegate->locationTree.deleteLocation(path);
        list.applyChanges(deliver());
    }
    std::vector<LocationChange> deliver() {
        std::vector<LocationChange> changes;
        delegate->locationTree.collect(changes);
        for (const std::string& complaint : view.apply(changes)) {
            ADD_FAILURE() << complaint;
        }
        return changes;
    }
    /// What the factories have to bring, as the delegate brings it into its tree.
    void collectAll() {
        for (const FactoryProduct& product : collect(list)) {
            if (product.kind == kFactoryProductRemoved) {
                EXPECT_EQ(product.attrs, GroupAttribute::Empty()) << product.path;
                delegate->locationTree.deleteLocation(product.path);
                continue;
            }
            EXPECT_TRUE(delegate->locationTree.find(LocationPath::parentOf(product.path)))
                << product.path << " has no parent in the tree";
            delegate->locationTree.cook(product.path, product.attrs, {}, true, false);
        }
        deliver();
    }
    std::map<std::string, std::string> generated() const {
        std::map<std::string, std::string> texts;
        for (const auto& [path, location] : view.locations()) {
            if (location.proxy) {
                texts[path] = textOf(location.attributes);
            }
        }
        return texts;
    }

    std::map<std::string, std::string> expectedOf(const PlainProxies& model) {
        std::map<std::string, std::string> expected;
        for (const auto& [path, job] : model.visible) {
            const std::string root = path + "/__VlOst_proxy";
            if (job.front() == '!') {
                expected[root] = "{type=\"warning\" warningMessage=\"Unable to produce proxy\"}";
                continue;
            }
            expected[root] = "{of=\"" + job + "\"}";
            for (const std::string& below : pathsOf(job)) {
                expected[root + below] = "{of=\"" + job + "\"}";
            }
        }
        return expected;
    }

    void step(PlainProxies& model);

    const std::vector<std::string> paths = {"/root",       "/root/a",   "/root/a/b", "/root/a/c",
                                            "/root/a/b/d", "/root/a.b", "/root/ab",  "/root/b"};
    const std::vector<std::string> kinds = {"x", "y", "z", "static", "static2", "!missing"};

    std::mt19937 random;
    VlProxyFactoryList list;
    std::map<int, std::string> jobOfClient;
    KnownView view{false};
};

void ProxyGeometryOracle::step(PlainProxies& model) {
    const std::string& path = anyOf(paths);
    switch (upTo(16)) {
    case 0:
    case 1:
    case 2:
    case 3: {
        if (const std::string parent(LocationPath::parentOf(path));
            !parent.empty() && !view.find(parent)) {
            return;
        }
        const std::string& kind = anyOf(kinds);
        show(path, attributesOf(kind));
        model.show(path, kind);
        break;
    }
    case 4:
        if (!view.find(path)) {
            return;
        }
        show(path, GroupAttribute::Empty());
        model.disqualify(path);
        break;
    case 5:
        if (path == "/root" && !oneIn(10)) {
            return;
        }
        remove(path);
        model.remove(path);
        break;
    case 6:
    case 7: {
        const int time = 1 + upTo(4);
        list.setSystemArgs(systemAt(static_cast<float>(time)));
        model.setTime(time);
        break;
    }
    case 8: {
        const bool isEnabled = !oneIn(4);
        list.setProxyGeometryEnabled(isEnabled);
        model.setEnabled(isEnabled);
        break;
    }
    case 9:
        if (!oneIn(20)) {
            return;
        }
        // As the delegate does it: the scene goes first.
        remove("/root");
        list.clear();
        model.clear();
        break;
    default:
        learnCooks();
        ASSERT_EQ(cookingJobs(), model.cooking);
        model.collect(finishSome());
        collectAll();
        learnCooks();
        ASSERT_EQ(cookingJobs(), model.cooking);
        break;
    }
    // Between collections the tree shows what it showed, less what has left the view.
    ASSERT_EQ(generated(), expectedOf(model));
}

TEST_F(ProxyGeometryOracle, theTreeShowsWhatThePlainRulesSayOverRandomSequences) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    random.seed(seed);
    PlainProxies model;
    for (int count = 0; count < 20000; ++count) {
        step(model);
        ASSERT_FALSE(HasFailure()) << "step " << count;
    }
}

TEST_F(ProxyGeometryOracle, afterEverythingIsCookedEachLocationShowsItsOwnJob) {
    // Each has a job of its own, so that nobody waits for a cook that another's removal cancelled,
    // and there is a collection after each change, so that no older wish is left in the queue.
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    random.seed(seed);
    std::map<std::string, std::string> shown; // what each location has
    int time = 1;
    int settled = 0;
    for (int round = 0; round < 1000; ++round) {
        const auto place = static_cast<std::size_t>(upTo(static_cast<int>(paths.size())));
        const std::string& path = paths[place];
        const std::string parent(LocationPath::parentOf(path));
        if (oneIn(4)) {
            time = 1 + upTo(3);
            list.setSystemArgs(systemAt(static_cast<float>(time)));
        } else if (oneIn(5)) {
            remove(path);
            std::erase_if(shown, [&path](const auto& entry) {
                return LocationPath::isAtOrBelow(entry.first, path);
            });
        } else if (parent.empty() || view.find(parent)) {
            shown[path] = std::to_string(place) + (oneIn(2) ? "x" : "y");
            show(path, attributesOf(shown[path]));
        }
        collectAll();
        learnCooks();
        while (list.hasPendingWork() && !oneIn(6)) {
            finishSome();
            collectAll();
            learnCooks();
        }
        if (list.hasPendingWork()) {
            continue;
        }
        ++settled;
        std::map<std::string, std::string> expected;
        for (const auto& [location, proxies] : shown) {
            const std::string job = proxies + "@" + std::to_string(time);
            const std::string root = location + "/__VlOst_proxy";
            expected[root] = "{of=\"" + job + "\"}";
            for (const std::string& below : pathsOf(job)) {
                expected[root + below] = "{of=\"" + job + "\"}";
            }
        }
        ASSERT_EQ(generated(), expected) << "round " << round;
    }
    EXPECT_GT(settled, 100);
}

} // namespace
} // namespace ViewerAPI::test
