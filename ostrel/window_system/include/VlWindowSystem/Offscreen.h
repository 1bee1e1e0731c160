#pragma once

#include "VlWindowSystem/Image.h"

// Off-screen surfaces: windows without a screen, drawn to like any other under their ids. All
// functions throw std::runtime_error, with the id or the size in the text, for an id that is none
// and for a size that isn't from 1 to kMaximumOffscreenSize each way. [ui-thread]

inline constexpr int kMaximumOffscreenSize = 16384;

/// Begins to open what off-screen surfaces need, on a thread of its own: loading a renderer takes
/// as long as much else that a program has to do before its first picture. What the first device
/// context needs is waited for there. Decides nothing: windows on the screen can still come first.
/// Does nothing when that was begun, or is open, already.
void openOffscreenAhead();

/// Waits for what openOffscreenAhead began. To be called before the process ends: libraries must
/// not be loaded while their likes are being ended.
void waitForOffscreenOpening();

/// Makes a surface of so many pixels, black and transparent; its id is negative and never used
/// again. It needs no display: an id is given even where no device context can be had for it.
int createOffscreen(int width, int height);

/// Changes the size. The device context stays the same, a binding in force included; the picture is
/// black and transparent until the next swap. On failure all stays as it was.
void resizeOffscreen(int id, int width, int height);

/// Ends the surface. Its device context is invalid from now on, and no longer current.
void destroyOffscreen(int id);

/// The picture that the last swap showed; black and transparent before the first.
/// Valid until the next swap, change of size or end of the surface.
[[nodiscard]] const Image& readPixels(int id);
