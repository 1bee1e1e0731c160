#include "ops/builtinops.h"

#include "ops/edit.h"
#include "ops/generate.h"
#include "ops/import.h"
#include "ops/literal.h"
#include "ops/merge.h"
#include "ops/noop.h"

namespace VlScenelibEngine {

void registerBuiltinOps() {
    const auto passThrough = std::make_shared<NoOp>();
    registerOpType("no-op", passThrough);
    registerOpType("WorkingSet.MultipleOnePassResolve", passThrough);
    registerOpType("WorkingSet.Prune", passThrough);
    registerOpType("Geometry.Import", std::make_shared<Import>());
    registerOpType("Scene.Literal", std::make_shared<Literal>());
    registerOpType("Scene.Generate", std::make_shared<Generate>());
    registerOpType("Scene.Merge", std::make_shared<Merge>());
    registerOpType("Scene.Edit", std::make_shared<Edit>());
}

} // namespace VlScenelibEngine
