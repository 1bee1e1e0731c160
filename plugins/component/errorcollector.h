#pragma once

#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegateComponentPlugin.h"

#include <cstdint>
#include <map>
#include <string>

namespace Bundled {

/// "ErrorCollector": keeps what failed in the scene, so that an application can tell its user.
///
/// Option "errors" (read only): a StringAttribute of tuple size 2, for each location of type
/// "error" in view its path and its `errorMessage`, in order of paths; empty without errors.
class ErrorCollector final : public ViewerPlugin::ViewerDelegateComponentPlugin {
public:
    explicit ErrorCollector(ViewerPlugin::ViewerDelegateComponentHost componentHost);

    bool locationEvent(const ViewerLocationEvent& event, bool handled) override;
    Attribute getOption(std::uint64_t optionId) override;

private:
    void forgetSubtree(const std::string& path);

    const std::uint64_t errorsId;
    std::map<std::string, std::string> messages; ///< by path
};

} // namespace Bundled
