#pragma once

#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/VlPlugin.h"

#include <cstdint>

namespace ViewerAPI {

/// Uses the option id suite as a plug-in does: fetched once from a plug-in host, or handed over.
/// [ui-thread]
class OptionIdGeneratorClient {
public:
    /// The module's own client, which module start-up hands the suite to.
    static OptionIdGeneratorClient& module();

    /// Stores the host and fetches the suite from it, in place of one that is there. 0 on success;
    /// -1 for a null host, which is not stored, and for a host without the suite, which leaves the
    /// suite that is there.
    int setHost(const VlPluginHost* host);

    /// Stores the suite; null is ignored.
    void setSuite(const OptionIdGeneratorHostSuite* suite);

    /// The suite, fetched from the host if that is needed and can be; else null.
    [[nodiscard]] const OptionIdGeneratorHostSuite* getSuite();

    /// The id of a name. Throws std::runtime_error while there is neither suite nor host.
    std::uint64_t generate(const char* name);

    /// The name of an id, "" when unknown; owned by the generator. Throws as generate does.
    [[nodiscard]] const char* lookUp(std::uint64_t optionId);

private:
    [[nodiscard]] const OptionIdGeneratorHostSuite* askHost() const;
    void ensureGenerator();

    const VlPluginHost* host_ = nullptr;
    const OptionIdGeneratorHostSuite* suite_ = nullptr;
    VlOptionIdGeneratorHandle generator_ = nullptr;
};

} // namespace ViewerAPI
