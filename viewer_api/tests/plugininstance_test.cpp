#include "plugininstance.h"

#include "VlLogging/LogSink.h"
#include "VlPluginSystem/VlPluginSystem.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ViewerAPI {
namespace {

/// The two entries that every kind's table begins with, and more than any kind has behind them.
struct Table {
    void* (*create)(void* host);
    void (*destroy)(void* instance);
    std::array<void (*)(), 20> others = makeOthers();

    static constexpr std::array<void (*)(), 20> makeOthers() {
        std::array<void (*)(), 20> others{};
        others.fill([] {});
        return others;
    }
};

int anInstance = 0;
int numberOfDestroys = 0;

constexpr Table kWorking{[](void*) -> void* { return &anInstance; },
                         [](void*) { ++numberOfDestroys; }};
constexpr Table kRefusing{[](void*) -> void* { return nullptr; },
                          [](void*) { ++numberOfDestroys; }};
constexpr Table kThrowing{[](void*) -> void* { throw std::runtime_error("no memory"); },
                          [](void*) { throw std::runtime_error("in destroy"); }};

struct Registration {
    Registration(PluginKind kind, const void* suite)
        : info(pluginKindInfo(kind)), record{info.typeName, "Plug", info.apiVersion, suite} {
        EXPECT_TRUE(VlPluginSystem::registerPlugin(record));
    }
    ~Registration() { VlPluginSystem::unregisterPlugin(info.typeName, "Plug", info.apiVersion); }
    const PluginKindInfo& info;
    VlPluginRecord record;
};

std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no failure";
}

struct KindRow {
    PluginKind kind;
    const char* typeName;
    std::uint32_t apiVersion;
    const char* notLoaded;
    const char* noSuite;
    const char* createFailed;
};

const std::vector<KindRow> kKinds{
    {PluginKind::ViewerDelegate, "ViewerDelegatePlugin", 3,
     "Couldn't load ViewerDelegate plugin type 'Plug'.",
     "Error getting ViewerDelegate plugin suite for 'Plug'.",
     "Failed to create Viewer Delegate plugin instance for 'Plug'."},
    {PluginKind::ViewerDelegateComponent, "ViewerDelegateComponentPlugin", 2,
     "Couldn't load ViewerDelegateComponent plugin type 'Plug'.",
     "Error getting ViewerDelegateComponent plugin suite for 'Plug'.",
     "Failed to create ViewerDelegateComponent plugin instance for 'Plug'."},
    {PluginKind::Viewport, "ViewportPlugin", 2, "Couldn't load Viewport plugin type 'Plug' v2.",
     "Error getting Viewport plugin suite for 'Plug'.",
     "Failed to create Viewport plugin instance for 'Plug'."},
    {PluginKind::ViewportLayer, "ViewportLayerPlugin", 2,
     "Couldn't load ViewportLayer plugin type 'Plug'.",
     "Error getting ViewportLayer plugin suite for 'Plug'.",
     "Failed to create ViewportLayer plugin instance for 'Plug'."},
    {PluginKind::ViewportCamera, "ViewportCameraPlugin", 2,
     "Couldn't load ViewportCamera plugin type 'Plug'. The API version of the plugin might not "
     "match the one currently supported: v2. In that case the plugin needs to be recompiled and "
     "linked against this version of Ostrel.",
     "Error getting ViewportCamera plugin suite for 'Plug'.",
     "Failed to create ViewportCamera plugin instance for 'Plug'."},
    {PluginKind::Manipulator, "ManipulatorPlugin", 2,
     "Couldn't load Manipulator plugin type 'Plug'.",
     "Error getting Manipulator plugin suite for 'Plug'.",
     "Failed to create Manipulator plugin instance for 'Plug'."},
    {PluginKind::ManipulatorHandle, "ManipulatorHandlePlugin", 1,
     "Couldn't load ManipulatorHandle plugin type 'Plug'.",
     "Error getting ManipulatorHandle plugin suite for 'Plug'.",
     "Failed to create ManipulatorHandle plugin instance for 'Plug'."},
};

class PluginInstance : public testing::TestWithParam<KindRow> {
protected:
    std::string create() {
        return failureOf(
            [&] { createPluginInstance(GetParam().kind, "Plug", &host, suite, instance); });
    }
    int host = 0;
    const Table* suite = nullptr;
    void* instance = nullptr;
};

TEST_P(PluginInstance, isAskedForByTheKindsTypeNameAndVersion) {
    EXPECT_STREQ(pluginKindInfo(GetParam().kind).typeName, GetParam().typeName);
    EXPECT_EQ(pluginKindInfo(GetParam().kind).apiVersion, GetParam().apiVersion);
}

