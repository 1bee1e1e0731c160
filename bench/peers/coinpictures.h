#pragma once

#include "glxcontext.h"
#include "pictureworkloads.h"

#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/elements/SoGLCacheContextElement.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoNormal.h>
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTransformSeparator.h>
#include <Inventor/nodes/SoTranslation.h>

#include <numbers>

/// W6 in Coin.
namespace bench {

inline SbVec3f vectorOf(const Vector& v) {
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

/// A root with a camera, a light beside it, and something to look at, which is closed.
class CoinView {
public:
    explicit CoinView(SoNode* content) {
        root_->ref();
        root_->renderCaching = SoSeparator::OFF; // what the camera sees of it changes
        auto* hints = new SoShapeHints;
        hints->vertexOrdering = SoShapeHints::COUNTERCLOCKWISE;
        hints->shapeType = SoShapeHints::SOLID;
        for (SoNode* node : std::initializer_list<SoNode*>{camera_, light_, hints, content}) {
            root_->addChild(node);
        }
    }
    CoinView(const CoinView&) = delete;
    CoinView& operator=(const CoinView&) = delete;
    ~CoinView() { root_->unref(); }

    [[nodiscard]] SoNode* getRoot() const { return root_; }
    void lookFrom(const Viewpoint& from) {
        const SbVec3f eye = vectorOf(from.eye);
        const SbVec3f target = vectorOf(from.target);
        camera_->position = eye;
        camera_->pointAt(target, vectorOf(from.up));
        camera_->heightAngle = static_cast<float>(kFieldOfViewDegrees * std::numbers::pi / 180.0);
        camera_->nearDistance = static_cast<float>(from.near);
        camera_->farDistance = static_cast<float>(from.far);
        light_->direction = target - eye;
    }

private:
    SoSeparator* root_ = new SoSeparator;
    SoPerspectiveCamera* camera_ = new SoPerspectiveCamera; // the root's
    SoDirectionalLight* light_ = new SoDirectionalLight;    // the root's
};

/// With its points and normals; `caching` is whether it keeps a display list.
inline SoSeparator* makeFaceSet(const Mesh& mesh, SoSeparator::CacheEnabled caching) {
    const auto triples = [](const std::vector<float>& numbers) {
        return reinterpret_cast<const float(*)[3]>(numbers.data());
    };
    const int points = static_cast<int>(mesh.points.size() / 3);
    auto* places = new SoCoordinate3;
    places->point.setValues(0, points, triples(mesh.points));
    auto* normals = new SoNormal;
    normals->vector.setValues(0, points, triples(mesh.normals));
    auto* binding = new SoNormalBinding;
    binding->value = SoNormalBinding::PER_VERTEX_INDEXED;
    std::vector<std::int32_t> corners;
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        corners.push_back(mesh.vertices[i]);
        if ((i + 1) % static_cast<std::size_t>(mesh.corners) == 0) {
            corners.push_back(SO_END_FACE_INDEX);
        }
    }
    auto* faces = new SoIndexedFaceSet;
    faces->coordIndex.setValues(0, static_cast<int>(corners.size()), corners.data());
    auto* separator = new SoSeparator;
    separator->renderCaching = caching;
    for (SoNode* node : std::initializer_list<SoNode*>{places, normals, binding, faces}) {
        separator->addChild(node);
    }
    return separator;
}

/// A translation and a shape for each cube, under a separator for each tile, which keeps a display
/// list if `caching` says so.
class CoinCubes {
public:
    CoinCubes(SoNode* shape, SoSeparator::CacheEnabled caching) {
        root_->renderCaching = SoSeparator::OFF;
        std::vector<SoSeparator*> tiles;
        for (int i = 0; i < CubesScene::kTiles; ++i) {
            tiles.push_back(new SoSeparator);
            tiles.back()->renderCaching = caching;
            tiles.back()->boundingBoxCaching = SoSeparator::ON;
            root_->addChild(tiles.back());
        }
        for (int cube = 0; cube < CubesScene::kCubes; ++cube) {
            auto* translation = new SoTranslation;
            translation->translation = vectorOf(CubesScene::place(cube));
            auto* separator = new SoTransformSeparator(2);
            separator->addChild(translation);
            separator->addChild(shape);
            tiles[CubesScene::tile(cube)]->addChild(separator);
            if (cube == CubesScene::kMoved) {
                moved_ = translation;
            }
        }
    }

    [[nodiscard]] SoSeparator* getRoot() const { return root_; }
    void move(double height) {
        moved_->translation = vectorOf(CubesScene::place(CubesScene::kMoved, height));
    }

private:
    SoSeparator* root_ = new SoSeparator; // the scene's
    SoTranslation* moved_ = nullptr;      // the root's
};

inline SoCube* makeSoCube() {
    auto* cube = new SoCube;
    cube->width = cube->height = cube->depth = 1.0F;
    return cube;
}

class CoinPicture {
public:
    CoinPicture(SoNode* content, int samples) : context_(samples), scene_(content) {
        render_.setCacheContext(SoGLCacheContextElement::getUniqueCacheContext());
        glEnable(GL_DEPTH_TEST);
    }

    void lookFrom(const Viewpoint& viewpoint) { scene_.lookFrom(viewpoint); }
    void frame() {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        render_.apply(scene_.getRoot());
        context_.finish();
    }
    [[nodiscard]] std::vector<std::uint8_t> readRgb() const { return context_.readRgb(); }

private:
    GlxContext context_; // goes last
    CoinView scene_;
    SoGLRenderAction render_{SbViewportRegion(kPictureWidth, kPictureHeight)};
};

class CoinCubesPicture : public CoinPicture {
public:
    CoinCubesPicture(const CoinCubes& cubes, int samples)
        : CoinPicture(cubes.getRoot(), samples), cubes_(cubes) {}
    void move(double height) { cubes_.move(height); }

private:
    CoinCubes cubes_;
};

inline void measureCoinCubes(const Quality& quality) {
    const auto measure = [&](const char* way, SoNode* shape, SoSeparator::CacheEnabled caching) {
        CoinCubesPicture picture(CoinCubes(shape, caching), quality.samples);
        measureCubes(quality, way, picture);
    };
    measure("cube_nodes", makeSoCube(), SoSeparator::OFF);
    measure("cube_nodes_cached", makeSoCube(), SoSeparator::ON);
    measure("face_sets_cached", makeFaceSet(makeCube(), SoSeparator::OFF), SoSeparator::ON);
}

inline void measureCoinPictures() {
    for (const Quality& quality : {kDraft, kFine}) {
        measureCoinCubes(quality);
        for (const auto& [way, caching] : {std::pair("face_sets", SoSeparator::OFF),
                                           std::pair("face_sets_cached", SoSeparator::ON)}) {
            CoinPicture picture(makeFaceSet(TorusScene::makeMesh(), caching), quality.samples);
            measureTorus(quality, way, picture);
        }
    }
}

} // namespace bench
