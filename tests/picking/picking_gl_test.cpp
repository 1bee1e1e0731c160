#include "pickoracle.h"
#include "pickscene.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

// Picks of the bundled plug-ins, whole road, against plain arithmetic. Needs an OpenGL context;
// skipped where none can be made. OSTREL_ORACLE_SEED sets the seed of the random scenes.
namespace {

std::uint32_t seedFromEnvironment() {
    const char* text = std::getenv("OSTREL_ORACLE_SEED");
    return text ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : 20240611u;
}

Imath::M44d placed(const Imath::V3d& at, const Imath::V3d& size,
                   const Imath::V3d& turn = Imath::V3d(0.0)) {
    Imath::M44d scale;
    scale.setScale(size);
    Imath::M44d rotation;
    rotation.rotate(turn);
    Imath::M44d move;
    move.setTranslation(at);
    return scale * rotation * move;
}

/// Boxes that overlap, touch, vanish in a pixel, fill the picture, and are cut by the near plane.
std::vector<Box> randomBoxes(std::mt19937& random, int count) {
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto vector = [&](double reach) {
        return Imath::V3d(unit(random), unit(random), unit(random)) * reach;
    };
    std::vector<Box> boxes;
    const auto add = [&boxes](const Imath::M44d& world) {
        boxes.push_back({"/root/box_" + std::to_string(boxes.size()), world});
    };
    while (static_cast<int>(boxes.size()) < count) {
        const double kind = unit(random);
        const Imath::V3d at = vector(6.0);
        if (kind < 0.4) {
            add(placed(at, Imath::V3d(0.4) + (vector(0.6) + Imath::V3d(0.6)), vector(3.0)));
        } else if (kind < 0.6) {
            add(placed(at, Imath::V3d(0.02), vector(3.0))); // about a pixel
        } else if (kind < 0.8) {
            // Two that touch: one face, and its edges, in common.
            add(placed(at, Imath::V3d(1.0)));
            add(placed(at + Imath::V3d(1.0, 0.0, 0.0), Imath::V3d(1.0)));
        } else if (kind < 0.9) {
            // Cut by the near plane: beside the camera, which stands at z = 14.
            add(placed(Imath::V3d(2.0 * unit(random), 2.0 * unit(random), 13.8),
                       Imath::V3d(0.5, 0.5, 2.0), vector(0.4)));
        } else {
            add(placed({at.x, at.y, -30.0 + at.z}, Imath::V3d(60.0, 50.0, 1.0), vector(0.3)));
        }
    }
    return boxes;
}

constexpr PickCamera kCamera{{0.3, 0.5, 14.0}, {0, 0, 0}, 0.5, 100.0};

TEST(PickingGL, singlePixelsShowTheNearestLocation) {
    const std::uint32_t seed = seedFromEnvironment();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int compared = 0;
    int hits = 0;
    for (int round = 0; round < 10; ++round) {
        const std::vector<Box> boxes = randomBoxes(random, 40);
        PickScene scene(boxes, kCamera);
        if (!scene.canDraw()) {
            GTEST_SKIP() << "no OpenGL context on this machine";
        }
        scene.draw();
        const PickOracle oracle(boxes, scene.worldToClip());
        for (int i = 0; i < 1000; ++i) {
            const int x = static_cast<int>(random() % PickScene::kWidth);
            const int y = static_cast<int>(random() % PickScene::kHeight);
            const PickScene::Paths picked = scene.pickViewport(x, y, 1, 1);
            ASSERT_EQ(scene.pickCache(x, y, 1, 1), picked)
                << "kept ids, round " << round << " at " << x << ", " << y;
            const auto shown = oracle.shown(x, y);
            if (!shown) {
                continue;
            }
            PickScene::Paths wanted;
            if (*shown >= 0) {
                wanted.insert(boxes[static_cast<std::size_t>(*shown)].path);
                ++hits;
            }
            ASSERT_EQ(picked, wanted) << "round " << round << " at " << x << ", " << y;
            ++compared;
            // A pick clears the window's picture and not the ids that are kept.
        }
    }
    EXPECT_GT(compared, 4000);
    EXPECT_GT(hits, 1500);
    RecordProperty("compared", compared);
}

TEST(PickingGL, regionsShowEverythingInThem) {
    const std::uint32_t seed = seedFromEnvironment() + 1;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 5; ++round) {
        const std::vector<Box> boxes = randomBoxes(random, 40);
        PickScene scene(boxes, kCamera);
        if (!scene.canDraw()) {
            GTEST_SKIP() << "no OpenGL context on this machine";
        }
        scene.draw();
        const PickOracle oracle(boxes, scene.worldToClip());
        for (int i = 0; i < 200; ++i) {
            const int width = 1 + static_cast<int>(random() % 24);
            const int height = 1 + static_cast<int>(random() % 24);
            const int x = static_cast<int>(random() % (PickScene::kWidth - 24));
            const int y = static_cast<int>(random() % (PickScene::kHeight - 24));
            const PickScene::Paths picked = scene.pickViewport(x, y, width, height);
            ASSERT_EQ(scene.pickCache(x, y, width, height), picked);
            PickScene::Paths shown;
            for (int py = y; py < y + height; py += 2) {
                for (int px = x; px < x + width; px += 2) {
                    if (const auto box = oracle.shown(px, py); box && *box >= 0) {
                        shown.insert(boxes[static_cast<std::size_t>(*box)].path);
                    }
                }
            }
            for (const std::string& path : shown) {
                ASSERT_TRUE(picked.contains(path)) << path << " in round " << round;
            }
            for (std::size_t box = 0; box < boxes.size(); ++box) {
                if (picked.contains(boxes[box].path)) {
                    ASSERT_TRUE(oracle.canReach(static_cast<int>(box), x, y, width, height))
                        << boxes[box].path << " in round " << round;
                }
            }
        }
    }
}

