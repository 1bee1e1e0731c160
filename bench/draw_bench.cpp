// Pictures of large scenes through the bundled plug-ins, without an interpreter:
// draw_bench [W5] [W6] [--repetitions FRAMES]
//
// W5  what 10,000 cubes' pixels show: one pixel, 64x64, and everything through 64x64; and one pixel
//     from the ids that a PickingLayer keeps with each picture
// W6  10,000 cubes that are 10,000 locations, 1280x720; the same while one of them moves, and with
//     one and all of them selected; and one mesh of a million triangles, also selected
//
// A frame is a viewport's draw until the renderer has finished it: "draft" frames as they are while
// something moves (a viewport's option), "fine" ones as the picture is when nothing does.

#include "measure.h"
#include "offscreenview.h"

#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <cmath>
#include <cstdio>
#include <exception>
#include <numbers>
#include <string>
#include <vector>

namespace {

using namespace ViewerAPI;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

constexpr int kCubesInRow = 100;
constexpr double kCubeDistance = 1.5;

struct Camera {
    Imath::V3d eye;
    Imath::V3d target;
    Imath::V3d up;
    double near = 0.1;
    double far = 100.0;
};
const Camera kCubesCamera = {{74.25, 80, 244.25}, {74.25, 0, 74.25}, {0, 1, 0}, 1, 400};
const Camera kMeshCamera = {{0, -2.6, 2.0}, {0, 0, 0}, {0, 0, 1}, 0.1, 20};

Imath::M44d viewMatrix(const Camera& camera) {
    const Imath::V3d back = (camera.eye - camera.target).normalized();
    const Imath::V3d right = camera.up.cross(back).normalized();
    const Imath::V3d up = back.cross(right);
    return {right.x,
            up.x,
            back.x,
            0,
            right.y,
            up.y,
            back.y,
            0,
            right.z,
            up.z,
            back.z,
            0,
            -camera.eye.dot(right),
            -camera.eye.dot(up),
            -camera.eye.dot(back),
            1};
}

GroupAttribute translated(double x, double y, double z) {
    return {{"translate", DoubleAttribute({x, y, z}, 3)}};
}

/// Polygons of `corners` corners each, with a normal a point.
GroupAttribute meshOf(std::vector<float> points, std::vector<float> normals,
                      std::vector<std::int32_t> vertices, std::int32_t corners) {
    std::vector<std::int32_t> starts;
    for (std::int32_t at = 0; at <= static_cast<std::int32_t>(vertices.size()); at += corners) {
        starts.push_back(at);
    }
    return GroupBuilder()
        .set("type", VlAttribute::StringAttribute("polymesh"))
        .set("geometry.point.P", FloatAttribute(std::move(points), 3))
        .set("geometry.point.N", FloatAttribute(std::move(normals), 3))
        .set("geometry.poly.vertexList", IntAttribute(std::move(vertices)))
        .set("geometry.poly.startIndex", IntAttribute(std::move(starts)))
        .build();
}

/// 24 points, so that faces are flat.
GroupAttribute cube() {
    std::vector<float> points;
    std::vector<float> normals;
    std::vector<std::int32_t> vertices;
    for (int axis = 0; axis < 3; ++axis) {
        for (const float side : {-0.5f, 0.5f}) {
            constexpr float kCorners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
            for (int corner = 0; corner < 4; ++corner) {
                // The other way round on the far side.
                const float* place = kCorners[side > 0 ? corner : 3 - corner];
                float point[3] = {};
                point[axis] = side;
                point[(axis + 1) % 3] = 0.5f * place[0];
                point[(axis + 2) % 3] = 0.5f * place[1];
                float normal[3] = {};
                normal[axis] = 2 * side;
                points.insert(points.end(), point, point + 3);
                normals.insert(normals.end(), normal, normal + 3);
                vertices.push_back(static_cast<std::int32_t>(vertices.size()));
            }
        }
    }
    return meshOf(std::move(points), std::move(normals), std::move(vertices), 4);
}

GroupAttribute cubes() {
    const GroupAttribute geometry = cube();
    GroupBuilder children;
    for (int i = 0; i < kCubesInRow * kCubesInRow; ++i) {
        const GroupAttribute attributes =
            GroupBuilder()
                .update(geometry)
                .set("xform",
                     GroupAttribute{{"group", translated(kCubeDistance * (i / kCubesInRow), 0,
                                                         kCubeDistance * (i % kCubesInRow))}})
                .build();
        children.set("cube_" + std::to_string(i), GroupAttribute{{"a", attributes}});
    }
    return {{"staticScene", GroupAttribute{{"c", children.build()}}}};
}

/// A torus of 2 * around * across triangles.
GroupAttribute torus(int around, int across) {
    std::vector<float> points;
    std::vector<float> normals;
    std::vector<std::int32_t> vertices;
    for (int i = 0; i < around; ++i) {
        for (int j = 0; j < across; ++j) {
            const double a = 2 * std::numbers::pi * i / around;
            const double b = 2 * std::numbers::pi * j / across;
            const Imath::V3d normal(std::cos(b) * std::cos(a), std::cos(b) * std::sin(a),
                                    std::sin(b));
            const Imath::V3d point = Imath::V3d(std::cos(a), std::sin(a), 0.0) + 0.4 * normal;
            for (int axis = 0; axis < 3; ++axis) {
                points.push_back(static_cast<float>(point[axis]));
                normals.push_back(static_cast<float>(normal[axis]));
            }
            const int nextI = (i + 1) % around;
            const int nextJ = (j + 1) % across;
            const int corners[4] = {i * across + j, nextI * across + j, nextI * across + nextJ,
                                    i * across + nextJ};
            for (const int corner : {0, 1, 2, 0, 2, 3}) {
                vertices.push_back(corners[corner]);
            }
        }
    }
    const GroupAttribute mesh =
        meshOf(std::move(points), std::move(normals), std::move(vertices), 3);
    return {{"staticScene",
             GroupAttribute{{"c", GroupAttribute{{"torus", GroupAttribute{{"a", mesh}}}}}}}};
}

/// A scene in an off-screen viewport with one MeshLayer.
class Picture {
public:
    Picture(const GroupAttribute& scene, const Camera& camera)
        : edit_(createEdit()), view_(createScene(scene, edit_), {"MeshLayer"}) {
        view_.getCamera().setNearFar(camera.near, camera.far);
        view_.getCamera().setViewMatrix(viewMatrix(camera).getValue());
    }

