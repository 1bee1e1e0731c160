#include "ops/builtinops.h"

#include "ops/collapse.h"
#include "ops/edit.h"
#include "ops/generate.h"
#include "ops/import.h"
#include "ops/literal.h"
#include "ops/merge.h"
#include "ops/noop.h"
#include "ops/pruneworkingsets.h"
#include "ops/resolveworkingsets.h"

namespace VlScenelibEngine {

void registerBuiltinOps() {
    registerOpType("no-op", std::make_shared<NoOp>());
    registerOpType("Geometry.Import", std::make_shared<Import>());
    registerOpType("Scene.Literal", std::make_shared<Literal>());
    registerOpType("Scene.Generate", std::make_shared<Generate>());
    registerOpType("Scene.Merge", std::make_shared<Merge>());
    registerOpType("Scene.Edit", std::make_shared<Edit>());
    registerOpType("WorkingSet.MultipleOnePassResolve", std::make_shared<ResolveWorkingSets>());
    registerOpType("WorkingSet.Prune", std::make_shared<PruneWorkingSets>());
    registerOpType("HierarchyCollapse", std::make_shared<Collapse>());
}

} // namespace VlScenelibEngine
