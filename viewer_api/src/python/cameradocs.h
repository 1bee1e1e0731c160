#pragma once

// Documentation of ViewportCamera's methods.

namespace ViewerAPI::docs::camera {

inline constexpr char setup[] = "setup(GroupAttribute cameraData)\n\n"
                                "Initializes a the camera properties from a GroupAttribute.";

inline constexpr char asAttribute[] =
    "asAttribute() -> Attribute\n\n"
    "This function returns a GroupAttribute that fully represents the current camera settings in a "
    "format that can be passed into the setup() function (as a way of duplicating the camera) or "
    "into a scene graph location in order to populate a camera location.";

inline constexpr char getCameraTypeID[] =
    "getCameraTypeID() -> int\n\n"
    "Gets the kind of projection, one of the constants kVlViewportCameraTypeUnknown, "
    "kVlViewportCameraTypePerspective, kVlViewportCameraTypeOrthographic and "
    "kVlViewportCameraTypeSpherical.";

inline constexpr char setViewportDimensions[] =
    "setViewportDimensions(int pixelWidth, int pixelHeight)\n\n"
    "Informs the camera of the size of the viewport that it is looked through.";

inline constexpr char getViewMatrix[] =
    "getViewMatrix() -> (double)\n\n"
    "Gets the view matrix, world to camera, as a tuple of 16 floats, row after row.";

inline constexpr char setViewMatrix[] = "setViewMatrix(matrix)\n\n"
                                        "Sets the view matrix, world to camera, from one sequence "
                                        "of 16 numbers, row after row.";

// These two have always spoken of the view matrix.
inline constexpr char getProjectionMatrix[] = "getProjectionMatrix() -> (matrix)\n\n"
                                              "Gets the view matrix.";

inline constexpr char setProjectionMatrix[] = "setProjectionMatrix(matrix)\n\n"
                                              "Sets the view matrix.";

inline constexpr char getCenterOfInterest[] =
    "getCenterOfInterest() -> double\n\n"
    "Gets the distance from the camera to its center of interest.";

inline constexpr char setCenterOfInterest[] =
    "setCenterOfInterest(double coi)\n\n"
    "Sets the distance from the camera to its center of interest.";

inline constexpr char getFOV[] = "getFOV() -> double\n\n"
                                 "Gets the field of view in degrees.";

inline constexpr char setFOV[] = "setFOV(double fov)\n\n"
                                 "Sets the field of view in degrees.";

inline constexpr char getOrthographicWidth[] =
    "getOrthographicWidth() -> double\n\n"
    "Gets the width of what an orthographic camera sees, in scene units.";

inline constexpr char setOrthographicWidth[] =
    "setOrthographicWidth(double width)\n\n"
    "Sets the width of what an orthographic camera sees, in scene units. A width of 0 is ignored.";

inline constexpr char getNearFar[] =
    "getNearFar() -> (double near, double far)\n\n"
    "Gets the distances of the clipping planes. They are corrected where a projection could not be "
    "made of what was set: near is at least 0.001, and far at least 0.001 more than near.";

inline constexpr char setNearFar[] = "setNearFar(double near, double far)\n\n"
                                     "Sets the distances of the clipping planes.";

inline constexpr char getScreenWindow[] =
    "getScreenWindow() -> (double left, double right, double bottom, double top)\n\n"
    "Gets the part of the image plane that is seen. All of it is (-1.0, 1.0, -1.0, 1.0).";

inline constexpr char setScreenWindow[] =
    "setScreenWindow(double left, double right, double bottom, double top)\n\n"
    "Sets the part of the image plane that is seen. All of it is (-1.0, 1.0, -1.0, 1.0).";

inline constexpr char isInteractionDisabled[] =
    "isInteractionDisable() -> bool\n\n"
    "Returns whether the user may not move this camera.";

inline constexpr char disableInteraction[] = "disableInteraction(bool)\n\n"
                                             "Specifies whether the user may not move this "
                                             "camera.";

inline constexpr char hasLocationPath[] = "hasLocationPath() -> bool\n\n"
                                          "Returns whether the camera is driven by a location.";

inline constexpr char getLocationPath[] =
    "getLocationPath() -> str\n\n"
    "Returns a location path if the camera is driven by a location, or None otherwise.";

inline constexpr char setLocationPath[] =
    "setLocationPath(str)\n\n"
    "Sets the location that drives the camera. The empty string stands for none.";

inline constexpr char getOrigin[] = "getOrigin() -> (double X, double Y, double Z)\n\n"
                                    "Gets the position of the camera in the world.";

inline constexpr char getDirection[] = "getDirection() -> (double X, double Y, double Z)\n\n"
                                       "Gets the direction in which the camera looks.";

inline constexpr char getUp[] = "getUp() -> (double X, double Y, double Z)\n\n"
                                "Gets the direction that is up in the camera's picture.";

inline constexpr char getLeft[] = "getLeft() -> (double X, double Y, double Z)\n\n"
                                  "Gets the direction that is left in the camera's picture.";

inline constexpr char setDirty[] =
    "setDirty(CameraDirtyBits dirty)\n\n"
    "Tells the plugin what has changed: CameraDirtyBits_Clean, CameraDirtyBits_DirtyParams or "
    "CameraDirtyBits_AllDirty.";

} // namespace ViewerAPI::docs::camera
