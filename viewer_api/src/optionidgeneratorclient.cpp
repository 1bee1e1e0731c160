#include "optionidgeneratorclient.h"

#include <stdexcept>

namespace ViewerAPI {

OptionIdGeneratorClient& OptionIdGeneratorClient::module() {
    static OptionIdGeneratorClient client;
    return client;
}

int OptionIdGeneratorClient::setHost(const VlPluginHost* host) {
    if (!host) {
        return -1;
    }
    host_ = host;
    const OptionIdGeneratorHostSuite* const suite = askHost();
    setSuite(suite);
    return suite ? 0 : -1;
}

void OptionIdGeneratorClient::setSuite(const OptionIdGeneratorHostSuite* suite) {
    if (!suite || suite == suite_) {
        return;
    }
    suite_ = suite;
    generator_ = nullptr; // it was the other suite's
}

const OptionIdGeneratorHostSuite* OptionIdGeneratorClient::getSuite() {
    if (!suite_ && host_) {
        setSuite(askHost());
    }
    return suite_;
}

const OptionIdGeneratorHostSuite* OptionIdGeneratorClient::askHost() const {
    return static_cast<const OptionIdGeneratorHostSuite*>(host_->getSuite(
        VL_OPTION_ID_GENERATOR_HOST_SUITE, VL_OPTION_ID_GENERATOR_HOST_SUITE_VERSION));
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
    if (!getSuite()) {
        throw std::runtime_error("No option id generator suite has been set.");
    }
    if (!generator_) {
        generator_ = suite_->getOptionIdGenerator();
    }
}

} // namespace ViewerAPI
