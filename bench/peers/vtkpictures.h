#pragma once

#include "pictureworkloads.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkCullerCollection.h>
#include <vtkFloatArray.h>
#include <vtkGlyph3DMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkUnsignedCharArray.h>

#include <GL/gl.h>

/// W6 in VTK.
namespace bench {

/// What the cubes are to VTK.
enum class VtkObjects {
    Actors, ///< one each
    Blocks, ///< of one composite data set
    Glyphs  ///< at the points of one data set
};

inline vtkSmartPointer<vtkPolyData> makePolyData(const Mesh& mesh, const Vector& place = {}) {
    vtkNew<vtkPoints> points;
    vtkNew<vtkFloatArray> normals;
    normals->SetNumberOfComponents(3);
    for (std::size_t i = 0; i < mesh.points.size(); i += 3) {
        points->InsertNextPoint(mesh.points[i] + place[0], mesh.points[i + 1] + place[1],
                                mesh.points[i + 2] + place[2]);
        normals->InsertNextTuple3(mesh.normals[i], mesh.normals[i + 1], mesh.normals[i + 2]);
    }
    vtkNew<vtkCellArray> polygons;
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        if (i % static_cast<std::size_t>(mesh.corners) == 0) {
            polygons->InsertNextCell(mesh.corners);
        }
        polygons->InsertCellPoint(mesh.vertices[i]);
    }
    auto data = vtkSmartPointer<vtkPolyData>::New();
    data->SetPoints(points);
    data->SetPolys(polygons);
    data->GetPointData()->SetNormals(normals);
    return data;
}

/// A mapper whose data don't change by themselves: no look at the pipeline with every frame.
inline vtkSmartPointer<vtkPolyDataMapper> makeMapper(vtkPolyData* data) {
    auto mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
    mapper->SetInputData(data);
    mapper->Update();
    mapper->StaticOn();
    return mapper;
}

/// A window without a screen.
class VtkPicture {
public:
    explicit VtkPicture(int samples) {
        window_->SetOffScreenRendering(1);
        window_->SetMultiSamples(samples > 1 ? samples : 0);
        window_->SetSize(kPictureWidth, kPictureHeight);
        window_->AddRenderer(renderer_);
        renderer_->GetCullers()->RemoveAllItems(); // all is in view
        renderer_->SetBackground(0.2, 0.2, 0.4);
        property_->BackfaceCullingOn();
    }

    void add(vtkActor* actor) {
        actor->SetProperty(property_);
        actor->ForceOpaqueOn();
        // AddActor would look for it among all others first.
        renderer_->GetViewProps()->AddItem(actor);
    }
    void lookFrom(const Viewpoint& viewpoint) {
        vtkCamera* camera = renderer_->GetActiveCamera();
        camera->SetPosition(viewpoint.eye.data());
        camera->SetFocalPoint(viewpoint.target.data());
        camera->SetViewUp(viewpoint.up.data());
        camera->SetViewAngle(kFieldOfViewDegrees);
        camera->SetClippingRange(viewpoint.near, viewpoint.far);
    }
    void frame() {
        window_->Render();
        glFinish();
    }
    std::vector<std::uint8_t> readRgb() {
        vtkNew<vtkUnsignedCharArray> rgb;
        window_->GetPixelData(0, 0, kPictureWidth - 1, kPictureHeight - 1, 0, rgb);
        return {rgb->GetPointer(0), rgb->GetPointer(0) + rgb->GetNumberOfValues()};
    }
    vtkRenderer* getRenderer() { return renderer_; }

private:
    vtkNew<vtkRenderWindow> window_;
    vtkNew<vtkRenderer> renderer_;
    vtkNew<vtkProperty> property_;
};

class VtkCubesPicture : public VtkPicture {
public:
    VtkCubesPicture(VtkObjects objects, int samples) : VtkPicture(samples) {
        switch (objects) {
        case VtkObjects::Actors:
            addActors();
            break;
        case VtkObjects::Blocks:
            addBlocks();
            break;
        case VtkObjects::Glyphs:
            addGlyphs();
            break;
        }
    }

    void move(double height) {
        Vector place = CubesScene::place(CubesScene::kMoved, height);
        if (blocks_) {
            blocks_->SetBlock(CubesScene::kMoved, makePolyData(makeCube(), place));
        } else if (glyphs_) {
            glyphs_->GetPoints()->SetPoint(CubesScene::kMoved, place.data());
            glyphs_->GetPoints()->Modified();
        } else {
            moved_->SetPosition(place.data());
        }
    }

private:
    void addActors() {
        const auto mapper = makeMapper(makePolyData(makeCube()));
        for (int cube = 0; cube < CubesScene::kCubes; ++cube) {
            vtkNew<vtkActor> actor;
            actor->SetMapper(mapper);
            actor->SetPosition(CubesScene::place(cube).data());
            add(actor);
            if (cube == CubesScene::kMoved) {
                moved_ = actor;
            }
        }
    }
    void addBlocks() {
        blocks_ = vtkSmartPointer<vtkMultiBlockDataSet>::New();
        blocks_->SetNumberOfBlocks(CubesScene::kCubes);
        const Mesh cube = makeCube();
        for (int i = 0; i < CubesScene::kCubes; ++i) {
            blocks_->SetBlock(static_cast<unsigned>(i), makePolyData(cube, CubesScene::place(i)));
        }
        vtkNew<vtkCompositePolyDataMapper2> mapper;
        mapper->SetInputDataObject(blocks_);
        mapper->SetCompositeDataDisplayAttributes(vtkNew<vtkCompositeDataDisplayAttributes>());
        addMapped(mapper);
    }
    void addGlyphs() {
        vtkNew<vtkPoints> points;
        for (int cube = 0; cube < CubesScene::kCubes; ++cube) {
            points->InsertNextPoint(CubesScene::place(cube).data());
        }
        glyphs_ = vtkSmartPointer<vtkPolyData>::New();
        glyphs_->SetPoints(points);
        vtkNew<vtkGlyph3DMapper> mapper;
        mapper->SetInputData(glyphs_);
        mapper->SetSourceData(makePolyData(makeCube()));
        mapper->ScalingOff();
        mapper->OrientOff();
        addMapped(mapper);
    }
    void addMapped(vtkMapper* mapper) {
        vtkNew<vtkActor> actor;
        actor->SetMapper(mapper);
        add(actor);
    }

    // The cube that is moved, whichever of these it is.
    vtkSmartPointer<vtkActor> moved_;
    vtkSmartPointer<vtkMultiBlockDataSet> blocks_;
    vtkSmartPointer<vtkPolyData> glyphs_;
};

inline void measureVtkPictures() {
    for (const Quality& quality : {kDraft, kFine}) {
        for (const auto& [way, objects] :
             {std::pair("actors", VtkObjects::Actors), std::pair("blocks", VtkObjects::Blocks),
              std::pair("glyphs", VtkObjects::Glyphs)}) {
            VtkCubesPicture picture(objects, quality.samples);
            measureCubes(quality, way, picture);
        }
        VtkPicture picture(quality.samples);
        vtkNew<vtkActor> torus;
        torus->SetMapper(makeMapper(makePolyData(TorusScene::makeMesh())));
        picture.add(torus);
        measureTorus(quality, "", picture);
    }
}

} // namespace bench
