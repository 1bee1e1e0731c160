#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <Imath/ImathMatrix.h>

#include <cstdint>
#include <vector>

/// Attributes of a location with a mesh. Points as x, y, z; polygons as lists of points.
VlAttribute::GroupAttribute meshLocation(const std::vector<float>& points,
                                         const std::vector<std::vector<std::int32_t>>& polygons,
                                         const VlAttribute::GroupAttribute& material = {});

/// A material of this linear colour.
VlAttribute::GroupAttribute paint(float r, float g, float b);

/// A square around the origin of the xy plane that faces +z, its texture upright.
VlAttribute::GroupAttribute squareLocation(float edge = 2.0f,
                                           const VlAttribute::GroupAttribute& material = {});

/// An axis-aligned cube around the origin, of 8 points and 6 quads without normals.
VlAttribute::GroupAttribute cubeLocation(float edge = 1.0f,
                                         const VlAttribute::GroupAttribute& material = {});

/// A red cube of edge 2 around the origin whose side towards +z has a hole in its picture, half as
/// wide as the side.
VlAttribute::GroupAttribute cubeWithHoleLocation();

VlAttribute::DoubleAttribute matrixAttribute(const Imath::M44d& matrix);
Imath::M44d translation(double x, double y, double z);
