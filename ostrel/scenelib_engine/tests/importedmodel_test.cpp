// What is made of a model: from the import library's scene to locations.

#include "meshreader.h"
#include "modelarchive.h"
#include "ops/import/model.h"
#include "ops/import/safename.h"
#include "scenereader.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <assimp/scene.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;
using namespace VlScenelibEngine;
using testing::ElementsAre;
using testing::FloatNear;
using testing::ThrowsMessage;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

const Model::Moment kRest{-1, 0};

std::vector<std::string> childNames(const Model& model, std::size_t location) {
    std::vector<std::string> names;
    const StringAttribute& attribute = model.getChildNames(location);
    for (std::int64_t i = 0; i < attribute.getNumberOfValues(); ++i) {
        names.emplace_back(attribute.getSample(0)[static_cast<std::size_t>(i)]);
    }
    return names;
}

// The location of a path of names below the model's own.
std::size_t find(const Model& model, std::initializer_list<std::string> path) {
    std::size_t location = 0;
    for (const std::string& name : path) {
        const auto names = childNames(model, location);
        const auto found = std::find(names.begin(), names.end(), name);
        if (found == names.end()) {
            throw std::runtime_error("there is no '" + name + "'");
        }
        location = model.getChild(location, static_cast<std::size_t>(found - names.begin()));
    }
    return location;
}

std::vector<double> doubles(const GroupAttribute& attrs, const char* name) {
    const auto sample = DoubleAttribute(attrs.getChildByName(name)).getSample(0);
    return {sample.begin(), sample.end()};
}
std::vector<float> floats(const GroupAttribute& attrs, const char* name) {
    const auto sample = FloatAttribute(attrs.getChildByName(name)).getSample(0);
    return {sample.begin(), sample.end()};
}
std::vector<int> ints(const GroupAttribute& attrs, const char* name) {
    const auto sample = IntAttribute(attrs.getChildByName(name)).getSample(0);
    return {sample.begin(), sample.end()};
}
std::string text(const GroupAttribute& attrs, const char* name) {
    return StringAttribute(attrs.getChildByName(name)).getValue();
}

// A mesh as an importer makes it.
struct SourceMesh : aiMesh {
    explicit SourceMesh(const std::vector<aiVector3D>& points,
                        const std::vector<std::vector<unsigned>>& faces) {
        mPrimitiveTypes = aiPrimitiveType_POLYGON;
        mNumVertices = static_cast<unsigned>(points.size());
        mVertices = new aiVector3D[points.size()];
        std::copy(points.begin(), points.end(), mVertices);
        mNumFaces = static_cast<unsigned>(faces.size());
        mFaces = new aiFace[faces.size()];
        for (std::size_t f = 0; f < faces.size(); ++f) {
            mFaces[f].mNumIndices = static_cast<unsigned>(faces[f].size());
            mFaces[f].mIndices = new unsigned[faces[f].size()];
            std::copy(faces[f].begin(), faces[f].end(), mFaces[f].mIndices);
        }
    }
};

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInfinity = std::numeric_limits<float>::infinity();

TEST(MeshReader, polygonsOfAnySizeStayWhatTheyAre) {
    const SourceMesh source({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 2, 2}},
                            {{0, 1, 2, 3}, {0, 4}, {4}});
    const ModelData::Mesh mesh = readMesh(source, 0, true, {});
    EXPECT_THAT(mesh.vertexList, ElementsAre(0, 1, 2, 3, 0, 4, 4));
    EXPECT_THAT(mesh.startIndex, ElementsAre(0, 4, 6, 7));
    EXPECT_EQ(mesh.points.size(), 15u);
}

TEST(MeshReader, equalPointsBecomeOneAndUnusedOnesGo) {
    const SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9, 9, 9}, {1, 0, 0}, {-0.0F, 1, 0}},
                            {{0, 1, 2}, {0, 5, 4}});
    const ModelData::Mesh mesh = readMesh(source, 0, true, {});
    EXPECT_THAT(mesh.vertexList, ElementsAre(0, 1, 2, 0, 2, 1));
    EXPECT_THAT(mesh.points, ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
}

