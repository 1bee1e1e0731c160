#pragma once

namespace Bundled {

/// A triangle that covers the picture, from no buffers.
extern const char* const kFullscreenVertexShader;
/// Encodes linear light as sRGB, the mean of a pixel's samples. Goes behind a line that defines the
/// integer constant `samples`.
extern const char* const kEncodeFragmentShader;
/// A vertical gradient behind everything.
extern const char* const kBackgroundFragmentShader;
extern const char* const kMeshVertexShader;
extern const char* const kMeshFragmentShader;
extern const char* const kTexturedMeshFragmentShader;
/// Edges and points, unlit; goes with the mesh's vertex shader, as the mask does.
extern const char* const kWireFragmentShader;
/// White where there is something. This one, and the ids', has another of its kind that leaves out
/// where a texture has holes: software renderers read textures even where a branch says not to.
extern const char* const kMaskFragmentShader;
extern const char* const kHoleyMaskFragmentShader;
/// Comes before the source of each outline.
extern const char* const kOutlineColorFunction;
/// What surrounds a mask, from its picture.
extern const char* const kOutlineFragmentShader;
/// The same of a mask without shades, in two steps that read far fewer pixels: how far, in its row,
/// each pixel is from one that is covered, from one that nothing hides, and from one that is not
/// covered; and from these the outline.
extern const char* const kRowDistanceFragmentShader;
extern const char* const kDraftOutlineFragmentShader;
/// The mesh's light by the vertex, without gloss: for pictures that must come soon.
extern const char* const kDraftVertexShader;
extern const char* const kDraftFragmentShader;
extern const char* const kTexturedDraftFragmentShader;
/// Each instance in its own colour: the bytes of its id.
extern const char* const kIdVertexShader;
extern const char* const kIdFragmentShader;
extern const char* const kHoleyIdFragmentShader;
extern const char* const kGridVertexShader;
extern const char* const kGridFragmentShader;

} // namespace Bundled
