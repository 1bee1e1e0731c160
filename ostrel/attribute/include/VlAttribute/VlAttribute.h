#pragma once

/// Everything of the attribute library for C++.

#include "VlAttribute/Attribute.h"
#include "VlAttribute/DataAttribute.h"
#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