    void setDraft(bool isDraft) { view_.setDraft(isDraft); }
    void frame() { view_.draw(); }

    void select(const std::vector<std::string>& paths) {
        std::vector<const char*> texts;
        for (const std::string& path : paths) {
            texts.push_back(path.c_str());
        }
        view_.getDelegate().setSelectedLocations(texts.data(),
                                                 static_cast<std::uint32_t>(texts.size()));
    }

    /// Adds a layer that keeps ids, and draws.
    void keepIds() {
        cache_ = view_.getViewport().addLayer("PickingLayer", "picks");
        frame();
    }
    /// How many locations are found.
    int pick(int x, int y, int size, bool isDeep = false) {
        return static_cast<int>(view_.getViewport()
                                    .getPickedObjects({x, y, size, size}, isDeep, nullptr)
                                    .getNumberOfChildren());
    }
    int pickKept(int x, int y) {
        view_.getViewport().makeGLContextCurrent();
        return static_cast<int>(
            cache_->getPickedObjects({x, y, 1, 1}, false, nullptr).getNumberOfChildren());
    }

    /// Moves a cube up and waits until the plug-in knows.
    void move(double height) {
        Transaction transaction;
        transaction.setOpArgs(edit_, "Scene.Literal", editArgs(height));
        transaction.commit();
        view_.getViewport().setDirty(false);
        bench::pumpUntil([this] { return view_.getViewport().isDirty; },
                         [this] { view_.getDelegate().processLocationEvents(); });
    }

private:
    static GroupAttribute editArgs(double height) {
        const double middle = kCubeDistance * kCubesInRow / 2;
        return GroupBuilder()
            .set("staticScene.c.cube_5050.a.xform.group", translated(middle, height, middle))
            .build();
    }

    static int createEdit() {
        Transaction transaction;
        const int edit = transaction.createOp("Scene.Literal", editArgs(0.0));
        transaction.commit();
        return edit;
    }
    static int createScene(const GroupAttribute& scene, int edit) {
        Transaction transaction;
        const int literal = transaction.createOp("Scene.Literal", scene);
        const int merge = transaction.createOp("Scene.Merge", {}, {literal, edit});
        transaction.commit();
        return merge;
    }

