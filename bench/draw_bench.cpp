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

#include "offscreenview.h"
#include "pictureworkloads.h"

#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlScenelibEngine/ScenelibEngine.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathMatrixAlgo.h>
#include <Imath/ImathVec.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace ViewerAPI;
using bench::CubesScene;
using bench::TorusScene;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlScenelibEngine::ApplicationGraph::Transaction;

Imath::V3d toImath(const bench::Vector& vector) {
    return {vector[0], vector[1], vector[2]};
}

Imath::M44d viewMatrix(const bench::Viewpoint& viewpoint) {
    const Imath::V3d eye = toImath(viewpoint.eye);
    Imath::M44d turn;
    Imath::alignZAxisWithTargetDir(turn, eye - toImath(viewpoint.target), toImath(viewpoint.up));
    return Imath::M44d().setTranslation(-eye) * turn.transposed();
}

GroupAttribute translated(const bench::Vector& place) {
    return {{"translate", DoubleAttribute({place[0], place[1], place[2]}, 3)}};
}

GroupAttribute attributesOf(bench::Mesh mesh) {
    std::vector<std::int32_t> starts;
    for (std::size_t at = 0; at <= mesh.vertices.size();
         at += static_cast<std::size_t>(mesh.corners)) {
        starts.push_back(static_cast<std::int32_t>(at));
    }
    return GroupBuilder()
        .set("type", VlAttribute::StringAttribute("polymesh"))
        .set("geometry.point.P", FloatAttribute(std::move(mesh.points), 3))
        .set("geometry.point.N", FloatAttribute(std::move(mesh.normals), 3))
        .set("geometry.poly.vertexList", IntAttribute(std::move(mesh.vertices)))
        .set("geometry.poly.startIndex", IntAttribute(std::move(starts)))
        .build();
}

std::string cubeName(int cube) {
    return "cube_" + std::to_string(cube);
}

GroupAttribute cubes() {
    const GroupAttribute geometry = attributesOf(bench::makeCube());
    GroupBuilder children;
    for (int i = 0; i < CubesScene::kCubes; ++i) {
        const GroupAttribute attributes =
            GroupBuilder()
                .update(geometry)
                .set("xform", GroupAttribute{{"group", translated(CubesScene::place(i))}})
                .build();
        children.set(cubeName(i), GroupAttribute{{"a", attributes}});
    }
    return {{"staticScene", GroupAttribute{{"c", children.build()}}}};
}

GroupAttribute torus() {
    const GroupAttribute mesh = attributesOf(TorusScene::makeMesh());
    return {{"staticScene",
             GroupAttribute{{"c", GroupAttribute{{"torus", GroupAttribute{{"a", mesh}}}}}}}};
}

/// A scene in an off-screen viewport with one MeshLayer.
class Picture {
public:
    explicit Picture(const GroupAttribute& scene)
        : edit_(createEdit()), view_(createScene(scene, edit_), {"MeshLayer"}) {}

    void lookFrom(const bench::Viewpoint& viewpoint) {
        view_.getCamera().setNearFar(viewpoint.near, viewpoint.far);
        view_.getCamera().setViewMatrix(viewMatrix(viewpoint).getValue());
    }
    void setDraft(bool isDraft) { view_.setDraft(isDraft); }
    void frame() { view_.draw(); }
    std::vector<std::uint8_t> readRgb() { return view_.readRgb(); }

    void select(const std::vector<std::string>& paths) {
        std::vector<const char*> texts;
        for (const std::string& path : paths) {
            texts.push_back(path.c_str());
        }
        view_.getDelegate().setSelectedLocations(texts.data(),
                                                 static_cast<std::uint32_t>(texts.size()));
    }

    /// Adds a layer that keeps ids with each frame.
    void keepIds() { cache_ = view_.getViewport().addLayer("PickingLayer", "picks"); }
    /// How many locations are found.
    long pick(const bench::PickSquare& square, bool isDeep = false) {
        return view_.getViewport()
            .getPickedObjects(regionOf(square), isDeep, nullptr)
            .getNumberOfChildren();
    }
    long pickKept(const bench::PickSquare& square) {
        view_.getViewport().makeGLContextCurrent();
        return cache_->getPickedObjects(regionOf(square), false, nullptr).getNumberOfChildren();
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
    static PixelRegion regionOf(const bench::PickSquare& square) {
        return {square.left, bench::kPictureHeight - square.top(), square.size, square.size};
    }
    static GroupAttribute editArgs(double height) {
        return GroupBuilder()
            .set("staticScene.c." + cubeName(CubesScene::kMoved) + ".a.xform.group",
                 translated(CubesScene::place(CubesScene::kMoved, height)))
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

void measureSelected(const char* metric, long n, Picture& picture,
                     const std::vector<std::string>& paths, int frames) {
    picture.setDraft(true);
    picture.select(paths);
    picture.frame();
    bench::print("W6", n, metric, bench::medianFrameMs(frames, [&] { picture.frame(); }));
    picture.select({});
}

void measureSelectedCubes(Picture& picture, int frames) {
    std::vector<std::string> all;
    for (int i = 0; i < CubesScene::kCubes; ++i) {
        all.push_back("/root/" + cubeName(i));
    }
    measureSelected("cubes_draft_one_selected_frame_ms", CubesScene::kCubes, picture,
                    {all[CubesScene::kMoved]}, frames);
    measureSelected("cubes_draft_all_selected_frame_ms", CubesScene::kCubes, picture, all, frames);
}

void measurePicks(Picture& picture) {
    using bench::PickSquare;
    picture.setDraft(true);
    picture.frame();
    const auto pick = [&](const PickSquare& square) { return picture.pick(square); };
    bench::measurePicks("pixel", "", 1, pick);
    bench::measurePicks("64x64", "", 64, pick);
    bench::measurePicks("64x64_deep", "", 64,
                        [&](const PickSquare& square) { return picture.pick(square, true); });
    picture.keepIds();
    bench::measureKeptPicks(
        "", [&] { picture.frame(); },
        [&](const PickSquare& square) { return picture.pickKept(square); });
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = bench::Arguments::parse(argc, argv, {"W5", "W6"}, bench::kFrames);
    const int frames = arguments.repetitions;
    try {
        bench::registerViewer();
        {
            Picture picture(cubes());
            picture.lookFrom(CubesScene::kViewpoint);
            picture.setDraft(true);
            if (arguments.wants("W6")) {
                bench::measureCubes(bench::kDraft, "", picture, frames);
                measureSelectedCubes(picture, frames);
                picture.setDraft(false);
                bench::measureCubes(bench::kFine, "", picture, frames);
            }
            if (arguments.wants("W5")) {
                measurePicks(picture);
            }
        }
        if (arguments.wants("W6")) {
            Picture picture(torus());
            picture.setDraft(true);
            bench::measureTorus(bench::kDraft, "", picture, frames);
            measureSelected("mesh_draft_selected_frame_ms", TorusScene::kTriangles, picture,
                            {"/root/torus"}, frames);
            picture.setDraft(false);
            bench::measureTorus(bench::kFine, "", picture, frames);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "draw_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
