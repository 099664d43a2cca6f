#include "scene/Edit.h"

#include "HostFixture.h"
#include "SceneDump.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"

#include <Imath/ImathMatrix.h>
#include <random>

using namespace lightbox;

namespace {

/// Random edits of every kind, as a person or a script might make them one after the other.
class RandomEdits {
public:
    RandomEdits(Host& host, unsigned seed)
        : host_(host)
        , random_(seed) {}

    void Step() {
        static void (RandomEdits::*const edits[])() = {&RandomEdits::Create,
                                                       &RandomEdits::Create,
                                                       &RandomEdits::CreateBelow,
                                                       &RandomEdits::Delete,
                                                       &RandomEdits::Rename,
                                                       &RandomEdits::Reparent,
                                                       &RandomEdits::SetNumber,
                                                       &RandomEdits::SetCompound,
                                                       &RandomEdits::SetFlag,
                                                       &RandomEdits::AddAttribute,
                                                       &RandomEdits::DeleteAttribute,
                                                       &RandomEdits::Connect,
                                                       &RandomEdits::Disconnect,
                                                       &RandomEdits::Select,
                                                       &RandomEdits::SetTime,
                                                       &RandomEdits::SetRange,
                                                       &RandomEdits::Lock,
                                                       &RandomEdits::Namespace,
                                                       &RandomEdits::Reorder};
        (this->*edits[Below(std::size(edits))])();
    }

private:
    std::size_t Below(std::size_t bound) { return random_() % bound; }

    std::shared_ptr<Node> AnyNode() {
        const auto nodes = host_.scene().Nodes();
        return nodes[Below(nodes.size())];
    }

    std::shared_ptr<DagNode> AnyTransform() {
        std::vector<std::shared_ptr<DagNode>> transforms;
        for (const auto& node : host_.scene().Nodes()) {
            if (node->Type().IsTransform()) {
                transforms.push_back(std::static_pointer_cast<DagNode>(node));
            }
        }
        return transforms[Below(transforms.size())];
    }

    std::string AnyName() {
        static const char* const names[] = {"a", "b", "a1", "ns:a", "ns:sub:b", "b7", "x#"};
        return names[Below(std::size(names))];
    }

    Plug AnyPlug(const char* attribute) {
        return Plug(AnyTransform(), AnyTransform()->FindAttribute(attribute));
    }

    void Create() {
        static const char* const types[] = {"transform", "camera", "locator", "script", "unknown"};
        edit::CreateNode(host_, types[Below(std::size(types))], Below(2) ? AnyName() : std::string());
    }
    void CreateBelow() {
        edit::CreateNode(host_, Below(2) ? "transform" : "locator", AnyName(), AnyTransform().get());
    }
    void Delete() { edit::DeleteNodes(host_, {AnyNode(), AnyNode()}); }
    void Rename() { edit::Rename(host_, *AnyNode(), AnyName()); }
    void Reparent() { edit::Reparent(host_, *AnyTransform(), Below(4) ? AnyTransform().get() : nullptr); }
    void Reorder() { edit::Reorder(host_, *AnyTransform(), static_cast<int>(Below(3))); }
    void SetNumber() { edit::SetPlug(host_, AnyPlug("rotateX"), static_cast<double>(Below(360))); }
    void SetCompound() {
        edit::SetPlug(host_, AnyPlug("translate"),
                      std::vector<double>{double(Below(9)), 0.1, double(Below(9))});
    }
    void SetFlag() {
        edit::SetPlugFlag(host_, AnyPlug(Below(2) ? "translateX" : "translate"),
                          static_cast<edit::PlugFlag>(Below(3)), Below(2) != 0);
    }
    void AddAttribute() {
        edit::AddAttribute(
            host_, *AnyNode(),
            std::make_shared<Attribute>("extra" + std::to_string(Below(3)), "", AttributeKind::Double));
    }
    void DeleteAttribute() {
        const auto node = AnyNode();
        if (!node->DynamicAttributes().empty()) {
            edit::DeleteAttribute(host_, *node, *node->DynamicAttributes().front());
        }
    }
    void Connect() {
        static const char* const attributes[] = {"translate", "translateX", "rotateY", "visibility"};
        edit::Connect(host_, AnyPlug(attributes[Below(4)]), AnyPlug(attributes[Below(4)]), Below(2) != 0);
    }
    void Disconnect() {
        const auto all = host_.scene().connections().All();
        if (!all.empty()) {
            const Connection connection = all[Below(all.size())];
            edit::Disconnect(host_, connection.source, connection.destination);
        }
    }
    void Select() { edit::Select(host_, {AnyNode(), AnyNode(), AnyNode()}); }
    void SetTime() { edit::SetCurrentTime(host_, static_cast<double>(Below(50))); }
    void SetRange() {
        if (Below(2)) {
            edit::SetPlaybackRange(host_, double(Below(20)), double(Below(300)));
        } else {
            edit::SetAnimationRange(host_, double(Below(20)), double(Below(300)));
        }
    }
    void Lock() { edit::SetNodeLocked(host_, *AnyNode(), Below(3) == 0); }
    void Namespace() {
        if (Below(2)) {
            edit::AddNamespace(host_, Below(2) ? "ns:deep:deeper" : "other");
        } else {
            edit::RemoveNamespace(host_, Below(2) ? "ns:deep:deeper" : "other");
        }
    }

