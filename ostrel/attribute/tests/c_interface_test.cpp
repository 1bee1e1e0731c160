#include "VlAttribute/VlAttribute.h"
#include "VlAttribute/VlAttributeC.h"
#include "c_interface.h"

#include <gtest/gtest.h>

namespace {

using namespace VlAttribute;

std::string resultOf(const char* failed) {
    return failed ? failed : "holds";
}

TEST(CInterface, readsAndMakesNumbers) {
    EXPECT_EQ(resultOf(checkNumbersInC()), "holds");
}
TEST(CInterface, readsAndMakesStrings) {
    EXPECT_EQ(resultOf(checkStringsInC()), "holds");
}
TEST(CInterface, readsAndMakesGroups) {
    EXPECT_EQ(resultOf(checkGroupsInC()), "holds");
}
TEST(CInterface, takesNullEverywhere) {
    EXPECT_EQ(resultOf(checkNullInC()), "holds");
}

TEST(CInterface, handlesAreTheOnesOfTheClasses) {
    const StringAttribute attribute("text");
    VlAttributeStruct* handle = vlAttributeRetain(attribute.getHandle());
    EXPECT_EQ(handle->refCount, 2U);
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    vlAttributeGetHash(handle, &first, &second);
    EXPECT_EQ((Hash{first, second}), attribute.getHash());
    EXPECT_TRUE(vlAttributeEquals(handle, StringAttribute("text").getHandle()));
    vlAttributeRelease(handle);
    EXPECT_EQ(attribute.getHandle()->refCount, 1U);
}

} // namespace
