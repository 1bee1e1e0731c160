// The op type "Geometry.Import" in a scene.

#include "VlScenelibEngine/ScenelibEngine.h"
#include "engine.h"
#include "runtimesuite.h"
#include "until.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/Op.h"
#include "VlScenelib/ScenelibRuntime.h"
#include "VlScenelib/Transaction.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

// A node that moves four units along X within a second, a triangle on it, and one that stands.
constexpr const char* kMoving = R"({
    "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0, 1]}],
    "nodes": [{"name": "mover", "mesh": 0}, {"name": "stander", "mesh": 0}],
    "meshes": [{"name": "triangle", "primitives": [{"attributes": {"POSITION": 0}}]}],
    "animations": [{"channels": [{"sampler": 0, "target": {"node": 0, "path": "translation"}}],
                    "samplers": [{"input": 1, "output": 2}]}],
    "accessors": [
        {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
         "min": [0, 0, 0], "max": [1, 1, 0]},
        {"bufferView": 1, "componentType": 5126, "count": 2, "type": "SCALAR",
         "min": [0], "max": [1]},
        {"bufferView": 2, "componentType": 5126, "count": 2, "type": "VEC3"}],
    "bufferViews": [{"buffer": 0, "byteLength": 36},
                    {"buffer": 0, "byteOffset": 36, "byteLength": 8},
                    {"buffer": 0, "byteOffset": 44, "byteLength": 24}],
    "buffers": [{"byteLength": 68, "uri": "moving.bin"}]})";
constexpr float kMovingData[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 4, 0, 0};

class ImportOpTest : public testing::Test {
protected:
    ImportOpTest() : folder(fs::temp_directory_path() / ("import_op" + std::to_string(getpid()))) {
        fs::create_directories(folder);
        VlScenelibEngine::registerScenelibEngine();
        engine = std::make_shared<VlScenelibEngine::Engine>(2);
        runtime = VlScenelib::ScenelibRuntime::CreateAndSteal(
            VlScenelibEngine::createRuntime(engine), VlScenelibEngine::getRuntimeSuite());
        const auto transaction = runtime->createTransaction();
        op = transaction->createOp();
        client = transaction->createClient();
        transaction->setClientOp(client, op);
        runtime->commit(transaction);
        client->setAllOpen(true);
        client->setLocationsActive(StringAttribute("/root"));
    }
    ~ImportOpTest() override { fs::remove_all(folder); }

    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(folder / name, std::ios::binary) << content;
        return (folder / name).string();
    }
    std::string writeMoving() {
        write("moving.bin",
              std::string(reinterpret_cast<const char*>(kMovingData), sizeof(kMovingData)));
        return write("moving.gltf", kMoving);
    }

    void setArgs(const GroupAttribute& args) {
        const auto transaction = runtime->createTransaction();
        transaction->setOpArgs(op, "Geometry.Import", args);
        runtime->commit(transaction);
    }
    // Shows the arguments; the locations that were told of, with their attributes.
    std::map<std::string, GroupAttribute> show(const GroupAttribute& args) {
        setArgs(args);
        return fetch();
    }
    std::map<std::string, GroupAttribute> fetch() {
        EXPECT_TRUE(engine->waitUntilIdle(std::chrono::minutes(1)));
        std::vector<VlScenelib::LocationEvent> events;
        client->getLocationEvents(events, -1);
        std::map<std::string, GroupAttribute> told;
        for (const auto& event : events) {
            told[std::string(event.getLocationPath())] = event.getLocationData().getAttrs();
        }
        return told;
    }
    static std::vector<std::string> pathsOf(const std::map<std::string, GroupAttribute>& told) {
        std::vector<std::string> paths;
        for (const auto& [path, attrs] : told) {
            paths.push_back(path);
        }
        return paths;
    }
    static GroupAttribute argsOf(const std::string& path, float frame = 0) {
        return GroupBuilder()
            .set("filePath", StringAttribute(path))
            .set("system.timeSlice.currentTime", FloatAttribute(frame))
            .build();
    }
    static double placeOf(const GroupAttribute& attrs) {
        const DoubleAttribute matrix(attrs.getChildByName("xform.local.matrix"));
        return matrix ? matrix.getSample(0)[12] : 0;
    }

    fs::path folder;
    std::shared_ptr<VlScenelibEngine::Engine> engine;
    std::shared_ptr<VlScenelib::ScenelibRuntime> runtime;
    std::shared_ptr<VlScenelib::Op> op;
    std::shared_ptr<VlScenelib::Client> client;
};