    Host& host_;
    std::mt19937 random_;
};

} // namespace

class EditTest : public HostFixture {};

TEST_F(EditTest, RandomEditsUndoToTheStartAndRedoToTheEnd) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        host_.scene().New();
        host_.undo().Flush();
        host_.time().Reset();
        RandomEdits edits(host_, seed);
        std::vector<std::string> states{DumpScene(host_)};
        int refused = 0;
        for (int step = 0; step < 150; ++step) {
            host_.undo().OpenChunk("step");
            try {
                edits.Step();
                host_.undo().CloseChunk();
                if (host_.undo().Names().size() == states.size()) {
                    states.push_back(DumpScene(host_));
                }
            } catch (const SceneError&) {
                host_.undo().CloseChunk();
                ++refused;
            }
            ASSERT_EQ(host_.undo().Names().size() + 1, states.size());
            ASSERT_EQ(DumpScene(host_), states.back()) << "seed " << seed << " step " << step;
        }
        ASSERT_GT(states.size(), 60U);
        ASSERT_GT(refused, 0);
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            ASSERT_TRUE(host_.undo().Undo());
            ASSERT_EQ(DumpScene(host_), states[i]) << "seed " << seed << " undo to " << i;
        }
        ASSERT_FALSE(host_.undo().Undo());
        for (std::size_t i = 1; i < states.size(); ++i) {
            ASSERT_TRUE(host_.undo().Redo());
            ASSERT_EQ(DumpScene(host_), states[i]) << "seed " << seed << " redo to " << i;
        }
        ASSERT_FALSE(host_.undo().Redo());
    }
}

TEST_F(EditTest, ReparentingKeepsTheNodeWhereItIsInSpace) {
    Scene& scene = host_.scene();
    const auto parent = std::static_pointer_cast<DagNode>(edit::CreateNode(host_, "transform", "parent"));
    const auto child = std::static_pointer_cast<DagNode>(edit::CreateNode(host_, "transform", "child"));
    edit::SetPlug(host_, scene.FindPlug("parent.t"), std::vector<double>{1, 2, 3});
    edit::SetPlug(host_, scene.FindPlug("parent.r"), std::vector<double>{30, -40, 50});
    edit::SetPlug(host_, scene.FindPlug("parent.s"), std::vector<double>{2, 2, 2});
    edit::SetPlug(host_, scene.FindPlug("child.t"), std::vector<double>{-5, 0, 7});
    edit::SetPlug(host_, scene.FindPlug("child.ro"), 3.0);
    edit::SetPlug(host_, scene.FindPlug("child.rp"), std::vector<double>{0, 4, 0});
    const Imath::M44d before = child->WorldMatrix();

    edit::Reparent(host_, *child, parent.get());
    EXPECT_EQ(child->FullPath(), "|parent|child");
    EXPECT_TRUE(child->WorldMatrix().equalWithAbsError(before, 1e-9));
    EXPECT_NEAR(scene.FindPlug("child.sx").Number(), 0.5, 1e-12);
    EXPECT_THROW(edit::Reparent(host_, *parent, child.get()), SceneError);
}

