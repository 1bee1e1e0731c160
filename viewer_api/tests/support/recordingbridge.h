#pragma once

#include "manipulatorbridge.h"
#include "support/attributetext.h"
#include "support/recordingplugins.h"

#include <functional>
#include <set>
#include <string>

namespace ViewerAPI::test {

/// What the application would be asked and told, as lines of a PluginLog (`bridge updateOp 5`),
/// and what it answers. Every delegate made while this object lives gets a bridge that leads here.
class RecordingBridge {
public:
    explicit RecordingBridge(PluginLog& pluginLog) : log(pluginLog) {
        setManipulatorBridgeFactory([this] {
            ++numberOfBridges;
            return std::make_unique<Bridge>(*this);
        });
    }
    ~RecordingBridge() { setManipulatorBridgeFactory({}); }
    RecordingBridge(const RecordingBridge&) = delete;
    RecordingBridge& operator=(const RecordingBridge&) = delete;

    /// Runs once the line of a call is written, and before it answers.
    std::function<void(const std::string& line)> onCall;
    std::int32_t commitId = 0;         ///< the answer of `getManipulationCommitId`
    bool takesValues = true;           ///< the answer of `setValue`
    std::set<std::string> lockedNodes; ///< for which `isNodeEditable` answers no
    int numberOfBridges = 0;           ///< that are alive

private:
    class Bridge final : public ManipulatorBridge {
    public:
        explicit Bridge(RecordingBridge& bridge) : owner(bridge) {}
        ~Bridge() override { --owner.numberOfBridges; }

        bool setValue(const std::string& location, const std::string& attributeName,
                      const VlAttribute::Attribute& value, bool isFinal) override {
            owner.called("setValue " + location + " " + attributeName + " " + textOf(value) +
                         (isFinal ? " final" : ""));
            return owner.takesValues;
        }
        bool isNodeEditable(const char* nodeName) override {
            owner.called(std::string("isNodeEditable ") + nodeName);
            return !owner.lockedNodes.contains(nodeName);
        }
        void updateOp(int opId) override { owner.called("updateOp " + std::to_string(opId)); }
        void updateOp(int opId, const std::string& text) override {
            owner.called("updateOp " + std::to_string(opId) + " " + text);
        }
        VlAttribute::Attribute getValue(const std::string& location,
                                        const std::string& attributeName) override {
            owner.called("getValue " + location + " " + attributeName);
            return {};
        }
        std::int32_t getManipulationCommitId() override {
            owner.called("getManipulationCommitId");
            return owner.commitId;
        }
        void openManipulationGroup(const std::string& location) override {
            owner.called("openManipulationGroup " + location);
        }
        void closeManipulationGroup(const std::string& location) override {
            owner.called("closeManipulationGroup " + location);
        }
        void cleanupLiveAttributes(const std::string& location) override {
            owner.called("cleanupLiveAttributes " + location);
        }

    private:
        RecordingBridge& owner;
    };

    void called(const std::string& line) {
        log.lines.push_back("bridge " + line);
        if (onCall) {
            onCall(line);
        }
    }

    PluginLog& log;
};

} // namespace ViewerAPI::test