TEST(MeshReader, pointsThatDifferInTheirNormalStayApart) {
    SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}}, {{0, 1, 2}, {3, 2, 1}});
    source.mNormals = new aiVector3D[4]{{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, -1}};
    const ModelData::Mesh mesh = readMesh(source, 0, true, {});
    EXPECT_THAT(mesh.vertexList, ElementsAre(0, 1, 2, 3, 2, 1));
    EXPECT_EQ(mesh.normals.size(), 12u);
}

TEST(MeshReader, indicesOutOfRangeAndPointsThatAreNoNumbersCostTheirFace) {
    const SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {kNaN, 0, 0}, {0, kInfinity, 0}},
                            {{0, 1, 7}, {0, 1, 3}, {0, 4, 2}, {}, {0, 1, 2}, {0, 1, 4000000000u}});
    const ModelData::Mesh mesh = readMesh(source, 0, true, {});
    EXPECT_THAT(mesh.startIndex, ElementsAre(0, 3));
    EXPECT_THAT(mesh.points, ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
}

TEST(MeshReader, normalsThatAreNoNumbersAreNoNormals) {
    SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    source.mNormals = new aiVector3D[3]{{0, 0, 1}, {0, kNaN, 1}, {0, 0, 1}};
    EXPECT_TRUE(readMesh(source, 0, true, {}).normals.empty());
}

TEST(MeshReader, pointsKeepTheirColoursUnlessAllAreWhite) {
    SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    source.mColors[0] = new aiColor4D[3]{{1, 1, 1, 1}, {0.5F, 1, 0, 1}, {1, 1, 1, 1}};
    EXPECT_THAT(readMesh(source, 0, true, {}).colors, ElementsAre(1, 1, 1, 0.5F, 1, 0, 1, 1, 1));
    EXPECT_NEAR(readMesh(source, 0, false, {}).colors[3], 0.2140, 1e-4);
    source.mColors[0][1] = {1, 1, 1, 1};
    EXPECT_TRUE(readMesh(source, 0, true, {}).colors.empty());
    source.mColors[0][1].g = kNaN;
    EXPECT_TRUE(readMesh(source, 0, true, {}).colors.empty());
}

TEST(MeshReader, aMeshWithoutFacesIsACloudOfPoints) {
    const SourceMesh source({{0, 0, 0}, {0, 0, 0}, {kNaN, 0, 0}, {1, 2, 3}}, {});
    const ModelData::Mesh mesh = readMesh(source, 0, true, {});
    EXPECT_THAT(mesh.points, ElementsAre(0, 0, 0, 0, 0, 0, 1, 2, 3));
    EXPECT_TRUE(mesh.startIndex.empty());
}

TEST(MeshReader, aMeshWithoutAnythingSurvives) {
    const SourceMesh source({}, {});
    EXPECT_TRUE(readMesh(source, 0, true, {}).points.empty());
    aiMesh bare;
    EXPECT_TRUE(readMesh(bare, 0, true, {}).points.empty());
}

