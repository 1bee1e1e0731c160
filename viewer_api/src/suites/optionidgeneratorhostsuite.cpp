#include "optionidgeneratorhostsuite.h"

#include "optionidgenerator.h"

namespace ViewerAPI {
namespace {

VlOptionIdGeneratorHostStruct& generatorOf(VlOptionIdGeneratorHandle handle) {
    return *static_cast<VlOptionIdGeneratorHostStruct*>(handle);
}

VlOptionIdGeneratorHandle getOptionIdGenerator() {
    return &VlOptionIdGeneratorHostStruct::instance();
}

uint64_t generateOptionIdByName(VlOptionIdGeneratorHandle generator, const char* name) {
    return generatorOf(generator).generate(name);
}

const char* lookUpOptionId(VlOptionIdGeneratorHandle generator, uint64_t optionId) {
    return generatorOf(generator).lookUp(optionId);
}

constexpr OptionIdGeneratorHostSuite kSuite{
    .getOptionIdGenerator = getOptionIdGenerator,
    .generateOptionIdByName = generateOptionIdByName,
    .lookUpOptionId = lookUpOptionId,
};

} // namespace

const OptionIdGeneratorHostSuite* getOptionIdGeneratorHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