constexpr const char* kObj = "o one\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

TEST_F(ImportOpTest, aModelHangsUnderItsFilesNameMadeSafe) {
    const auto told = show(argsOf(write("a.b c.obj", kObj)));
    EXPECT_THAT(pathsOf(told), ElementsAre("/root", "/root/a_b c_obj", "/root/a_b c_obj/one"));
    EXPECT_EQ(StringAttribute(told.at("/root").getChildByName("type")).getValue(), "group");
}

TEST_F(ImportOpTest, theNameCanBeTold) {
    const auto args = GroupBuilder()
                          .set("filePath", StringAttribute(write("a.obj", kObj)))
                          .set("name", StringAttribute("my.model"))
                          .build();
    EXPECT_THAT(pathsOf(show(args)), ElementsAre("/root", "/root/my_model", "/root/my_model/one"));
}

TEST_F(ImportOpTest, everyLocationOfTheModelNamesTheNodeThatMayEditIt) {
    const auto args = GroupBuilder()
                          .set("filePath", StringAttribute(write("a.obj", kObj)))
                          .set("exclusiveTo", StringAttribute("node"))
                          .build();
    for (const auto& [path, attrs] : show(args)) {
        const StringAttribute told(attrs.getChildByName("attributeEditor.exclusiveTo"));
        EXPECT_EQ(told.getValue("nobody"), path == "/root" ? "nobody" : "node") << path;
    }
}

TEST_F(ImportOpTest, theModelsOwnLocationTellsOfItsProxies) {
    const GroupAttribute proxies{{"viewer", StringAttribute("light.obj")}};
    const auto args = GroupBuilder()
                          .set("filePath", StringAttribute(write("a.obj", kObj)))
                          .set("proxies", proxies)
                          .build();
    for (const auto& [path, attrs] : show(args)) {
        EXPECT_EQ(attrs.getChildByName("proxies") == proxies, path == "/root/a_obj") << path;
    }
}

TEST_F(ImportOpTest, aFileThatCannotBeReadIsAnErrorLocationUnderItsName) {
    const std::string path = (folder / "missing.obj").string();
    const auto told = show(argsOf(path));
    ASSERT_THAT(pathsOf(told), ElementsAre("/root", "/root/missing_obj"));
    const GroupAttribute& attrs = told.at("/root/missing_obj");
    EXPECT_EQ(StringAttribute(attrs.getChildByName("type")).getValue(), "error");
    EXPECT_EQ(StringAttribute(attrs.getChildByName("errorMessage")).getValue(),
              "Can't import '" + path + "': there is no such file.");
}

TEST_F(ImportOpTest, withoutFilePathThereIsNothing) {
    const auto told = show(GroupAttribute::Empty());
    for (const auto& [path, attrs] : told) {
        EXPECT_FALSE(attrs) << path;
    }
}

TEST_F(ImportOpTest, anEmptyFilePathIsAnError) {
    const auto told = show(argsOf(""));
    EXPECT_EQ(StringAttribute(told.at("/root").getChildByName("errorMessage")).getValue(),
              "Geometry.Import: filePath is empty");
}

TEST_F(ImportOpTest, onlyWhatMovesIsCookedWhenTheTimeChanges) {
    const std::string path = writeMoving();
    const std::string top = "/root/moving_gltf";
    auto told = show(argsOf(path));
    ASSERT_THAT(pathsOf(told), ElementsAre("/root", top, top + "/mover", top + "/stander"));
    EXPECT_EQ(placeOf(told[top + "/mover"]), 0);
    told = show(argsOf(path, 12)); // half a second
    EXPECT_THAT(pathsOf(told), ElementsAre(top, top + "/mover"));
    EXPECT_EQ(placeOf(told[top + "/mover"]), 2);
    EXPECT_EQ(DoubleAttribute(told[top].getChildByName("bound")).getSample(0)[1], 3);
}