TEST(MeshReader, weightsOfMissingPointsAndBonesOfMissingNodesAreLeftOut) {
    SourceMesh source({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    source.mNumBones = 2;
    source.mBones = new aiBone* [2] { new aiBone, new aiBone };
    for (unsigned b = 0; b < 2; ++b) {
        source.mBones[b]->mName = b ? "missing" : "there";
        source.mBones[b]->mNumWeights = 3;
        source.mBones[b]->mWeights = new aiVertexWeight[3]{{0, 0.5F}, {9, 0.5F}, {1, kNaN}};
    }
    const ModelData::Mesh mesh = readMesh(source, 0, true, {{"there", 4}});
    ASSERT_EQ(mesh.bones.size(), 1u);
    EXPECT_EQ(mesh.bones[0].node, 4u);
    EXPECT_THAT(mesh.bones[0].points, ElementsAre(0));
    EXPECT_THAT(mesh.bones[0].weights, ElementsAre(0.5F));
}

TEST(SceneReader, filesThatNameTheirAxesAreTurnedYUp) {
    aiScene scene;
    scene.mRootNode = new aiNode("root");
    scene.mRootNode->addChildren(1, std::array{new aiNode("child")}.data());
    scene.mMetaData = aiMetadata::Alloc(6);
    const std::pair<const char*, int> axes[] = {{"UpAxis", 2},    {"UpAxisSign", 1},
                                                {"FrontAxis", 1}, {"FrontAxisSign", -1},
                                                {"CoordAxis", 0}, {"CoordAxisSign", 1}};
    for (unsigned i = 0; i < 6; ++i) {
        scene.mMetaData->Set(i, axes[i].first, axes[i].second);
    }
    const ModelData model = readScene(scene, "a.fbx", false);
    // Z becomes Y, and -Y becomes Z.
    EXPECT_THAT(model.nodes[0].matrix,
                ElementsAre(1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1));
}

TEST(SceneReader, anEmptySceneIsRefused) {
    aiScene scene;
    const auto read = [&] { static_cast<void>(readScene(scene, "a.x", false)); };
    EXPECT_THAT(read, ThrowsMessage<std::runtime_error>("there is no scene in it"));
    scene.mRootNode = new aiNode("root");
    EXPECT_THAT(read, ThrowsMessage<std::runtime_error>("there is nothing in it"));
}

ModelData smallModel() {
    ModelData model;
    model.nodes.resize(2);
    model.nodes[1].parent = 0;
    model.nodes[1].name = "node";
    model.nodes[1].meshes = {0};
    model.meshes.resize(1);
    model.meshes[0].name = "mesh";
    model.meshes[0].points = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    model.meshes[0].vertexList = {0, 1, 2};
    model.meshes[0].startIndex = {0, 3};
    model.meshes[0].material = 0;
    model.materials.resize(1);
    model.textures = {"picture"};
    model.cameras.resize(1);
    model.lights.resize(1);
    model.animations.resize(1);
    model.animations[0].channels.push_back({1, {{0, {0, 0, 0}}, {1, {4, 0, 0}}}, {}, {}});
    return model;
}

std::span<const std::byte> bytesOf(const std::string& archive) {
    return {reinterpret_cast<const std::byte*>(archive.data()), archive.size()};
}

TEST(ModelArchive, aModelComesBackAsItWent) {
    const std::string archive = packModel(smallModel());
    EXPECT_EQ(packModel(unpackModel(bytesOf(archive))), archive);
}

TEST(ModelArchive, aFailureComesBackAsItsReason) {
    EXPECT_THAT([] { static_cast<void>(unpackModel(bytesOf(packFailure("for no reason")))); },
                ThrowsMessage<std::runtime_error>("for no reason"));
}

TEST(ModelArchive, everyTruncationIsRefused) {
    const std::string archive = packModel(smallModel());
    for (std::size_t size = 0; size < archive.size(); ++size) {
        const std::string truncated = archive.substr(0, size);
        EXPECT_THAT([&] { static_cast<void>(unpackModel(bytesOf(truncated))); },
                    ThrowsMessage<std::runtime_error>("the import program gave no whole answer"))
            << size;
    }
}

TEST(ModelArchive, everyDamagedByteIsRefusedOrHarmless) {
    const std::string archive = packModel(smallModel());
    for (std::size_t i = 0; i < archive.size(); ++i) {
        for (const char flip : {'\x01', '\x80', '\xFF'}) {
            std::string damaged = archive;
            damaged[i] = static_cast<char>(damaged[i] ^ flip);
            try {
                const Model model(unpackModel(bytesOf(damaged)));
                static_cast<void>(model.getAttrs(0, {0, 0.5}));
            } catch (const std::runtime_error&) {
            }
        }
    }
}

TEST(ImportedModel, namesAreSafeAndUnique) {
    EXPECT_EQ(safeName("duck.dae", "x"), "duck_dae");
    EXPECT_EQ(safeName("a/b\n", "x"), "a_b_");
    EXPECT_EQ(safeName("", "x"), "x");
    EXPECT_EQ(safeName(std::string(254, 'a') + "\xC3\xA9", "x"), std::string(254, 'a'));
    SiblingNames names;
    EXPECT_EQ(names.unique("a"), "a");
    EXPECT_EQ(names.unique("a_2"), "a_2");
    EXPECT_EQ(names.unique("a"), "a_3");
    EXPECT_EQ(names.unique("a"), "a_4");
    EXPECT_EQ(names.unique("a_2"), "a_2_2");
}

TEST(ImportedModel, manyChildrenOfOneNameAreQuick) {
    ModelData data;
    data.nodes.resize(100001);
    for (std::size_t i = 1; i < data.nodes.size(); ++i) {
        data.nodes[i].parent = 0;
        data.nodes[i].name = "same";
    }
    const Model model(std::move(data));
    EXPECT_EQ(childNames(model, 0).back(), "same_100000");
}

TEST(ImportedModel, deepNestingIsNoRecursion) {
    ModelData data = smallModel();
    data.nodes.resize(200000);
    for (std::size_t i = 1; i < data.nodes.size(); ++i) {
        data.nodes[i].parent = static_cast<std::int32_t>(i) - 1;
        data.nodes[i].meshes = {0};
    }
    const Model model(std::move(data));
    EXPECT_THAT(doubles(model.getAttrs(0, kRest), "bound"), ElementsAre(0, 1, 0, 1, 0, 0));
}

TEST(ImportedModel, aNodeOfOneMeshIsThatMeshAndOthersAreGroups) {
    ModelData data = smallModel();
    data.nodes.resize(4);
    data.nodes[2] = {"both", 0, ModelData::kIdentity, {0, 0}, ModelData::kNone, ModelData::kNone};
    data.nodes[3] = {"empty", 0, ModelData::kIdentity, {}, ModelData::kNone, ModelData::kNone};
    const Model model(std::move(data));
    EXPECT_THAT(childNames(model, 0), ElementsAre("node", "both", "empty"));
    EXPECT_EQ(text(model.getAttrs(0, kRest), "type"), "group");
    EXPECT_EQ(text(model.getAttrs(find(model, {"node"}), kRest), "type"), "polymesh");
    EXPECT_EQ(text(model.getAttrs(find(model, {"both"}), kRest), "type"), "group");
    EXPECT_EQ(text(model.getAttrs(find(model, {"empty"}), kRest), "type"), "locator");
    EXPECT_THAT(childNames(model, find(model, {"both"})), ElementsAre("mesh", "mesh_2"));
}

TEST(ImportedModel, instancesShareTheirGeometry) {
    ModelData data = smallModel();
    data.nodes.push_back({"second", 0, ModelData::kIdentity, {0}, -1, -1});
    const Model model(std::move(data));
    const auto first = model.getAttrs(find(model, {"node"}), kRest).getChildByName("geometry");
    const auto second = model.getAttrs(find(model, {"second"}), kRest).getChildByName("geometry");
    EXPECT_EQ(first.getHandle(), second.getHandle());
}

TEST(ImportedModel, aMeshHasItsPointsPolygonsAndBound) {
    const Model model(smallModel());
    const GroupAttribute attrs = model.getAttrs(find(model, {"node"}), kRest);
    EXPECT_THAT(floats(attrs, "geometry.point.P"), ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
    EXPECT_EQ(FloatAttribute(attrs.getChildByName("geometry.point.P")).getTupleSize(), 3);
    EXPECT_THAT(ints(attrs, "geometry.poly.vertexList"), ElementsAre(0, 1, 2));
    EXPECT_THAT(ints(attrs, "geometry.poly.startIndex"), ElementsAre(0, 3));
    EXPECT_THAT(doubles(attrs, "bound"), ElementsAre(0, 1, 0, 1, 0, 0));
    EXPECT_FALSE(attrs.getChildByName("xform"));
}

TEST(ImportedModel, nodesMoveWithTheTimeAndStandStillOutsideTheAnimation) {
    const Model model(smallModel());
    const std::size_t node = find(model, {"node"});
    ASSERT_TRUE(model.isAnimated(node));
    ASSERT_TRUE(model.isAnimated(0)); // its bound follows
    struct Row {
        double seconds;
        double x;
    };
    for (const Row& row : {Row{-5, 0}, {0, 0}, {0.25, 1}, {0.5, 2}, {1, 4}, {60, 4}}) {
        const Model::Moment moment{0, row.seconds};
        const GroupAttribute attrs = model.getAttrs(node, moment);
        const auto matrix = doubles(attrs, "xform.local.matrix");
        EXPECT_EQ(matrix.empty() ? 0 : matrix[12], row.x) << row.seconds;
        EXPECT_THAT(doubles(model.getAttrs(0, moment), "bound"),
                    ElementsAre(row.x, row.x + 1, 0, 1, 0, 0));
    }
    EXPECT_FALSE(model.getAttrs(node, kRest).getChildByName("xform"));
    EXPECT_FALSE(model.getAttrs(node, {7, 0.5}).getChildByName("xform"));
}

TEST(ImportedModel, rotationsTakeTheShorterArc) {
    ModelData data = smallModel();
    const auto half = static_cast<float>(std::sqrt(0.5));
    // From none to a quarter turn about Y, the latter with the opposite sign.
    data.animations[0].channels[0] = {1, {}, {{0, {1, 0, 0, 0}}, {1, {-half, 0, -half, 0}}}, {}};
    const Model model(std::move(data));
    const auto matrix =
        doubles(model.getAttrs(find(model, {"node"}), {0, 0.5}), "xform.local.matrix");
    ASSERT_EQ(matrix.size(), 16u);
    EXPECT_NEAR(matrix[0], half, 1e-6);
    EXPECT_NEAR(matrix[2], -half, 1e-6); // counter-clockwise seen from +Y
}

TEST(ImportedModel, partsWithoutKeysStayAsTheNodeHasThem) {
    ModelData data = smallModel();
    data.nodes[1].matrix = {0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 5, 6, 7, 1};
    const ModelData::Matrix before = data.nodes[1].matrix;
    data.animations[0].channels[0] = {1, {{0, {1, 1, 1}}}, {}, {}};
    const Model model(std::move(data));
    const auto matrix =
        doubles(model.getAttrs(find(model, {"node"}), {0, 0}), "xform.local.matrix");
    ASSERT_EQ(matrix.size(), 16u);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_NEAR(matrix[i], before[i], 1e-9) << i;
    }
    EXPECT_EQ(matrix[12], 1);
}

TEST(ImportedModel, pointsFollowTheirBones) {
    ModelData data = smallModel();
    data.nodes.push_back({"bone", 0, ModelData::kIdentity, {}, -1, -1});
    // Half of the second point's weight, all of the third's; the first stays.
    data.meshes[0].bones.push_back({2, ModelData::kIdentity, {1, 2}, {0.5F, 1}});
    data.meshes[0].bones.push_back({0, ModelData::kIdentity, {1}, {0.5F}});
    data.animations[0].channels[0] = {2, {{0, {0, 0, 8}}}, {}, {}};
    const Model model(std::move(data));
    const std::size_t node = find(model, {"node"});
    EXPECT_THAT(floats(model.getAttrs(node, kRest), "geometry.point.P"),
                ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0));
    const GroupAttribute attrs = model.getAttrs(node, {0, 0});
    EXPECT_THAT(floats(attrs, "geometry.point.P"), ElementsAre(0, 0, 0, 1, 0, 4, 0, 1, 8));
    EXPECT_THAT(doubles(attrs, "bound"), ElementsAre(0, 1, 0, 1, 0, 8));
    EXPECT_THAT(ints(attrs, "geometry.poly.vertexList"), ElementsAre(0, 1, 2));
}

TEST(ImportedModel, morphsAreAddedInTheirProportion) {
    ModelData data = smallModel();
    data.meshes[0].morphs.push_back({0.5F, {0, 0, 2, 0, 0, 2, 0, 0, 2}, {}});
    data.animations[0].morphChannels.push_back({1, {{0, {0}}, {1, {1}}}});
    const Model model(std::move(data));
    const std::size_t node = find(model, {"node"});
    EXPECT_EQ(floats(model.getAttrs(node, kRest), "geometry.point.P")[2], 1);
    EXPECT_EQ(floats(model.getAttrs(node, {0, 0}), "geometry.point.P")[2], 0);
    EXPECT_EQ(floats(model.getAttrs(node, {0, 0.75}), "geometry.point.P")[2], 1.5);
}

TEST(ImportedModel, boundsOfTurnedHierarchiesDoNotGrow) {
    ModelData data = smallModel();
    data.animations.clear();
    const double half = std::sqrt(0.5);
    data.nodes.resize(41);
    for (std::size_t i = 1; i < data.nodes.size(); ++i) {
        data.nodes[i].parent = static_cast<std::int32_t>(i) - 1;
        data.nodes[i].matrix = {half, half, 0, 0, -half, half, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    }
    data.nodes[1].meshes.clear();
    data.nodes.back().meshes = {0};
    const Model model(std::move(data));
    // Forty eighths of a turn are none.
    const auto bound = doubles(model.getAttrs(0, kRest), "bound");
    EXPECT_NEAR(bound[0], 0, 1e-9);
    EXPECT_NEAR(bound[1], 1, 1e-9);
}

TEST(ImportedModel, pivotNodesBecomePartsOfTheTransformOfTheirNode) {
    ModelData data = smallModel();
    ModelData::Matrix offset = ModelData::kIdentity;
    offset[12] = 3;
    data.nodes[1] = {"Cube_$AssimpFbx$_Translation", 0, offset, {}, -1, -1};
    data.nodes.push_back(
        {"Cube", 1, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, {0}, -1, -1});
    const Model model(std::move(data));
    EXPECT_THAT(childNames(model, 0), ElementsAre("Cube"));
    const GroupAttribute attrs = model.getAttrs(find(model, {"Cube"}), kRest);
    EXPECT_EQ(text(attrs, "type"), "polymesh");
    EXPECT_EQ(doubles(attrs, "xform.local.matrix")[12], 3);
    EXPECT_EQ(doubles(attrs, "xform.local2.matrix")[0], 2);
    EXPECT_THAT(doubles(model.getAttrs(0, kRest), "bound"), ElementsAre(3, 5, 0, 2, 0, 0));
}

class ModelFileTest : public testing::Test {
protected:
    ModelFileTest()
        : folder(fs::temp_directory_path() / ("model_files" + std::to_string(getpid()))) {
        fs::create_directories(folder);
    }
    ~ModelFileTest() override { fs::remove_all(folder); }

    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(folder / name) << content;
        return (folder / name).string();
    }

    fs::path folder;
};

constexpr const char* kTriangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\n"
                                  "mtllib a.mtl\nusemtl one\nf 1/1 2/2 3/3\n";

TEST_F(ModelFileTest, coloursOfAnOlderFormatBecomeLinear) {
    write("a.mtl", "newmtl one\nKd 0.5 1 0\nd 0.25\n");
    const Model model(readModelFile(write("a.obj", kTriangle)));
    const GroupAttribute attrs = model.getAttrs(model.getChild(0, 0), kRest);
    EXPECT_THAT(floats(attrs, "material.baseColor"),
                ElementsAre(FloatNear(0.2140F, 1e-4F), FloatNear(1, 1e-6F), FloatNear(0, 1e-6F)));
    EXPECT_EQ(FloatAttribute(attrs.getChildByName("material.opacity")).getValue(), 0.25F);
    EXPECT_THAT(floats(attrs, "geometry.point.st"), ElementsAre(0, 0, 1, 0, 0, 1));
}

TEST_F(ModelFileTest, aTextureIsFoundBesideTheModelWhateverItsCaseAndFolder) {
    write("Wood.PNG", "no picture, but there");
    for (const char* spelling :
         {"Wood.PNG", "wood.png", "C:\\models\\wood.png", "./Wood.PNG", "/elsewhere/Wood.PNG"}) {
        SCOPED_TRACE(spelling);
        write("a.mtl", std::string("newmtl one\nKd 0 0 0\nmap_Kd ") + spelling + "\n");
        const ModelData data = readModelFile(write("a.obj", kTriangle));
        EXPECT_TRUE(data.warnings.empty());
        const Model model(data);
        const GroupAttribute attrs = model.getAttrs(model.getChild(0, 0), kRest);
        EXPECT_EQ(text(attrs, "material.texture"), (folder / "Wood.PNG").string());
        // Black under a texture is nobody's wish.
        EXPECT_FALSE(attrs.getChildByName("material.baseColor"));
    }
}

TEST_F(ModelFileTest, aMissingTextureIsToldAndTheColourStays) {
    write("a.mtl", "newmtl one\nKd 1 0 0\nmap_Kd missing.png\n");
    const ModelData data = readModelFile(write("a.obj", kTriangle));
    EXPECT_THAT(data.warnings, ElementsAre("textures that aren't there: 'missing.png'"));
    const Model model(data);
    const GroupAttribute attrs = model.getAttrs(model.getChild(0, 0), kRest);
    EXPECT_FALSE(attrs.getChildByName("material.texture"));
    EXPECT_EQ(floats(attrs, "material.baseColor").at(0), 1);
}

TEST_F(ModelFileTest, camerasKnowTheirLensAndWhereTheyLook) {
    const Model model(readModelFile(write("cameras.gltf", R"({
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0, 1]}],
        "nodes": [{"name": "wide", "camera": 0, "translation": [0, 2, 5]},
                  {"name": "flat", "camera": 1}],
        "cameras": [{"type": "perspective",
                     "perspective": {"aspectRatio": 1.5, "yfov": 0.8, "znear": 0.1, "zfar": 50}},
                    {"type": "orthographic",
                     "orthographic": {"xmag": 3, "ymag": 2, "znear": 1, "zfar": 9}}]})")));
    const GroupAttribute wide = model.getAttrs(find(model, {"wide"}), kRest);
    EXPECT_EQ(text(wide, "type"), "camera");
    EXPECT_EQ(text(wide, "geometry.projection"), "perspective");
    EXPECT_NEAR(doubles(wide, "geometry.fov").at(0), 0.8 * 180 / 3.14159265358979, 1e-4);
    EXPECT_NEAR(doubles(wide, "geometry.near").at(0), 0.1, 1e-6);
    EXPECT_NEAR(doubles(wide, "geometry.far").at(0), 50, 1e-4);
    // It looks down its own -Z already, so only the node's matrix is there.
    const GroupAttribute xform(wide.getChildByName("xform"));
    EXPECT_EQ(xform.getNumberOfChildren(), 1);
    EXPECT_EQ(doubles(wide, "xform.local.matrix").at(14), 5);
    const GroupAttribute flat = model.getAttrs(find(model, {"flat"}), kRest);
    EXPECT_EQ(text(flat, "geometry.projection"), "orthographic");
    EXPECT_NEAR(doubles(flat, "geometry.orthographicWidth").at(0), 6, 1e-6);
}

