#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <vector>

namespace ViewerAPI {

/// A rectangle of pixels in window coordinates: the origin is the window's top left, y points down.
struct PixelRegion {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// An off-screen surface for picking by colour. Plug-ins register what can be picked, get an id
/// for each, and draw it in its id as colour; the surface reads a region back and answers what
/// stands behind the ids. The host itself never draws here.
///
/// A pixel of the bytes R, G, B, A is the 32-bit id R<<24 | G<<16 | B<<8 | A, as a signed number:
/// the background, all bits set, is -1, and no id is negative.
///
/// A surface without a framebuffer holds objects all the same; binding it does nothing, and picks
/// find nothing. The GL objects belong to the shared context and outlive the picker unless
/// `cleanup` has deleted them. [gl-current] but for `addPickableObject`.
class VlViewportPicker {
public:
    VlViewportPicker() = default;
    VlViewportPicker(const VlViewportPicker&) = delete;
    VlViewportPicker& operator=(const VlViewportPicker&) = delete;

    /// As `resize`: makes the framebuffer, in the place of one that a former setup left.
    void setup(int width, int height) { resize(width, height); }
    /// Makes the framebuffer anew and drops all objects. In pixels. Nothing happens when a side is
    /// zero, or while the shared context is not current: the next resize in it does it.
    void resize(int width, int height);
    /// Deletes the GL objects, or leaves them to the shared context while that is not current.
    void cleanup();

    /// Makes the framebuffer the one that is drawn to and read from, until `unbind` restores what
    /// was bound before. Not to be nested.
    void bind();
    void unbind();

    /// Clears colour and depth of whatever framebuffer is bound. The clear colour is all zero
    /// afterwards. Whether it drops the objects is the caller's choice.
    void clear(bool dropObjects);

    /// The object's id, counted from 0 since objects were dropped last. The same object added
    /// twice has two ids.
    uint64_t addPickableObject(VlAttribute::Attribute object);

    /// What the region of the bound surface shows: id in decimal to object, in ascending order of
    /// ids, each once; ids of no object are passed over. Null when the surface is not bound or the
    /// region is empty. `depthOut` (may be null) is written for a region of one pixel alone, with
    /// the depth there, 0 to 1.
    [[nodiscard]] VlAttribute::GroupAttribute pick(const PixelRegion& region, float* depthOut);

    uint32_t framebuffer = 0;        ///< keeps its number after `cleanup`
    int32_t previousFramebuffer = 0; ///< what `unbind` restores
    uint32_t colorRenderbuffer = 0;
    uint32_t depthRenderbuffer = 0;
    std::vector<VlAttribute::Attribute> pickableObjects; ///< by id
    bool isInUse = false; ///< a plug-in draws into it, or is being asked to

private:
    void makeFramebuffer(int width, int height);

    bool hasFramebuffer_ = false;
    bool isBound_ = false;
};

} // namespace ViewerAPI
