#include "ops/import/modellocation.h"

#include "ops/import/safename.h"

#include <string>
#include <string_view>

namespace VlScenelibEngine {

namespace {

// One file format's transforms have more parts than a node has; its importer makes a chain of nodes
// of them, which are named by this mark.
constexpr std::string_view kPivotMark = "_$AssimpFbx$_";

class LocationMaker {
public:
    explicit LocationMaker(const ModelData& source)
        : model(source), childNodes(source.nodes.size()) {
        for (std::size_t i = 1; i < model.nodes.size(); ++i) {
            childNodes[static_cast<std::size_t>(model.nodes[i].parent)].push_back(
                static_cast<std::uint32_t>(i));
        }
    }

    std::vector<ModelLocation> make() {
        locations.emplace_back();
        locations.front().nodes = {0};
        // The list grows while it is walked.
        for (std::size_t location = 0; location < locations.size(); ++location) {
            if (!locations[location].nodes.empty()) {
                fill(location);
            }
        }
        return std::move(locations);
    }

private:
    [[nodiscard]] static std::size_t countContents(const ModelData::Node& node) {
        return node.meshes.size() + (node.camera != ModelData::kNone ? 1 : 0) +
               (node.light != ModelData::kNone ? 1 : 0);
    }

    // Adds what hangs on the location's node, and its child nodes.
    void fill(std::size_t location) {
        const std::uint32_t nodeIndex = locations[location].nodes.back();
        locations[location].spaceNode = nodeIndex;
        const ModelData::Node& node = model.nodes[nodeIndex];
        const bool isItself =
            location != 0 && childNodes[nodeIndex].empty() && countContents(node) == 1;
        SiblingNames siblings;
        std::vector<std::string> names;
        const auto add = [&](ModelLocation child, const std::string& name) {
            names.push_back(siblings.unique(name));
            locations[location].children.push_back(static_cast<std::uint32_t>(locations.size()));
            locations.push_back(std::move(child));
        };
        const auto addContent = [&](std::int32_t ModelLocation::*kind, std::int32_t index,
                                    const std::string& name) {
            if (isItself) {
                locations[location].*kind = index;
            } else {
                ModelLocation child;
                child.*kind = index;
                child.spaceNode = nodeIndex;
                add(std::move(child), name);
            }
        };
        for (const std::uint32_t mesh : node.meshes) {
            addContent(&ModelLocation::mesh, static_cast<std::int32_t>(mesh),
                       safeName(model.meshes[mesh].name, "mesh"));
        }
        if (node.camera != ModelData::kNone) {
            addContent(&ModelLocation::camera, node.camera, "camera");
        }
        if (node.light != ModelData::kNone) {
            addContent(&ModelLocation::light, node.light, "light");
        }
        for (std::uint32_t childNode : childNodes[nodeIndex]) {
            ModelLocation child;
            child.nodes.push_back(childNode);
            while (isPivot(childNode)) {
                childNode = childNodes[childNode].front();
                child.nodes.push_back(childNode);
            }
            add(std::move(child), safeName(model.nodes[childNode].name, "node"));
        }
        if (!names.empty()) {
            locations[location].childNames = VlAttribute::StringAttribute(names);
        }
    }

    [[nodiscard]] bool isPivot(std::uint32_t index) const {
        const ModelData::Node& node = model.nodes[index];
        return node.name.find(kPivotMark) != std::string::npos && childNodes[index].size() == 1 &&
               countContents(node) == 0;
    }

    const ModelData& model;
    std::vector<std::vector<std::uint32_t>> childNodes;
    std::vector<ModelLocation> locations;
};

} // namespace

std::vector<ModelLocation> makeLocations(const ModelData& model) {
    return LocationMaker(model).make();
}

} // namespace VlScenelibEngine
