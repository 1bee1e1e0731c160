#pragma once

#include "glxcontext.h"
#include "pictureworkloads.h"

#include <osg/CullFace>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgUtil/LineSegmentIntersector>
#include <osgUtil/PolytopeIntersector>
#include <osgViewer/Viewer>

#include <set>

/// W5 and W6 in OpenSceneGraph.
namespace bench {

/// What a geometry is drawn from.
enum class OsgBuffers { DisplayList, VertexBuffer };

inline osg::ref_ptr<osg::Geometry> makeGeometry(const Mesh& mesh, OsgBuffers buffers) {
    const auto vectors = [](const std::vector<float>& numbers) {
        osg::ref_ptr<osg::Vec3Array> array = new osg::Vec3Array;
        for (std::size_t i = 0; i < numbers.size(); i += 3) {
            array->push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
        }
        return array;
    };
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(vectors(mesh.points));
    geometry->setNormalArray(vectors(mesh.normals), osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(
        mesh.corners == 4 ? GL_QUADS : GL_TRIANGLES, mesh.vertices.begin(), mesh.vertices.end()));
    geometry->setUseDisplayList(buffers == OsgBuffers::DisplayList);
    geometry->setUseVertexBufferObjects(buffers == OsgBuffers::VertexBuffer);
    return geometry;
}

/// A transform for each cube, under a group for each tile.
class OsgCubes {
public:
    explicit OsgCubes(OsgBuffers buffers) {
        std::vector<osg::Group*> tiles;
        for (int i = 0; i < CubesScene::kTiles; ++i) {
            tiles.push_back(new osg::Group);
            root_->addChild(tiles.back());
        }
        const osg::ref_ptr<osg::Geometry> box = makeGeometry(makeCube(), buffers);
        for (int cube = 0; cube < CubesScene::kCubes; ++cube) {
            auto* transform = new osg::MatrixTransform(matrixAt(cube, 0.0));
            transform->addChild(box);
            tiles[CubesScene::tile(cube)]->addChild(transform);
            if (cube == CubesScene::kMoved) {
                moved_ = transform;
            }
        }
    }

    [[nodiscard]] osg::Group* getRoot() const { return root_; }
    void move(double height) { moved_->setMatrix(matrixAt(CubesScene::kMoved, height)); }

private:
    static osg::Matrixd matrixAt(int cube, double height) {
        const Vector place = CubesScene::place(cube, height);
        return osg::Matrixd::translate(place[0], place[1], place[2]);
    }

    osg::ref_ptr<osg::Group> root_ = new osg::Group;
    osg::MatrixTransform* moved_ = nullptr; // the root's
};

inline void aim(osg::Camera& camera, const Viewpoint& from) {
    const auto vector = [](const Vector& v) { return osg::Vec3d(v[0], v[1], v[2]); };
    camera.setViewport(0, 0, kPictureWidth, kPictureHeight);
    camera.setProjectionMatrixAsPerspective(kFieldOfViewDegrees,
                                            static_cast<double>(kPictureWidth) / kPictureHeight,
                                            from.near, from.far);
    camera.setViewMatrixAsLookAt(vector(from.eye), vector(from.target), vector(from.up));
}

class OsgPicture {
public:
    OsgPicture(osg::Node* scene, int samples) : context_(samples) {
        viewer_.setUpViewerAsEmbeddedInWindow(0, 0, kPictureWidth, kPictureHeight)
            ->setDefaultFboId(context_.framebuffer());
        viewer_.setThreadingModel(osgViewer::Viewer::SingleThreaded);
        osg::Camera* camera = viewer_.getCamera();
        camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
        camera->setCullingMode(osg::CullSettings::VIEW_FRUSTUM_CULLING);
        camera->getOrCreateStateSet()->setAttributeAndModes(new osg::CullFace);
        viewer_.setSceneData(scene);
        viewer_.realize();
    }

