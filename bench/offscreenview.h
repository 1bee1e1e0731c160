#pragma once

#include "picturescenes.h"
#include "viewer.h"

#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

namespace bench {

/// The scene of an op, wholly open, in an off-screen viewport of the bundled plug-ins with a
/// perspective camera. [gl]
class OffscreenView {
public:
    static constexpr int kWidth = kPictureWidth;
    static constexpr int kHeight = kPictureHeight;

    /// Returns when everything is shown; `layers` are plug-ins, which are also the layers' names.
    OffscreenView(int op, std::initializer_list<const char*> layers);

    /// A draft as it is while something moves, or a fine picture as when nothing does.
    void setDraft(bool isDraft);
    /// Until the renderer has finished the picture.
    void draw();
    /// What draw() drew: red, green and blue of each pixel, row after row from the lowest.
    [[nodiscard]] std::vector<std::uint8_t> readRgb();

    [[nodiscard]] Delegate& getDelegate() const { return *delegate; }
    [[nodiscard]] ViewerAPI::VlViewportHostStruct& getViewport() const { return *viewport; }
    [[nodiscard]] ViewerAPI::VlViewportCameraHostStruct& getCamera() const { return *camera; }

private:
    std::unique_ptr<Delegate> delegate;
    ViewerAPI::VlViewportHostStruct* viewport = nullptr;     // the delegate's
    ViewerAPI::VlViewportCameraHostStruct* camera = nullptr; // the viewport's
};

} // namespace bench
