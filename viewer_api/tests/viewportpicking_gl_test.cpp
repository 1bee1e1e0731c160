// Picks that a real context draws and reads back; skipped where there is none.

#include <GL/glew.h>

#include "support/viewportgltest.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <limits>
#include <random>

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

using Ids = std::vector<int64_t>;

Ids idsOf(const GroupAttribute& picked) {
    EXPECT_TRUE(picked.isValid());
    Ids ids;
    for (int64_t i = 0; i < picked.getNumberOfChildren(); ++i) {
        ids.push_back(std::stoll(std::string(picked.getChildName(i))));
    }
    return ids;
}

class ViewportPickingGL : public ViewportGL {
protected:
    void TearDown() override {
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        ViewportGL::TearDown();
    }

    // In window coordinates, y downwards, as picks count. The colour is four bytes, as ids are.
    static void fill(const PixelRegion& region, uint32_t id, int windowHeight = kHeight) {
        glEnable(GL_SCISSOR_TEST);
        glScissor(region.x, windowHeight - region.y - region.height, region.width, region.height);
        const auto byte = [id](int shift) {
            return static_cast<float>(id >> shift & 0xFFu) / 255.0f;
        };
        glClearColor(byte(24), byte(16), byte(8), byte(0));
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_SCISSOR_TEST);
    }

    // A rectangle at a window depth, by the depth test.
    static void fillAt(float depth, uint32_t id, float left = -1.0f, float right = 1.0f) {
        glEnable(GL_DEPTH_TEST);
        glColor4ub(static_cast<GLubyte>(id >> 24), static_cast<GLubyte>(id >> 16),
                   static_cast<GLubyte>(id >> 8), static_cast<GLubyte>(id));
        glBegin(GL_QUADS);
        const float z = 2.0f * depth - 1.0f;
        glVertex3f(left, -1.0f, z);
        glVertex3f(right, -1.0f, z);
        glVertex3f(right, 1.0f, z);
        glVertex3f(left, 1.0f, z);
        glEnd();
        glDisable(GL_DEPTH_TEST);
    }

    // Registers so many objects, each with its id as value.
    void addObjects(int count) {
        for (int i = 0; i < count; ++i) {
            viewport->addPickableObject(IntAttribute(i));
        }
    }

    void onPickerDraw(std::function<void(const GroupAttribute& excluded)> draw) {
        plugins.hooks["viewport1.pickerDraw"] = [draw](auto& instance) {
            draw(GroupAttribute(instance.lastAttribute));
        };
    }

    Ids pick(const PixelRegion& region, bool deepPicking = false, float* depth = nullptr) {
        return idsOf(viewport->getPickedObjects(region, deepPicking, depth));
    }
};

TEST_F(ViewportPickingGL, idsReadBackExactlyAndWhereTheyWereDrawn) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(kWidth * kHeight);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                fill({x, y, 1, 1}, static_cast<uint32_t>(y * kWidth + x));
            }
        }
    });
    Ids all;
    for (int id = 0; id < kWidth * kHeight; ++id) {
        all.push_back(id);
    }
    EXPECT_EQ(pick({0, 0, kWidth, kHeight}), all);
    EXPECT_EQ(pick({0, 0, 1, 1}), Ids{0}) << "the top left";
    EXPECT_EQ(pick({kWidth - 1, 0, 1, 1}), Ids{kWidth - 1});
    EXPECT_EQ(pick({0, kHeight - 1, 1, 1}), (Ids{(kHeight - 1) * kWidth}));
    EXPECT_EQ(pick({5, 7, 2, 2}),
              (Ids{7 * kWidth + 5, 7 * kWidth + 6, 8 * kWidth + 5, 8 * kWidth + 6}));
}

TEST_F(ViewportPickingGL, pickedObjectsAreTheRegisteredOnes) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(3);
        fill({0, 0, 8, 8}, 2);
    });
    const GroupAttribute picked = viewport->getPickedObjects({1, 1, 1, 1}, false, nullptr);
    EXPECT_EQ(picked, (GroupAttribute{{"2", IntAttribute(2)}}));
}