TEST(PickingGL, deepPicksFindWhatIsHidden) {
    const std::uint32_t seed = seedFromEnvironment() + 2;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int found = 0;
    for (int round = 0; round < 3; ++round) {
        const std::vector<Box> boxes = randomBoxes(random, 40);
        PickScene scene(boxes, kCamera);
        if (!scene.canDraw()) {
            GTEST_SKIP() << "no OpenGL context on this machine";
        }
        const PickOracle oracle(boxes, scene.worldToClip());
        for (int i = 0; i < 60; ++i) {
            const int x = static_cast<int>(random() % PickScene::kWidth);
            const int y = static_cast<int>(random() % PickScene::kHeight);
            const int size = 1 + static_cast<int>(random() % 5);
            const PickScene::Paths picked = scene.pickViewport(x, y, size, size, true);
            for (std::size_t box = 0; box < boxes.size(); ++box) {
                const bool isPicked = picked.contains(boxes[box].path);
                if (oracle.isSurelyBehind(static_cast<int>(box), x, y)) {
                    ASSERT_TRUE(isPicked) << boxes[box].path << " in round " << round;
                    ++found;
                } else if (isPicked) {
                    ASSERT_TRUE(oracle.canReach(static_cast<int>(box), x, y, size, size));
                }
            }
        }
    }
    EXPECT_GT(found, 100);
}

TEST(PickingGL, deepPickSeesAHundredLayersAndNoMore) {
    std::vector<Box> boxes;
    for (int i = 0; i < 120; ++i) {
        boxes.push_back({"/root/box_" + std::to_string(i),
                         placed({0, 0, -1.0 * i}, Imath::V3d(4.0, 4.0, 0.1))});
    }
    PickScene scene(boxes, {{0, 0, 10}, {0, 0, 0}, 1.0, 500.0});
    if (!scene.canDraw()) {
        GTEST_SKIP() << "no OpenGL context on this machine";
    }
    const PickScene::Paths picked =
        scene.pickViewport(PickScene::kWidth / 2, PickScene::kHeight / 2, 1, 1, true);
    EXPECT_EQ(picked.size(), 100u);
    EXPECT_TRUE(picked.contains("/root/box_0"));
    EXPECT_TRUE(picked.contains("/root/box_99"));
    EXPECT_FALSE(picked.contains("/root/box_100"));
}

TEST(PickingGL, leavesAllOfTheWindowClearedAndNothingConfined) {
    PickScene scene({{"/root/box_0", placed({0, 0, 0}, Imath::V3d(4.0))}}, kCamera);
    if (!scene.canDraw()) {
        GTEST_SKIP() << "no OpenGL context on this machine";
    }
    constexpr int kRegions[][4] = {
        {80, 60, 1, 1}, {-3, -3, 6, 6}, {500, 500, 9, 9}, {80, 60, 0, 0}};
    for (const auto& [x, y, width, height] : kRegions) {
        for (const bool isDeep : {false, true}) {
            scene.draw();
            EXPECT_GT(scene.countShownPixels(), 0);
            (void)scene.pickViewport(x, y, width, height, isDeep);
            EXPECT_EQ(scene.countShownPixels(), 0) << x << ", " << y << (isDeep ? ", deep" : "");
            EXPECT_FALSE(scene.isConfined());
        }
    }
}

TEST(PickingGL, backgroundIsNothing) {
    PickScene scene({{"/root/box_0", placed({0, 0, 0}, Imath::V3d(1.0))}}, kCamera);
    if (!scene.canDraw()) {
        GTEST_SKIP() << "no OpenGL context on this machine";
    }
    EXPECT_TRUE(scene.pickViewport(0, 0, 1, 1).empty());
    EXPECT_EQ(scene.pickViewport(0, 0, PickScene::kWidth, PickScene::kHeight),
              PickScene::Paths{"/root/box_0"});
}

} // namespace