TEST_F(ImportOpTest, rateAndAnimationAreArguments) {
    const std::string path = writeMoving();
    const std::string mover = "/root/moving_gltf/mover";
    auto told = show(
        GroupBuilder().update(argsOf(path, 12)).set("framesPerSecond", FloatAttribute(48)).build());
    EXPECT_EQ(placeOf(told[mover]), 1);
    told = show(GroupBuilder().update(argsOf(path, 12)).set("animation", IntAttribute(-1)).build());
    EXPECT_EQ(placeOf(told[mover]), 0);
    EXPECT_TRUE(told.contains(mover));
}

TEST_F(ImportOpTest, aChangedFileIsReadAgainWhenItIsCookedAgain) {
    const std::string path = write("a.obj", kObj);
    show(argsOf(path));
    write("a.obj", std::string(kObj) + "o two\nf 3 2 1\n");
    runtime->flushCaches();
    EXPECT_THAT(pathsOf(fetch()), testing::Contains("/root/a_obj/two"));
}

// A model of that many meshes, each of so many triangles that reading it takes a while.
std::string manyMeshes(int meshes, int triangles) {
    std::string text;
    for (int mesh = 0; mesh < meshes; ++mesh) {
        text += "o mesh" + std::to_string(mesh) + "\n";
        for (int i = 0; i < triangles; ++i) {
            const std::string x = std::to_string(mesh) + ".";
            const std::string z = std::to_string(i);
            text += "v " + x + "0 0 " + z + "\nv " + x + "5 0 " + z + "\nv " + x + "0 1 " + z +
                    "\nf -3 -2 -1\n";
        }
    }
    return text;
}

TEST_F(ImportOpTest, aModelOfManyMeshesShowsItsHierarchyAndBoundsBeforeItsMeshes) {
    const std::string path = write("many.obj", manyMeshes(500, 4));
    client->setAllOpen(false);
    client->setLocationsOpen(StringAttribute({"/root"}));
    auto told = show(argsOf(path));
    ASSERT_THAT(pathsOf(told), ElementsAre("/root", "/root/many_obj"));
    EXPECT_THAT(DoubleAttribute(told["/root/many_obj"].getChildByName("bound")).getSample(0),
                ElementsAre(0, 499.5, 0, 1, 0, 3));
    const std::uint64_t before = engine->getNumberOfCooks();
    client->setLocationsOpen(StringAttribute({"/root/many_obj"}));
    told = fetch();
    EXPECT_EQ(told.size(), 500U);
    EXPECT_EQ(engine->getNumberOfCooks() - before, 500U);
    const GroupAttribute& mesh = told["/root/many_obj/mesh7"];
    EXPECT_THAT(DoubleAttribute(mesh.getChildByName("bound")).getSample(0),
                ElementsAre(7, 7.5, 0, 1, 0, 3));
    EXPECT_EQ(FloatAttribute(mesh.getChildByName("geometry.point.P")).getNumberOfValues(), 36);
}

// A model that is read as far as its material, and no further until it is let go.
class HeldModel {
public:
    explicit HeldModel(const fs::path& folder)
        : path((folder / "held.obj").string()), material((folder / "held.mtl").string()) {
        std::ofstream(path) << "mtllib held.mtl\n" << kObj;
        EXPECT_EQ(mkfifo(material.c_str(), 0600), 0);
    }
    ~HeldModel() {
        letGo();
        close(descriptor);
    }
    HeldModel(const HeldModel&) = delete;
    HeldModel& operator=(const HeldModel&) = delete;

    void letGo() {
        if (descriptor < 0) {
            // Goes on who waits at the pipe; who comes later finds a file, as empty as the pipe.
            descriptor = open(material.c_str(), O_RDWR | O_CLOEXEC);
            const std::string file = material + ".file";
            std::ofstream{file};
            fs::rename(file, material);
        }
    }

    const std::string path;

private:
    const std::string material;
    int descriptor = -1;
};

