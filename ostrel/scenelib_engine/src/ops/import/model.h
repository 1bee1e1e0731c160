#pragma once

#include "modeldata.h"
#include "ops/import/meshgeometry.h"
#include "ops/import/modellocation.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <Imath/ImathBox.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

struct ModelPose;

/// A model as locations with attributes. Location 0 is the model's own; every other stands in its
/// parent's list of children. Immutable but for what it remembers of poses. [any-thread]
class Model {
public:
    explicit Model(ModelData model);
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// The number of animations; they are counted from 0.
    [[nodiscard]] std::size_t getNumberOfAnimations() const { return data.animations.size(); }

    /// Which animation, and where in it.
    struct Moment {
        int animation = 0; ///< one that there isn't shows the model at rest
        double seconds = 0;

        friend bool operator==(const Moment&, const Moment&) = default;
    };

    /// Whether a location's attributes depend on the moment.
    [[nodiscard]] bool isAnimated(std::size_t location) const {
        return locations.at(location).isAnimated;
    }
    [[nodiscard]] VlAttribute::GroupAttribute getAttrs(std::size_t index,
                                                       const Moment& moment) const;
    /// Null when it has none.
    [[nodiscard]] const VlAttribute::StringAttribute& getChildNames(std::size_t location) const {
        return locations.at(location).childNames;
    }
    [[nodiscard]] std::size_t getChild(std::size_t location, std::size_t index) const {
        return locations.at(location).children.at(index);
    }

private:
    [[nodiscard]] std::shared_ptr<const ModelPose> getPose(const Moment& moment) const;
    [[nodiscard]] std::shared_ptr<const ModelPose> makePose(const Moment& moment) const;
    void prepareMeshes();
    void findAnimated();

    ModelData data; // of meshes, only what deforms keeps its points
    std::vector<ModelLocation> locations;
    std::vector<VlAttribute::GroupAttribute> materials;
    std::vector<std::unique_ptr<MeshGeometry>> geometries; // by mesh
    std::vector<Imath::Box3d> meshBoxes;
    std::shared_ptr<const ModelPose> rest;

    // The poses asked for last: locations of one moment are cooked at about the same time.
    mutable std::mutex posesMutex;
    mutable std::vector<std::pair<Moment, std::shared_ptr<const ModelPose>>> poses;
};

} // namespace VlScenelibEngine