TEST_F(ViewportPickingGL, idsBeyond24BitsAreToldApart) {
    constexpr uint32_t kFirst = (1u << 24) - 1;
    onPickerDraw([&](const GroupAttribute&) {
        // As if so many had been registered.
        viewport->picker->pickableObjects.assign(kFirst + 4, IntAttribute(1));
        for (int i = 0; i < 5; ++i) {
            fill({i, 0, 1, 1}, kFirst + static_cast<uint32_t>(i));
        }
    });
    EXPECT_EQ(pick({0, 0, 5, 1}), (Ids{kFirst, kFirst + 1, kFirst + 2, kFirst + 3}))
        << "the last is no object's";
    EXPECT_EQ(pick({2, 0, 1, 1}), Ids{kFirst + 2});
}

TEST_F(ViewportPickingGL, everyByteOfAnIdSurvivesWithWhatGLStartsWithAndMore) {
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<uint32_t> ids(kWidth);
    for (uint32_t& id : ids) {
        id = static_cast<uint32_t>(random());
    }
    std::vector<uint8_t> pixels(kWidth * 4);
    onPickerDraw([&](const GroupAttribute&) {
        // None of these may touch the surface: it has one sample, is linear and has all 8 bits.
        for (const GLenum capability : {GL_DITHER, GL_MULTISAMPLE, GL_FRAMEBUFFER_SRGB}) {
            glEnable(capability);
        }
        for (int x = 0; x < kWidth; ++x) {
            fill({x, 0, 1, 1}, ids[static_cast<size_t>(x)]);
        }
        glReadPixels(0, kHeight - 1, kWidth, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        for (const GLenum capability : {GL_MULTISAMPLE, GL_FRAMEBUFFER_SRGB}) {
            glDisable(capability);
        }
    });
    pick({0, 0, 1, 1});
    for (size_t x = 0; x < ids.size(); ++x) {
        const uint8_t* p = &pixels[x * 4];
        EXPECT_EQ(uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3], ids[x]);
    }
}

TEST_F(ViewportPickingGL, surfaceHasOneSampleEightLinearBitsAndDepth) {
    onPickerDraw([&](const GroupAttribute&) {
        GLint bound = 0, samples = 1, encoding = 0, alphaBits = 0, depthBits = 0;
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
        EXPECT_EQ(static_cast<uint32_t>(bound), viewport->picker->framebuffer);
        glGetIntegerv(GL_SAMPLES, &samples);
        EXPECT_EQ(samples, 0);
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                              GL_FRAMEBUFFER_ATTACHMENT_COLOR_ENCODING, &encoding);
        EXPECT_EQ(encoding, GL_LINEAR);
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                              GL_FRAMEBUFFER_ATTACHMENT_ALPHA_SIZE, &alphaBits);
        EXPECT_EQ(alphaBits, 8);
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                              GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE, &depthBits);
        EXPECT_GE(depthBits, 24);
    });
    EXPECT_EQ(pick({0, 0, 1, 1}), Ids{});
}

TEST_F(ViewportPickingGL, backgroundAndNegativeIdsAreNoObjects) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fill({0, 0, 4, 4}, 0x80000000);
        fill({4, 0, 4, 4}, 0xFFFFFFFF);
        fill({8, 0, 4, 4}, 1);
    });
    EXPECT_EQ(pick({0, 0, kWidth, kHeight}), Ids{});
}

TEST_F(ViewportPickingGL, depthOfOnePixelIsTheWindowDepthThere) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fillAt(0.25f, 0, -1.0f, 0.0f);
    });
    // A 24-bit depth is off by half of its last place at most.
    constexpr float kTolerance = 1.0f / (1 << 24);
    float depth = -1.0f;
    EXPECT_EQ(pick({1, 1, 1, 1}, false, &depth), Ids{0});
    EXPECT_NEAR(depth, 0.25f, kTolerance);
    EXPECT_EQ(pick({kWidth - 1, 1, 1, 1}, false, &depth), Ids{});
    EXPECT_EQ(depth, 1.0f) << "the background is as far as can be";
    depth = -1.0f;
    EXPECT_EQ(pick({1, 1, 2, 1}, false, &depth), Ids{0});
    EXPECT_EQ(depth, -1.0f);
}

