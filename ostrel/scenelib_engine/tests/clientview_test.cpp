// One client's view of an op, without the thread that otherwise cooks for it: a test stops wherever
// it likes between what that does.

#include "clientview.h"

#include "VlScenelibEngine/OpType.h"

#include "cooker.h"
#include "locationpath.h"
#include "recooking.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ChildList;
using VlScenelibEngine::ClientGroup;
using VlScenelibEngine::ClientNode;
using VlScenelibEngine::ClientTree;
using VlScenelibEngine::ClientView;
using VlScenelibEngine::ClientWork;
using VlScenelibEngine::CookContext;
using VlScenelibEngine::Cooker;
using VlScenelibEngine::CookResult;
using VlScenelibEngine::GraphOp;
using VlScenelibEngine::InputPlaces;
using VlScenelibEngine::LocationReport;
using VlScenelibEngine::Recooking;

/// A root with the children that an argument names, who have none.
class Family final : public VlScenelibEngine::OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        return context.isRoot()
                   ? CookResult(GroupAttribute(),
                                ChildList::create(StringAttribute(context.getArg("names"))))
                   : CookResult(GroupAttribute());
    }
};

class ClientViewTest : public testing::Test {
protected:
    ClientViewTest() {
        op.type = std::make_shared<Family>();
        op.args = {{"names", StringAttribute({"a", "b", "c"})}};
        view.setActive("/root", true);
        view.setOp(&op);
    }
    ~ClientViewTest() override { view.close(); }

    void cook(const ClientWork& piece) {
        InputPlaces places(cooker, op, *piece.data);
        for (std::size_t i = piece.from; i < piece.to; ++i) {
            cooker.ensureCooked(op, piece.data->ensureBlock().child(i), places);
        }
    }
    void rename(const std::vector<std::string>& names) {
        recooking.setArgs(op, {{"names", StringAttribute(names)}});
        while (!recooking.isClean()) {
            Recooking::Slice slice = recooking.takeSlice(16);
            for (std::size_t i = 0; i < slice.nodes.size(); ++i) {
                recooking.cookEntry(slice, i);
            }
            recooking.storeSlice(slice);
        }
        recooking.buryRemoved();
    }
    void settle() {
        do {
            view.update();
            ClientWork piece;
            while (view.takeWork(16, piece)) {
                cook(piece);
                view.finishWork(piece, {});
            }
        } while (view.hasWork());
    }
    std::vector<std::string> fetch() {
        std::vector<std::string> paths;
        LocationReport report;
        view.getEvents().beginDrain();
        view.getEvents().beginBatch();
        std::string path;
        while (view.getEvents().next(path, report)) {
            paths.push_back(std::exchange(path, {}) + (report.exists ? "" : " gone"));
        }
        return paths;
    }
    /// The root with its first child is told; the others have become work.
    void openWhereOneIsShown() {
        view.setActive("/root/a", true);
        settle();
        EXPECT_EQ(fetch(), (std::vector<std::string>{"/root", "/root/a"}));
        view.setOpen("/root", true);
        view.update();
    }
    ClientNode* find(std::string_view path) {
        return view.getTree().find(*VlScenelibEngine::splitPath(path));
    }

    Cooker cooker{[] {}};
    Recooking recooking{cooker};
    GraphOp op{1};
    ClientView view{std::make_shared<ClientGroup>()};
};

const std::vector<std::string> kFamily{"/root", "/root/a", "/root/b", "/root/c"};

TEST_F(ClientViewTest, aLocationThatChangesLeavesItsChildrenAlone) {
    view.setOpen("/root", true);
    settle();
    EXPECT_EQ(fetch(), kFamily);
    // Who went through the children would find that this one is missing.
    find("/root/b")->clear(ClientNode::kLive);
    view.onTouched({"root"}, false);
    view.update();
    EXPECT_FALSE(view.hasWork());
    find("/root/b")->set(ClientNode::kLive);
}

TEST_F(ClientViewTest, aChildThatIsAddedWhileOthersAreToBeCookedIsShown) {
    openWhereOneIsShown();
    ClientWork piece;
    ASSERT_TRUE(view.takeWork(1, piece));
    cook(piece);
    view.finishWork(piece, {});
    rename({"a", "b", "c", "d"});
    settle();
    EXPECT_EQ(fetch(), (std::vector<std::string>{"/root/b", "/root", "/root/c", "/root/d"}));
}

TEST_F(ClientViewTest, whatWasClosedWhileItWasCookedIsShownWhenItIsOpenedAgain) {
    openWhereOneIsShown();
    ClientWork piece;
    ASSERT_TRUE(view.takeWork(16, piece));
    cook(piece);
    view.setOpen("/root", false);
    view.finishWork(piece, {});
    view.setOpen("/root", true);
    settle();
    EXPECT_EQ(fetch(), (std::vector<std::string>{"/root/b", "/root/c"}));
}

TEST_F(ClientViewTest, whatWasClosedBeforeItWasCookedIsShownWhenItIsOpenedAgain) {
    openWhereOneIsShown();
    view.setOpen("/root", false);
    ClientWork piece;
    EXPECT_FALSE(view.takeWork(16, piece));
    view.setOpen("/root", true);
    settle();
    EXPECT_EQ(fetch(), (std::vector<std::string>{"/root/b", "/root/c"}));
}

TEST_F(ClientViewTest, onlyWhereSomethingHasComeUpIsADrainWorthIt) {
    EXPECT_TRUE(view.getEvents().isWorthDraining()) << "it views an op";
    EXPECT_EQ(fetch(), std::vector<std::string>());
    EXPECT_FALSE(view.getEvents().isWorthDraining());
    settle();
    EXPECT_TRUE(view.getEvents().isWorthDraining());
    EXPECT_EQ(fetch(), std::vector<std::string>{"/root"});
    EXPECT_FALSE(view.getEvents().isWorthDraining());

    view.setActive("/root/missing", true);
    settle();
    EXPECT_TRUE(view.getEvents().isWorthDraining());
    EXPECT_EQ(fetch(), std::vector<std::string>{"/root/missing gone"});
    EXPECT_FALSE(view.getEvents().isWorthDraining());

    view.setActive("no path", true);
    EXPECT_TRUE(view.getEvents().isWorthDraining());
    EXPECT_EQ(fetch(), std::vector<std::string>{"no path gone"});
    EXPECT_FALSE(view.getEvents().isWorthDraining());

    view.setOp(nullptr);
    settle();
    EXPECT_TRUE(view.getEvents().isWorthDraining());
    EXPECT_EQ(fetch(), std::vector<std::string>{"/root gone"});
    EXPECT_FALSE(view.getEvents().isWorthDraining());
}

TEST_F(ClientViewTest, whatWasNotFetchedStaysWorthADrain) {
    view.setOpen("/root", true);
    settle();
    std::string path;
    LocationReport report;
    view.getEvents().beginDrain();
    ASSERT_TRUE(view.getEvents().next(path, report));
    EXPECT_TRUE(view.getEvents().isWorthDraining());
    EXPECT_EQ(fetch(), (std::vector<std::string>{"/root/a", "/root/b", "/root/c"}));
    EXPECT_FALSE(view.getEvents().hasNext());
}

} // namespace