    void lookFrom(const Viewpoint& viewpoint) { aim(*viewer_.getCamera(), viewpoint); }
    void frame() {
        viewer_.frame();
        context_.finish();
    }
    [[nodiscard]] std::vector<std::uint8_t> readRgb() const { return context_.readRgb(); }

private:
    GlxContext context_; // goes after the viewer
    osgViewer::Viewer viewer_;
};

class OsgCubesPicture : public OsgPicture {
public:
    OsgCubesPicture(OsgBuffers buffers, int samples)
        : OsgCubesPicture(OsgCubes(buffers), samples) {}
    void move(double height) { cubes_.move(height); }

private:
    OsgCubesPicture(const OsgCubes& cubes, int samples)
        : OsgPicture(cubes.getRoot(), samples), cubes_(cubes) {}

    OsgCubes cubes_;
};

inline void measureOsgPictures() {
    for (const auto& [way, buffers] : {std::pair("display_lists", OsgBuffers::DisplayList),
                                       std::pair("vertex_buffers", OsgBuffers::VertexBuffer)}) {
        for (const Quality& quality : {kDraft, kFine}) {
            {
                OsgCubesPicture picture(buffers, quality.samples);
                measureCubes(quality, way, picture);
            }
            OsgPicture picture(makeGeometry(TorusScene::makeMesh(), buffers), quality.samples);
            measureTorus(quality, way, picture);
        }
    }
}

/// Intersects the scene on the processor.
class OsgPicks {
public:
    OsgPicks() {
        aim(*camera_, CubesScene::kViewpoint);
        camera_->addChild(cubes_.getRoot());
        camera_->getBound();
    }

    /// One ray for each pixel, in one traversal.
    long visible(const PickSquare& square) {
        osg::ref_ptr<osgUtil::IntersectorGroup> rays = new osgUtil::IntersectorGroup;
        for (int y = square.bottom; y < square.top(); ++y) {
            for (int x = square.left; x < square.right(); ++x) {
                osg::ref_ptr<osgUtil::LineSegmentIntersector> ray =
                    new osgUtil::LineSegmentIntersector(osgUtil::Intersector::WINDOW, x + 0.5,
                                                        y + 0.5);
                ray->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
                rays->addIntersector(ray);
            }
        }
        intersect(rays);
        std::set<const osg::Node*> found;
        for (const auto& intersector : rays->getIntersectors()) {
            auto* ray = static_cast<osgUtil::LineSegmentIntersector*>(intersector.get());
            if (ray->containsIntersections()) {
                found.insert(cubeOf(ray->getFirstIntersection().nodePath));
            }
        }
        return static_cast<long>(found.size());
    }

    long through(const PickSquare& square) {
        osg::ref_ptr<osgUtil::PolytopeIntersector> frustum = new osgUtil::PolytopeIntersector(
            osgUtil::Intersector::WINDOW, square.left, square.bottom, square.right(), square.top());
        frustum->setIntersectionLimit(osgUtil::Intersector::LIMIT_ONE_PER_DRAWABLE);
        frustum->setPrimitiveMask(osgUtil::PolytopeIntersector::TRIANGLE_PRIMITIVES);
        intersect(frustum);
        std::set<const osg::Node*> found;
        for (const auto& hit : frustum->getIntersections()) {
            found.insert(cubeOf(hit.nodePath));
        }
        return static_cast<long>(found.size());
    }

private:
    static const osg::Node* cubeOf(const osg::NodePath& path) { return path[path.size() - 2]; }
    void intersect(osgUtil::Intersector* intersector) {
        osgUtil::IntersectionVisitor visitor(intersector);
        camera_->accept(visitor);
    }

    OsgCubes cubes_{OsgBuffers::DisplayList};
    osg::ref_ptr<osg::Camera> camera_ = new osg::Camera;
};

inline void measureOsgPicks() {
    OsgPicks picks;
    measurePicks("pixel", "ray", 1, [&](const PickSquare& at) { return picks.visible(at); });
    measurePicks("64x64", "rays", 64, [&](const PickSquare& at) { return picks.visible(at); });
    measurePicks("64x64_deep", "polytope", 64,
                 [&](const PickSquare& at) { return picks.through(at); });
}

} // namespace bench