TEST_F(ViewportPickingGL, deepPickFindsWhatLiesBehind) {
    onPickerDraw([&](const GroupAttribute& excluded) {
        if (excluded.getNumberOfChildren() == 0) {
            addObjects(4);
        }
        for (const int id : {2, 0, 3, 1}) {
            if (!excluded.getChildByName(std::to_string(id)).isValid()) {
                fillAt(0.2f * static_cast<float>(id + 1), static_cast<uint32_t>(id));
            }
        }
    });
    float depth = -1.0f;
    EXPECT_EQ(pick({3, 3, 1, 1}, false, &depth), Ids{0});
    EXPECT_NEAR(depth, 0.2f, 1.0f / (1 << 24));
    EXPECT_EQ(pick({3, 3, 1, 1}, true, &depth), (Ids{0, 1, 2, 3}));
    EXPECT_EQ(depth, 1.0f) << "of the last pass, which found nothing";
}

TEST_F(ViewportPickingGL, whatLiesOutsideTheWindowIsBackground) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fill({0, 0, kWidth, kHeight}, 0);
    });
    EXPECT_EQ(pick({-3, -3, 3, 3}), Ids{});
    EXPECT_EQ(pick({kWidth, kHeight, 500, 500}), Ids{});
    EXPECT_EQ(pick({-5, -5, kWidth + 10, kHeight + 10}), Ids{0});
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    EXPECT_EQ(pick({0, 0, kMost, kMost}), Ids{0});
    for (const int far : {kLeast, kMost}) {
        EXPECT_EQ(pick({far, 0, 5, 1}), Ids{});
        EXPECT_EQ(pick({1, far, 5, 1}), Ids{});
    }
}

TEST_F(ViewportPickingGL, pickLeavesTheWindowBoundAndItsNextPictureRight) {
    drawWithColor("viewport1", 1, 0, 0);
    viewport->draw();
    onPickerDraw([&](const GroupAttribute&) { fill({0, 0, kWidth, kHeight}, 0x00FF00FF); });
    pick({0, 0, 1, 1});
    GLint bound = -1;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
    EXPECT_EQ(pixelAt(window, 3, 3), kRed) << "what is shown stays";
    viewport->draw();
    EXPECT_EQ(pixelAt(window, 3, 3), kRed);
}

TEST_F(ViewportPickingGL, resizedViewportPicksInItsNewSize) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fill({60, 50, 4, 4}, 0, viewport->getHeight());
    });
    EXPECT_EQ(pick({60, 50, 4, 4}), Ids{}) << "there is no such pixel yet";
    resizeOffscreen(window, 100, 80);
    viewport->resize(100, 80);
    EXPECT_EQ(pick({60, 50, 4, 4}), Ids{0});
    EXPECT_EQ(pick({59, 49, 1, 1}), Ids{});
    EXPECT_EQ(pick({63, 53, 1, 1}), Ids{0});
}

TEST_F(ViewportPickingGL, sizeThatNoSurfaceHasIsOneLineAndNothingIsPicked) {
    testing::internal::CaptureStderr();
    viewport->resize(-5, 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "VlViewportPicker: There is a problem with the FBO\n");
    while (glGetError() != GL_NO_ERROR) {
    }
    viewport->resize(kWidth, kHeight);
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fill({0, 0, 1, 1}, 0);
    });
    EXPECT_EQ(pick({0, 0, 1, 1}), Ids{0});
}

TEST_F(ViewportPickingGL, cachedLayerReadsItsLastDrawUntilItIsResized) {
    plugins.answers["layer1.usesPickingCache"] = 1;
    auto* layer = viewport->addLayer("Recording", "cached");
    int images = 0;
    plugins.hooks["layer1.pickerDraw"] = [&](auto&) {
        ++images;
        layer->addPickableObject(IntAttribute(0));
        fill({2, 3, 4, 5}, 0);
    };
    plugins.hooks["viewport1.draw"] = [&](auto&) { layer->draw(); };
    viewport->draw();
    EXPECT_EQ(idsOf(layer->getPickedObjects({2, 3, 1, 1}, false, nullptr)), Ids{0});
    EXPECT_EQ(idsOf(layer->getPickedObjects({1, 3, 1, 1}, false, nullptr)), Ids{});
    EXPECT_EQ(images, 1);
    viewport->resize(kWidth, kHeight);
    EXPECT_EQ(idsOf(layer->getPickedObjects({2, 3, 1, 1}, false, nullptr)), Ids{});
    viewport->draw();
    EXPECT_EQ(idsOf(layer->getPickedObjects({2, 3, 1, 1}, false, nullptr)), Ids{0});
    EXPECT_EQ(images, 2);
}