    const int edit_;
    bench::OffscreenView view_;
    VlViewportLayerHostStruct* cache_ = nullptr; // the viewport's
};

void measureFrames(const std::string& scene, long n, Picture& picture, int frames) {
    for (const bool isDraft : {true, false}) {
        const std::string way = scene + (isDraft ? "_draft" : "_fine");
        picture.setDraft(isDraft);
        bench::print("W6", n, way + "_first_frame_ms", bench::timeMs([&] { picture.frame(); }));
        std::vector<double> times;
        for (int i = 0; i < frames; ++i) {
            times.push_back(bench::timeMs([&] { picture.frame(); }));
        }
        bench::print("W6", n, way + "_frame_ms", bench::median(times));
    }
}

void measureSelected(long n, const char* metric, Picture& picture,
                     const std::vector<std::string>& paths, int frames) {
    picture.setDraft(true);
    picture.select(paths);
    picture.frame();
    std::vector<double> times;
    for (int i = 0; i < frames; ++i) {
        times.push_back(bench::timeMs([&] { picture.frame(); }));
    }
    bench::print("W6", n, metric, bench::median(times));
    picture.select({});
}

void measureSelectedCubes(Picture& picture, int frames) {
    constexpr int kCubes = kCubesInRow * kCubesInRow;
    std::vector<std::string> all;
    for (int i = 0; i < kCubes; ++i) {
        all.push_back("/root/cube_" + std::to_string(i));
    }
    measureSelected(kCubes, "cubes_draft_one_selected_frame_ms", picture, {"/root/cube_5050"},
                    frames);
    measureSelected(kCubes, "cubes_draft_all_selected_frame_ms", picture, all, frames);
}

void measureFramesOfEdits(Picture& picture, int frames) {
    picture.setDraft(true);
    std::vector<double> times;
    for (int i = 1; i <= frames; ++i) {
        picture.move(0.1 * i);
        times.push_back(bench::timeMs([&] { picture.frame(); }));
    }
    bench::print("W6", kCubesInRow * kCubesInRow, "cubes_draft_frame_after_edit_ms",
                 bench::median(times));
}

/// At places all over the picture, which cubes fill but for its edges.
void measurePicks(Picture& picture, int picks) {
    const auto measure = [picks](const char* metric, const auto& pick) {
        std::vector<double> times;
        int found = 0;
        for (int i = 0; i < picks; ++i) {
            const int x = 400 + i * 7919 % 480;
            const int y = 260 + i * 104729 % 240;
            times.push_back(bench::timeMs([&] { found += pick(x, y); }));
        }
        bench::print("W5", kCubesInRow * kCubesInRow, metric, bench::median(times));
        bench::print("W5", kCubesInRow * kCubesInRow, std::string(metric) + "_found",
                     static_cast<double>(found) / picks);
    };
    picture.frame();
    measure("pixel_ms", [&](int x, int y) { return picture.pick(x, y, 1); });
    measure("64x64_ms", [&](int x, int y) { return picture.pick(x, y, 64); });
    measure("64x64_deep_ms", [&](int x, int y) { return picture.pick(x, y, 64, true); });
    picture.keepIds();
    measure("kept_pixel_ms", [&](int x, int y) { return picture.pickKept(x, y); });
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = bench::Arguments::parse(argc, argv, {"W5", "W6"}, 31);
    const int frames = arguments.repetitions;
    try {
        bench::registerViewer();
        {
            Picture picture(cubes(), kCubesCamera);
            if (arguments.wants("W6")) {
                measureFrames("cubes", kCubesInRow * kCubesInRow, picture, frames);
                measureFramesOfEdits(picture, frames);
                measureSelectedCubes(picture, frames);
            }
            if (arguments.wants("W5")) {
                measurePicks(picture, 101);
            }
        }
        if (arguments.wants("W6")) {
            Picture picture(torus(1000, 500), kMeshCamera);
            measureFrames("mesh", 1000000, picture, frames);
            measureSelected(1000000, "mesh_draft_selected_frame_ms", picture, {"/root/torus"},
                            frames);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "draw_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
