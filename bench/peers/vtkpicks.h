#pragma once

#include "vtkpictures.h"

#include <vtkAreaPicker.h>
#include <vtkCellPicker.h>
#include <vtkHardwareSelector.h>
#include <vtkProp3DCollection.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>

/// W5 in VTK.
namespace bench {

/// Draws ids of what the pixels show, and reads them. Of actors: blocks take three times as long,
/// and glyphs seconds.
class VtkSelector {
public:
    explicit VtkSelector(vtkRenderer* renderer) {
        selector_->SetRenderer(renderer);
        selector_->SetFieldAssociation(vtkDataObject::FIELD_ASSOCIATION_CELLS);
        selector_->SetActorPassOnly(true);
    }

    long pick(const PickSquare& square) {
        setArea(square.left, square.bottom, square.right(), square.top());
        return vtkSmartPointer<vtkSelection>::Take(selector_->Select())->GetNumberOfNodes();
    }
    /// Of the whole picture, for picks from it.
    void keep() {
        setArea(0, 0, kPictureWidth, kPictureHeight);
        if (!selector_->CaptureBuffers()) {
            throw std::runtime_error("the selector keeps nothing");
        }
    }
    long pickKept(const PickSquare& square) {
        const unsigned at[2] = {static_cast<unsigned>(square.left),
                                static_cast<unsigned>(square.bottom)};
        return selector_->GetPixelInformation(at).Valid ? 1 : 0;
    }

private:
    void setArea(int left, int bottom, int right, int top) {
        selector_->SetArea(static_cast<unsigned>(left), static_cast<unsigned>(bottom),
                           static_cast<unsigned>(right - 1), static_cast<unsigned>(top - 1));
    }

    vtkNew<vtkHardwareSelector> selector_;
};

inline void measureVtkPicks() {
    VtkCubesPicture picture(VtkObjects::Actors, 1);
    picture.lookFrom(CubesScene::kViewpoint);
    picture.frame();

    VtkSelector selector(picture.getRenderer());
    const auto select = [&](const PickSquare& at) { return selector.pick(at); };
    measurePicks("pixel", "selector", 1, select);
    measurePicks("64x64", "selector", 64, select);
    measureKeptPicks(
        "selector",
        [&] {
            picture.frame();
            selector.keep();
        },
        [&](const PickSquare& at) { return selector.pickKept(at); });

    vtkNew<vtkCellPicker> ray;
    ray->SetTolerance(0);
    measurePicks("pixel", "ray", 1, [&](const PickSquare& at) {
        return ray->Pick(at.left + 0.5, at.bottom + 0.5, 0, picture.getRenderer());
    });
    vtkNew<vtkAreaPicker> frustum;
    measurePicks("64x64_deep", "frustum", 64, [&](const PickSquare& at) {
        frustum->AreaPick(at.left, at.bottom, at.right(), at.top(), picture.getRenderer());
        return frustum->GetProp3Ds()->GetNumberOfItems();
    });
}

} // namespace bench