// Whether a program of this process's reads a model.
bool isReading() {
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0; // there is a child
}

TEST_F(ImportOpTest, otherLocationsAreToldWhileAFileIsRead) {
    HeldModel model(folder);
    const auto transaction = runtime->createTransaction();
    const auto other = transaction->createClient();
    const auto literal = transaction->createOp();
    transaction->setOpArgs(literal, "Scene.Literal",
                           GroupBuilder().set("staticScene.a.value", IntAttribute(1)).build());
    transaction->setClientOp(other, literal);
    transaction->setOpArgs(op, "Geometry.Import", argsOf(model.path));
    runtime->commit(transaction);
    other->setLocationsActive(StringAttribute("/root"));
    std::vector<VlScenelib::LocationEvent> events;
    until([&] {
        other->getLocationEvents(events, -1);
        return !events.empty();
    });
    EXPECT_TRUE(runtime->isProcessing());
    std::vector<VlScenelib::LocationEvent> early;
    client->getLocationEvents(early, -1);
    for (const auto& event : early) {
        EXPECT_EQ(event.getLocationPath(), "/root");
    }
    model.letGo();
    const auto told = fetch();
    EXPECT_TRUE(told.contains("/root/held_obj/one"));
    EXPECT_FALSE(runtime->isProcessing());
}

TEST_F(ImportOpTest, opsThatShowOneFileShareItsMeshes) {
    const std::string path = write("many.obj", manyMeshes(3, 4));
    const auto editable =
        GroupBuilder().update(argsOf(path)).set("exclusiveTo", StringAttribute("editor")).build();
    auto told = show(argsOf(path));
    const auto transaction = runtime->createTransaction();
    const auto other = transaction->createClient();
    const auto otherOp = transaction->createOp();
    transaction->setOpArgs(otherOp, "Geometry.Import", editable);
    transaction->setClientOp(other, otherOp);
    runtime->commit(transaction);
    other->setAllOpen(true);
    other->setLocationsActive(StringAttribute("/root"));
    ASSERT_TRUE(engine->waitUntilIdle(std::chrono::minutes(1)));
    std::vector<VlScenelib::LocationEvent> events;
    other->getLocationEvents(events, -1);
    ASSERT_EQ(events.back().getLocationPath(), "/root/many_obj/mesh2");
    const FloatAttribute points(told["/root/many_obj/mesh2"].getChildByName("geometry.point.P"));
    const FloatAttribute otherPoints(
        events.back().getLocationData().getAttrs().getChildByName("geometry.point.P"));
    EXPECT_EQ(points.getSample(0).data(), otherPoints.getSample(0).data());
}

TEST_F(ImportOpTest, whatNobodyWantsAnyMoreIsNotReadToItsEnd) {
    HeldModel model(folder);
    setArgs(argsOf(model.path));
    until(isReading);
    client->setLocationsInactive(StringAttribute("/root"));
    EXPECT_TRUE(engine->waitUntilIdle(std::chrono::minutes(1)));
    until([] { return !isReading(); });
    model.letGo();
    client->setLocationsActive(StringAttribute("/root"));
    EXPECT_TRUE(fetch().contains("/root/held_obj/one"));
}

// What its threads were doing goes on in the process that they were started in.
TEST_F(ImportOpTest, aForkedProcessEndsAndLeavesAloneWhatIsRead) {
    HeldModel model(folder);
    setArgs(argsOf(model.path));
    until(isReading);
    constexpr unsigned kDeadlineSeconds = 30; // or a signal ends it
    // With whatever status: to a leak checker all that the threads knew is lost there.
    EXPECT_EXIT((alarm(kDeadlineSeconds), std::exit(0)),
                [](int status) { return WIFEXITED(status); }, "");
    model.letGo();
    EXPECT_TRUE(fetch().contains("/root/held_obj/one"));
}

TEST_F(ImportOpTest, anEngineEndsWhileAFileIsRead) {
    HeldModel model(folder);
    setArgs(argsOf(model.path));
    until(isReading);
    client.reset();
    op.reset();
    runtime.reset();
    engine.reset();
    until([] { return !isReading(); });
}

} // namespace
