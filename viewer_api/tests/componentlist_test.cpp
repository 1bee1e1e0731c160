#include "componentlist.h"

#include "suites/viewerdelegatecomponenthostsuite.h"
#include "support/delegatetest.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::IntAttribute;

class ComponentListTest : public DelegateTest {
protected:
    Lines names() {
        Lines result;
        for (std::uint32_t index = 0; index < delegate->getNumberOfComponents(); ++index) {
            result.emplace_back(delegate->getComponentName(index));
        }
        return result;
    }

    /// How many components are in the list when "A" is set up.
    std::uint32_t countAtSetup = 99;
    void watchSetup() {
        componentA.onCall = [this](std::string_view entry, std::string_view) {
            if (entry == "setup") {
                countAtSetup = delegate->getNumberOfComponents();
            }
        };
    }
};

TEST_F(ComponentListTest, anAddedComponentIsSetUpBeforeItIsInTheList) {
    watchSetup();
    VlViewerDelegateComponentHostStruct* const component = delegate->addComponent("A", "a");
    ASSERT_NE(component, nullptr);
    EXPECT_EQ(component->delegate, delegate.get());
    EXPECT_EQ(componentA.host, component);
    EXPECT_EQ(countAtSetup, 0U);
    EXPECT_THAT(log.take(), ElementsAre("A create", "A setup"));
    EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(ComponentListTest, anInsertedComponentIsSetUpInTheList) {
    watchSetup();
    EXPECT_NE(delegate->insertComponent("A", "a", 0), nullptr);
    EXPECT_EQ(countAtSetup, 1U);
    EXPECT_THAT(log.take(), ElementsAre("A create", "A setup"));
}

TEST_F(ComponentListTest, insertsBeforeTheIndex) {
    delegate->addComponent("A", "a");
    delegate->insertComponent("B", "b", 0);
    delegate->insertComponent("C", "c", 1);
    EXPECT_THAT(names(), ElementsAre("b", "c", "a"));
}

TEST_F(ComponentListTest, insertingAtTheCountAppends) {
    delegate->addComponent("A", "a");
    delegate->insertComponent("B", "b", 1);
    EXPECT_THAT(names(), ElementsAre("a", "b"));
}

TEST_F(ComponentListTest, insertingBeyondTheCountMakesNothing) {
    delegate->addComponent("A", "a");
    log.take();
    EXPECT_EQ(delegate->insertComponent("B", "b", 2), nullptr);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(delegate->insertComponent("nobody", "b", 2), nullptr);
}

TEST_F(ComponentListTest, aPluginThatDoesNotLoadIsAnException) {
    try {
        delegate->addComponent("nobody", "a");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Couldn't load ViewerDelegateComponent plugin type 'nobody'.");
    }
    EXPECT_THROW(delegate->insertComponent("D", "a", 0), std::runtime_error);
    componentA.refusesCreate = true;
    EXPECT_THROW(delegate->addComponent("A", "a"), std::runtime_error);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre("A create"));
}

TEST_F(ComponentListTest, aSetupThatThrowsLeavesNothingBehind) {
    componentA.onCall = [](std::string_view entry, std::string_view) {
        if (entry == "setup") {
            throw std::runtime_error("setup");
        }
    };
    EXPECT_THROW(delegate->addComponent("A", "a"), std::runtime_error);
    EXPECT_THROW(delegate->insertComponent("A", "a", 0), std::runtime_error);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(componentA.numberOfInstances, 0);
}

TEST_F(ComponentListTest, anInsertedComponentMayRemoveItselfFromItsSetup) {
    componentA.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "setup") {
            delegate->removeComponent("a");
        }
    };
    EXPECT_EQ(delegate->insertComponent("A", "a", 0), nullptr);
    EXPECT_EQ(componentA.numberOfInstances, 0);
    EXPECT_THAT(log.take(), ElementsAre("A create", "A setup", "A cleanup", "A destroy"));
}

TEST_F(ComponentListTest, ofTwoComponentsWithOneNameTheEarlierIsFoundAndRemoved) {
    VlViewerDelegateComponentHostStruct* const first = delegate->addComponent("A", "same");
    VlViewerDelegateComponentHostStruct* const second = delegate->addComponent("B", "same");
    EXPECT_EQ(delegate->getComponent("same"), first);
    EXPECT_EQ(delegate->getComponentIndex("same"), 0);
    delegate->removeComponent("same");
    EXPECT_EQ(delegate->getComponent("same"), second);
    EXPECT_EQ(componentA.numberOfInstances, 0);
    EXPECT_EQ(componentB.numberOfInstances, 1);
}

