#include "viewer.h"

#include "manipulatorbridge.h"
#include "measure.h"
#include "suites/hostsuites.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

namespace bench {

namespace {

class PermissiveBridge final : public ViewerAPI::ManipulatorBridge {
public:
    bool setValue(const std::string&, const std::string&, const VlAttribute::Attribute&,
                  bool) override {
        return true;
    }
    bool isNodeEditable(const char*) override { return true; }
    void updateOp(int) override {}
    void updateOp(int, const std::string&) override {}
    VlAttribute::Attribute getValue(const std::string&, const std::string&) override { return {}; }
    std::int32_t getManipulationCommitId() override { return -2; }
    void openManipulationGroup(const std::string&) override {}
    void closeManipulationGroup(const std::string&) override {}
    void cleanupLiveAttributes(const std::string&) override {}
};

} // namespace

void registerViewer() {
    ViewerAPI::registerHostSuites();
    VlScenelibEngine::registerScenelibEngine();
    ViewerAPI::setManipulatorBridgeFactory([] { return std::make_unique<PermissiveBridge>(); });
}

std::unique_ptr<Delegate> makeDelegate(const char* plugins, const char* plugin) {
    const int loaded = std::filesystem::is_directory(plugins)
                           ? VlPluginSystem::loadDirectory(plugins)
                           : VlPluginSystem::loadLibrary(plugins);
    if (loaded < 1) {
        throw std::runtime_error("no plug-ins in " + std::string(plugins));
    }
    auto delegate = std::make_unique<Delegate>(plugin, nullptr);
    delegate->setBoundingBoxesEnabled(false);
    return delegate;
}

void pumpUntil(const std::function<bool()>& isDone, const std::function<void()>& pump) {
    const double deadline = nowMs() + 300000.0;
    do {
        if (nowMs() > deadline) {
            throw std::runtime_error("the viewer does not come to rest");
        }
        pump();
        std::this_thread::yield(); // to the engine, where cores are few
    } while (!isDone());
}

void settle(Delegate& delegate) {
    pumpUntil([&] { return !delegate.isProcessing(); }, [&] { delegate.processLocationEvents(); });
}

} // namespace bench
