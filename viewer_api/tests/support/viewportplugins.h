#pragma once

#include "support/calljournal.h"

#include "VlAttribute/Attribute.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// Plug-ins of the kinds Viewport, ViewportLayer and ViewportCamera that live in the test program,
/// write every call into a journal and answer as told. Registered while this object lives, of
/// which there is one at a time.
///
/// Each kind has these plug-ins: "Recording"; "NullCreate", whose create answers null; "NoSuite",
/// which is registered without a table. "OnlyALayer" is a layer and nothing else. Instances are
/// named by kind in the order of their creation: "viewport1", "layer1", "layer2", "camera1". The
/// journal shows "layer2.resize 640 480".
class ViewportPlugins {
public:
    explicit ViewportPlugins(CallJournal& journal);
    ~ViewportPlugins();
    ViewportPlugins(const ViewportPlugins&) = delete;
    ViewportPlugins& operator=(const ViewportPlugins&) = delete;

    struct Instance {
        std::string name;
        void* host = nullptr;
        bool isDestroyed = false;
        std::vector<uint64_t> optionIds;
        VlAttribute::Attribute lastAttribute; ///< of the last event, option, setup or pickerDraw
    };

    /// The instance of this name, destroyed or not; throws when there was none.
    [[nodiscard]] Instance& instance(const std::string& name);
    /// How many were created and not destroyed.
    [[nodiscard]] int livingInstances() const;

    /// Ends the cameras that are left, as a viewport's end leaves its cameras alive.
    void endCameras();

    /// Runs when an entry is called, after it is written down: key "layer1.draw". May throw, call
    /// hosts and remove them; runs at every call until it is taken out.
    std::map<std::string, std::function<void(Instance&)>> hooks;
    /// What an entry answers where it answers an int: key "layer1.event". 0 otherwise.
    std::map<std::string, int> answers;
    /// What getOption and asAttribute answer, and customPick where it answers non-zero.
    VlAttribute::Attribute attributeAnswer;
    float depthAnswer = 0.0f; ///< of such a customPick

    // For the tables.
    static ViewportPlugins& current();
    void* create(const char* kind, void* host);
    void destroy(void* instance);
    int called(void* instance, const std::string& entry, const std::string& arguments = "");

private:
    void registerPlugin(const char* typeName, const char* name, const void* suite);

    CallJournal& journal_;
    std::map<std::string, int> counts_;
    std::vector<std::unique_ptr<Instance>> instances_;
    std::vector<std::pair<std::string, std::string>> registered_;
};

} // namespace ViewerAPI::test
