#include "scenetransforms.h"

#include "vlviewerdelegatehost.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlScenelib/Path.h"
#include "VlScenelib/VlXFormUtil.h"

#include <cstddef>

namespace ViewerAPI {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlScenelib::VlXFormUtil::CalcTransformMatrixAtExistingTimes;

DoubleAttribute SceneTransforms::getLocalXform(std::string_view path, bool& isAbsolute,
                                               int sceneView) const {
    isAbsolute = false;
    switch (sceneView) {
    case kVlViewerDelegatePrimary:
        return delegate_.locationTree.getLocalXform(path, isAbsolute, true);
    case kVlViewerDelegateSources:
        return delegate_.sourceLocationTree.getLocalXform(path, isAbsolute, true);
    case kVlViewerDelegateLookThrough: {
        const GroupAttribute attributes = delegate_.getAttributes(path, sceneView);
        const GroupAttribute xform(attributes.borrowChildByName("xform"));
        return xform ? CalcTransformMatrixAtExistingTimes(xform).first : delegate_.identityXform;
    }
    default:
        return {};
    }
}

DoubleAttribute SceneTransforms::getWorldXform(std::string_view path, int sceneView) const {
    switch (sceneView) {
    case kVlViewerDelegatePrimary:
        return delegate_.locationTree.getWorldXform(path, true);
    case kVlViewerDelegateSources:
        return delegate_.sourceLocationTree.getWorldXform(path, true);
    case kVlViewerDelegateLookThrough: {
        // The chain's transforms as one group, under names that can't collide, from the root down.
        GroupBuilder chain;
        std::size_t index = 0;
        for (const std::string& location : VlScenelib::Path::GetLocationStack(path)) {
            const GroupAttribute attributes = delegate_.getAttributes(location, sceneView);
            const GroupAttribute xform(attributes.borrowChildByName("xform"));
            if (xform) {
                chain.set("i" + std::to_string(index), xform);
            }
            ++index;
        }
        return CalcTransformMatrixAtExistingTimes(chain.build()).first;
    }
    default:
        return {};
    }
}

DoubleAttribute SceneTransforms::getParentXform(std::string_view path, int sceneView) const {
    switch (sceneView) {
    case kVlViewerDelegatePrimary:
        return delegate_.locationTree.getParentXform(path, true);
    case kVlViewerDelegateSources:
        return delegate_.sourceLocationTree.getParentXform(path, true);
    case kVlViewerDelegateLookThrough:
        return getWorldXform(VlScenelib::Path::GetLocationParent(path), sceneView);
    default:
        return {};
    }
}

DoubleAttribute SceneTransforms::getPartialXform(const std::string& path,
                                                 const PartialXformQuery& query, int sceneView,
                                                 bool includeParentXform) const {
    GroupAttribute xform;
    switch (sceneView) {
    case kVlViewerDelegatePrimary:
        xform = delegate_.locationTree.getXformGroup(path, true);
        break;
    case kVlViewerDelegateSources:
        xform = delegate_.sourceLocationTree.getXformGroup(path, true);
        break;
    case kVlViewerDelegateLookThrough:
        xform = GroupAttribute(delegate_.getAttributes(path, sceneView).getChildByName("xform"));
        break;
    default:
        break;
    }
    if (!xform) {
        return {};
    }
    bool isAbsolute = false;
    DoubleAttribute matrix = calcPartialXform(xform, query, isAbsolute);
    if (matrix && includeParentXform && !isAbsolute) {
        matrix = multiplyMatrices(matrix, getParentXform(path, sceneView));
    }
    return matrix;
}

} // namespace ViewerAPI