TEST_P(PluginInstance, failsWithTheFirstTextWhenThePluginIsNotThere) {
    EXPECT_EQ(create(), GetParam().notLoaded);
    EXPECT_EQ(suite, nullptr);
}

TEST_P(PluginInstance, failsWithTheFirstTextWhenTheVersionIsAnother) {
    const VlPluginRecord record{GetParam().typeName, "Plug", GetParam().apiVersion + 1, &kWorking};
    ASSERT_TRUE(VlPluginSystem::registerPlugin(record));
    EXPECT_EQ(create(), GetParam().notLoaded);
    VlPluginSystem::unregisterPlugin(record.typeName, record.name, record.apiVersion);
}

TEST_P(PluginInstance, failsWithTheSecondTextWhenThePluginHasNoSuite) {
    const Registration registration(GetParam().kind, nullptr);
    EXPECT_EQ(create(), GetParam().noSuite);
}

TEST_P(PluginInstance, failsWithTheSecondTextAndWhatIsMissingWhenTheTableHasGaps) {
    static constexpr Table kWithoutCreate{nullptr, kWorking.destroy};
    const Registration registration(GetParam().kind, &kWithoutCreate);
    const std::string noSuite = GetParam().noSuite;
    EXPECT_EQ(create(), noSuite.substr(0, noSuite.size() - 1) + ": it lacks the functions create.");
    EXPECT_EQ(suite, nullptr);
}

TEST_P(PluginInstance, failsWithTheThirdTextWhenCreateAnswersNullAndKeepsTheSuite) {
    const Registration registration(GetParam().kind, &kRefusing);
    numberOfDestroys = 0;
    EXPECT_EQ(create(), GetParam().createFailed);
    EXPECT_EQ(suite, &kRefusing);
    EXPECT_EQ(instance, nullptr);
    destroyPluginInstance(suite, instance);
    EXPECT_EQ(numberOfDestroys, 0);
}

TEST_P(PluginInstance, isStoredBesideItsSuiteAndDestroyedOnce) {
    const Registration registration(GetParam().kind, &kWorking);
    numberOfDestroys = 0;
    EXPECT_EQ(create(), "no failure");
    EXPECT_EQ(suite, &kWorking);
    EXPECT_EQ(instance, &anInstance);
    destroyPluginInstance(suite, instance);
    destroyPluginInstance(suite, instance);
    EXPECT_EQ(numberOfDestroys, 1);
}

TEST_P(PluginInstance, letsAnExceptionOfCreatePassAndKeepsNoInstance) {
    const Registration registration(GetParam().kind, &kThrowing);
    EXPECT_EQ(create(), "no memory");
    EXPECT_EQ(instance, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PluginInstance, testing::ValuesIn(kKinds),
                         [](const auto& row) { return std::string(row.param.typeName); });

TEST(PluginInstanceKinds, aKnownNameUnderAnotherKindIsNotThere) {
    const Registration registration(PluginKind::ViewportLayer, &kWorking);
    const Table* suite = nullptr;
    void* instance = nullptr;
    EXPECT_EQ(failureOf([&] {
                  createPluginInstance(PluginKind::ViewerDelegateComponent, "Plug", nullptr, suite,
                                       instance);
              }),
              "Couldn't load ViewerDelegateComponent plugin type 'Plug'.");
}

TEST(PluginInstanceSuite, isStoredBeforeCreateRuns) {
    static const Table* seen = nullptr;
    static const Table* stored = nullptr;
    static constexpr Table kLooking{[](void*) -> void* {
                                        seen = stored;
                                        return &anInstance;
                                    },
                                    [](void*) {}};
    const Registration registration(PluginKind::Viewport, &kLooking);
    void* instance = nullptr;
    createPluginInstance(PluginKind::Viewport, "Plug", nullptr, stored, instance);
    EXPECT_EQ(seen, &kLooking);
}

TEST(PluginInstanceDestroy, endsAnExceptionWithALoggedLine) {
    static constexpr Table kThrowingAnything{nullptr, [](void*) { throw 1; }};
    for (const auto& [suite, text] :
         {std::pair{&kThrowing, "A plug-in threw from its destroy entry: in destroy"},
          {&kThrowingAnything, "A plug-in threw from its destroy entry: unknown C++ exception"}}) {
        std::vector<LogRecord> records;
        setLogSink([&](const LogRecord& record) { records.push_back(record); });
        void* instance = &anInstance;
        destroyPluginInstance(suite, instance);
        setLogSink({});
        ASSERT_EQ(records.size(), 1U) << text;
        EXPECT_EQ(records[0].text, text);
        EXPECT_EQ(instance, nullptr);
    }
}

} // namespace
} // namespace ViewerAPI
