#pragma once

#include "modeldata.h"

#include <cstddef>
#include <span>
#include <string>

/// The form in which a model crosses from the import program to the engine: both are of one build,
/// on one machine.

/// A model, or a reason why there is none.
[[nodiscard]] std::string packModel(const ModelData& model);
[[nodiscard]] std::string packFailure(const std::string& reason);

/// The other way round. Throws std::runtime_error with the reason of a failure. Trusts nothing: the
/// writer read a file that may be damaged, so what doesn't hold together throws as well, and every
/// index in the result is in range.
[[nodiscard]] ModelData unpackModel(std::span<const std::byte> archive);