TEST_F(EditTest, ShapesFollowTheNameOfTheirTransform) {
    const auto shape = edit::CreateNode(host_, "camera");
    const auto transform = host_.scene().Find("camera1");
    ASSERT_TRUE(transform);
    EXPECT_EQ(shape->Name(), "cameraShape1");
    EXPECT_EQ(edit::Rename(host_, *transform, "vellixCam"), "vellixCam");
    EXPECT_EQ(shape->Name(), "vellixCamShape");
    EXPECT_EQ(edit::Rename(host_, *transform, "persp"), "persp1");
    EXPECT_EQ(shape->Name(), "perspShape1");
}

TEST_F(EditTest, RefusesWhatWouldHurtTheScene) {
    Scene& scene = host_.scene();
    const auto node = edit::CreateNode(host_, "transform", "node");
    edit::SetPlugFlag(host_, scene.FindPlug("node.t"), edit::PlugFlag::Locked, true);
    edit::SetNodeLocked(
        host_, *edit::CreateNode(host_, "transform", "locked", static_cast<DagNode*>(node.get())), true);
    auto limited = std::make_shared<Attribute>("limited", "lim", AttributeKind::Float);
    limited->minimum = 0.0;
    limited->maximum = 1.0;
    edit::AddAttribute(host_, *node, limited);
    edit::Connect(host_, scene.FindPlug("persp.tx"), scene.FindPlug("node.rx"));
    const std::string before = DumpScene(host_);

    EXPECT_THROW(edit::DeleteNodes(host_, {scene.Find("persp")}), SceneError);
    EXPECT_THROW(edit::DeleteNodes(host_, {scene.Find("time1")}), SceneError);
    EXPECT_THROW(edit::DeleteNodes(host_, {node}), SceneError) << "a locked node lies below";
    EXPECT_THROW(edit::Rename(host_, *scene.Find("time1"), "clock"), SceneError);
    EXPECT_THROW(edit::Rename(host_, *node, ""), SceneError);
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.ty"), 1.0), SceneError)
        << "its parent plug is locked";
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.rx"), 1.0), SceneError) << "connected";
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.r"), std::vector<double>{1, 2, 3}), SceneError);
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.lim"), 1.5), SceneError);
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.lim"), std::string("text")), SceneError);
    EXPECT_THROW(edit::SetPlug(host_, scene.FindPlug("node.wm"), 1.0), SceneError);
    EXPECT_THROW(edit::Connect(host_, scene.FindPlug("top.tx"), scene.FindPlug("node.rx")), SceneError);
    EXPECT_THROW(edit::Connect(host_, scene.FindPlug("top.wm[0]"), scene.FindPlug("node.ry")), SceneError);
    EXPECT_THROW(edit::Disconnect(host_, scene.FindPlug("top.tx"), scene.FindPlug("node.rx")), SceneError);
    EXPECT_THROW(edit::CreateNode(host_, "nosuch"), SceneError);
    EXPECT_THROW(edit::CreateNode(host_, "dagNode"), SceneError);
    EXPECT_THROW(edit::SetPlaybackRange(host_, 10, 1), SceneError);
    EXPECT_EQ(DumpScene(host_), before);
}

TEST_F(EditTest, ValuesFlowThroughConnections) {
    Scene& scene = host_.scene();
    edit::CreateNode(host_, "transform", "a");
    edit::CreateNode(host_, "transform", "b");
    edit::Connect(host_, scene.FindPlug("time1.outTime"), scene.FindPlug("a.tx"));
    edit::Connect(host_, scene.FindPlug("a.t"), scene.FindPlug("b.t"));
    host_.time().SetCurrentTime(17);
    EXPECT_EQ(scene.FindPlug("b.translateX").Number(), 17.0);
    EXPECT_EQ(std::get<std::vector<double>>(scene.FindPlug("b.translate").Get())[0], 17.0);
    // A ring reads what is stored instead of running forever.
    edit::Connect(host_, scene.FindPlug("b.ry"), scene.FindPlug("a.ry"));
    edit::Connect(host_, scene.FindPlug("a.ry"), scene.FindPlug("b.ry"));
    EXPECT_EQ(scene.FindPlug("b.ry").Number(), 0.0);
}
