#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <string_view>

namespace ViewerAPI {

/// Which part of a location's transform is wanted, for the editor of one component. Borrows its
/// texts.
struct PartialXformQuery {
    std::string_view groupName;
    /// Matches components whose names begin with it; a "?" at its end is left out, and the whole
    /// run of neighbours that match counts either way.
    std::string_view componentName;
    /// Whether the matching components take part. Those before always do, those behind never.
    bool includeComponent = false;
    bool includeGroupsBefore = true;
    bool includeGroupsAfter = false;
};

/// The matrix of a part of an `xform` group; `isAbsolute` tells whether the part discards the
/// parent's transform. Null when there is no such group or no matching component. [any-thread]
[[nodiscard]] VlAttribute::DoubleAttribute
calcPartialXform(const VlAttribute::GroupAttribute& xform, const PartialXformQuery& query,
                 bool& isAbsolute);

/// The product left x right of two matrix attributes in row-vector convention, at every time at
/// which either has one of several samples. A null matrix stands for the identity; of two the
/// product is null. [any-thread]
[[nodiscard]] VlAttribute::DoubleAttribute
multiplyMatrices(const VlAttribute::DoubleAttribute& left,
                 const VlAttribute::DoubleAttribute& right);

} // namespace ViewerAPI