TEST_F(ViewportPickingGL, viewportsOfOneContextPickApartWhicheverEndsFirst) {
    for (const bool endsSecondFirst : {true, false}) {
        const int otherWindow = createOffscreen(16, 12);
        auto other = std::make_unique<VlViewportHostStruct>("Recording", "other", nullptr);
        const std::string instance = endsSecondFirst ? "viewport2" : "viewport3";
        other->resize(16, 12);
        other->setup(otherWindow);
        ASSERT_TRUE(other->isInitialized);
        onPickerDraw([&](const GroupAttribute&) {
            addObjects(1);
            fill({20, 20, 4, 4}, 0);
        });
        VlViewportHostStruct* otherHost = other.get();
        plugins.hooks[instance + ".pickerDraw"] = [otherHost](auto&) {
            otherHost->addPickableObject(IntAttribute(7));
            otherHost->addPickableObject(IntAttribute(8));
            fill({2, 2, 4, 4}, 1, 12);
        };
        const auto pickOther = [&] {
            return idsOf(other->getPickedObjects({5, 5, 1, 1}, false, nullptr));
        };
        for (int turn = 0; turn < 2; ++turn) {
            EXPECT_EQ(pick({20, 20, 1, 1}), Ids{0});
            EXPECT_EQ(pickOther(), Ids{1});
        }
        if (endsSecondFirst) {
            other.reset();
            destroyOffscreen(otherWindow);
            EXPECT_EQ(pick({20, 20, 1, 1}), Ids{0});
        } else {
            viewport.reset();
            EXPECT_EQ(pickOther(), Ids{1});
            EXPECT_TRUE(other->makeGLContextCurrent());
            EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
            other.reset();
            destroyOffscreen(otherWindow);
        }
    }
}

TEST_F(ViewportPickingGL, cleanedUpLayerLeavesTheSurfacesOfOthersAlone) {
    plugins.answers["layer1.usesPickingCache"] = plugins.answers["layer2.usesPickingCache"] = 1;
    auto* first = viewport->addLayer("Recording", "first");
    viewport->makeGLContextCurrent();
    first->cleanup();
    // GL hands out the names anew.
    auto* second = viewport->addLayer("Recording", "second");
    plugins.hooks["layer2.pickerDraw"] = [&](auto&) {
        second->addPickableObject(IntAttribute(0));
        fill({0, 0, 4, 4}, 0);
    };
    viewport->makeGLContextCurrent();
    second->draw();
    first->resize(8, 8);
    first->cleanup();
    EXPECT_EQ(idsOf(second->getPickedObjects({1, 1, 1, 1}, false, nullptr)), Ids{0});
}

TEST_F(ViewportPickingGL, windowThatIsGoneIsNotPickedAndNothingIsRaised) {
    const int gone = createOffscreen(16, 16);
    VlViewportHostStruct other("Recording", "other", nullptr);
    other.resize(16, 16);
    other.setup(gone);
    ASSERT_TRUE(other.isInitialized);
    destroyOffscreen(gone);
    plugins.hooks["viewport2.pickerDraw"] = [&](auto&) {
        other.addPickableObject(IntAttribute(7));
    };
    EXPECT_EQ(idsOf(other.getPickedObjects({1, 1, 1, 1}, false, nullptr)), Ids{});
    other.resize(20, 20);
    EXPECT_EQ(idsOf(other.getPickedObjects({1, 1, 1, 1}, true, nullptr)), Ids{});
    EXPECT_TRUE(viewport->makeGLContextCurrent());
}

TEST_F(ViewportPickingGL, viewportThatWasNeverSetUpTouchesNoFramebufferOfAnothers) {
    onPickerDraw([&](const GroupAttribute&) {
        addObjects(1);
        fill({0, 0, 4, 4}, 0);
    });
    VlViewportHostStruct other("Recording", "other", nullptr);
    viewport->makeGLContextCurrent();
    other.resize(16, 16);
    EXPECT_EQ(idsOf(other.getPickedObjects({1, 1, 1, 1}, false, nullptr)), Ids{});
    EXPECT_EQ(pick({0, 0, 1, 1}), Ids{0});
}

} // namespace
} // namespace ViewerAPI::test