TEST_F(ModelFileTest, aCloudOfPointsIsOne) {
    const Model model(readModelFile(write(
        "cloud.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                     "property float y\nproperty float z\nend_header\n0 0 0\n1 0 0\n0 5 0\n")));
    const GroupAttribute attrs = model.getAttrs(model.getChild(0, 0), kRest);
    EXPECT_EQ(text(attrs, "type"), "points");
    EXPECT_EQ(floats(attrs, "geometry.point.P").size(), 9u);
    EXPECT_FALSE(attrs.getChildByName("geometry.poly"));
    EXPECT_THAT(doubles(attrs, "bound"), ElementsAre(0, 1, 0, 5, 0, 0));
}

// A glTF file of one triangle in the first of these materials.
std::string triangleWith(const std::string& materials) {
    return R"({
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"mesh": 0}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "material": 0}]}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                       "min": [0, 0, 0], "max": [1, 1, 0]}],
        "bufferViews": [{"buffer": 0, "byteLength": 36}],
        "buffers": [{"byteLength": 36, "uri":
            "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"
        }],)" +
           materials + "}";
}

TEST_F(ModelFileTest, anEmbeddedTextureComesWithTheMaterial) {
    // A picture file's first bytes in a data URI are enough: nobody decodes them here.
    const Model model(readModelFile(write("embedded.gltf", triangleWith(R"(
        "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0},
                                                "baseColorFactor": [0.5, 1, 1, 1]}}],
        "textures": [{"source": 0}],
        "images": [{"uri": "data:image/png;base64,iVBORw0KGgo="}])"))));
    const GroupAttribute attrs = model.getAttrs(model.getChild(0, 0), kRest);
    EXPECT_EQ(text(attrs, "type"), "polymesh");
    EXPECT_EQ(text(attrs, "material.textureData"), "\x89PNG\r\n\x1A\n");
    // This format's colours are linear as they are, and multiply the texture.
    EXPECT_THAT(floats(attrs, "material.baseColor"), ElementsAre(0.5F, 1, 1));
}

TEST_F(ModelFileTest, onlyOneFormatsMaterialsHaveOneSideUnlessTheySayTwo) {
    const auto materialOf = [this](const std::string& extra) {
        const Model model(readModelFile(
            write("sides.gltf", triangleWith(R"("materials": [{"name": "one")" + extra + "}]"))));
        return model.getAttrs(model.getChild(0, 0), kRest);
    };
    EXPECT_EQ(IntAttribute(materialOf("").getChildByName("material.doubleSided")).getValue(1), 0);
    EXPECT_FALSE(materialOf(R"(, "doubleSided": true)").getChildByName("material.doubleSided"));

    write("a.mtl", "newmtl one\nKd 1 0 0\n");
    const Model model(readModelFile(write("a.obj", kTriangle)));
    EXPECT_FALSE(
        model.getAttrs(model.getChild(0, 0), kRest).getChildByName("material.doubleSided"));
}

} // namespace