TEST_F(ComponentListTest, anUnknownNameOrIndexIsAbsent) {
    delegate->addComponent("A", "a");
    EXPECT_EQ(delegate->getComponent("b"), nullptr);
    EXPECT_EQ(delegate->getComponent("A"), nullptr);
    EXPECT_EQ(delegate->getComponentIndex("b"), -1);
    EXPECT_EQ(delegate->getComponentByIndex(1), nullptr);
    EXPECT_STREQ(delegate->getComponentName(1), "");
    log.take();
    delegate->removeComponent("b");
    delegate->removeComponentByIndex(1);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(delegate->getNumberOfComponents(), 1U);
}

TEST_F(ComponentListTest, aRemovedComponentIsOutOfTheListBeforeItsCleanup) {
    delegate->addComponent("A", "a");
    componentA.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "cleanup") {
            EXPECT_EQ(delegate->getNumberOfComponents(), 0U);
        }
    };
    log.take();
    delegate->removeComponentByIndex(0);
    EXPECT_THAT(log.take(), ElementsAre("A cleanup", "A destroy"));
}

TEST_F(ComponentListTest, aCleanupThatThrowsStillEndsTheComponent) {
    delegate->addComponent("A", "a");
    componentA.onCall = [](std::string_view entry, std::string_view) {
        if (entry == "cleanup") {
            throw std::runtime_error("cleanup");
        }
    };
    EXPECT_THROW(delegate->removeComponent("a"), std::runtime_error);
    EXPECT_EQ(delegate->getNumberOfComponents(), 0U);
    EXPECT_EQ(componentA.numberOfInstances, 0);
}

TEST_F(ComponentListTest, aNameOutlivesChangesOfTheList) {
    delegate->addComponent("A", "a");
    const char* const name = delegate->getComponentName(0);
    for (int copy = 0; copy < 50; ++copy) {
        delegate->insertComponent("B", "b", 0);
    }
    EXPECT_EQ(delegate->getComponentName(50), name);
    EXPECT_STREQ(name, "a");
}

TEST_F(ComponentListTest, aComponentRemovedDuringItsOwnCallIsDeletedWhenTheOutermostReturns) {
    VlViewerDelegateComponentHostStruct* const component = delegate->addComponent("A", "a");
    const auto watch = component->watch();
    componentA.onCall = [&](std::string_view entry, std::string_view) {
        if (entry == "setOption") {
            delegate->removeComponent("a");
            EXPECT_FALSE(watch.expired());
        }
    };
    log.take();
    component->setOption(1, IntAttribute(2));
    EXPECT_TRUE(watch.expired());
    EXPECT_THAT(log.take(), ElementsAre("A setOption 1 2", "A cleanup", "A destroy"));
}

TEST_F(ComponentListTest, forwardsOptionsAndProcessing) {
    VlViewerDelegateComponentHostStruct* const component = delegate->addComponent("A", "a");
    component->setOption(5, IntAttribute(2));
    EXPECT_EQ(component->getOption(5), Attribute(IntAttribute(2)));
    EXPECT_FALSE(component->getOption(6).isValid());
    EXPECT_FALSE(component->isProcessing());
    componentA.processing = 3;
    EXPECT_TRUE(component->isProcessing());
}

TEST_F(ComponentListTest, theComponentsHostSuiteLeadsToItsDelegate) {
    VlViewerDelegateComponentHostStruct* const component = delegate->addComponent("A", "a");
    const ViewerDelegateComponentHostSuite& suite = *getViewerDelegateComponentHostSuite();
    void* host = nullptr;
    void* instance = nullptr;
    const void* pluginSuite = nullptr;
    suite.getViewerDelegate(component, &host, &instance, &pluginSuite);
    EXPECT_EQ(host, delegate.get());
    EXPECT_EQ(instance, delegate->instance);
    EXPECT_EQ(pluginSuite, delegate->suite);
    EXPECT_EQ(suite.reserved1, nullptr);
    EXPECT_EQ(suite.reserved2, nullptr);
}

} // namespace
} // namespace ViewerAPI::test
