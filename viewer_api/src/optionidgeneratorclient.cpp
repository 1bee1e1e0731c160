#include "optionidgeneratorclient.h"

#include <stdexcept>

namespace ViewerAPI {

OptionIdGeneratorClient& OptionIdGeneratorClient::module() {
    static OptionIdGeneratorClient client;
    return client;
}

int OptionIdGeneratorClient::setHost(const VlPluginHost* host) {
    if (!host)
        return -1;
    host_ = host;
    return getSuite() ? 0 : -1;
}

void OptionIdGeneratorClient::setSuite(const OptionIdGeneratorHostSuite* suite) {
    if (suite)
        suite_ = suite;
}

const OptionIdGeneratorHostSuite* OptionIdGeneratorClient::getSuite() {
    if (!suite_ && host_)
        suite_ = static_cast<const OptionIdGeneratorHostSuite*>(host_->getSuite(
            VL_OPTION_ID_GENERATOR_HOST_SUITE, VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION));
    return suite_;
}

std::uint64_t OptionIdGeneratorClient::generate(const char* name) {
    ensureGenerator();
    return suite_->generateOptionIdByName(generator_, name);
}

const char* OptionIdGeneratorClient::lookUp(std::uint64_t optionId) {
    ensureGenerator();
    return suite_->lookUpOptionId(generator_, optionId);
}

void OptionIdGeneratorClient::ensureGenerator() {
    if (!getSuite())
        throw std::runtime_error("No option id generator suite has been set.");
    if (!generator_)
        generator_ = suite_->getOptionIdGenerator();
}

} // namespace ViewerAPI
