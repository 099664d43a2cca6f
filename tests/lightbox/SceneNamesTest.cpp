#include "HostFixture.h"
#include "scene/Edit.h"
#include "scene/EventBus.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/UndoQueue.h"

#include <new>
#include <string>

using namespace lightbox;

class SceneNamesTest : public HostFixture {
protected:
    /// |a, |a|b, |a|c, |d, |d|b, |ns:a, |ns:a|ns:b, ns:in:e (not in the DAG)
    void SetUp() override {
        const auto a = Make("transform", "a");
        Make("transform", "b", a);
        Make("transform", "c", a);
        const auto d = Make("transform", "d");
        Make("transform", "b", d);
        const auto spaced = Make("transform", "ns:a");
        Make("transform", "ns:b", spaced);
        Make("script", "ns:in:e");
    }

    DagNode* Make(const char* type, const std::string& name, DagNode* parent = nullptr) {
        return dynamic_cast<DagNode*>(edit::CreateNode(host_, type, name, parent).get());
    }

    std::string Shown(const std::vector<std::shared_ptr<Node>>& nodes) {
        std::string text;
        for (const auto& node : nodes) {
            text += (text.empty() ? "" : " ") + Scene::ShownName(*node);
        }
        return text;
    }
};

TEST_F(SceneNamesTest, PathsFindTheirNodes) {
    const struct {
        const char* path;
        const char* found;
    } cases[] = {
        {"a", "a"},        {"|a", "a"},        {":a", "a"},
        {"b", "a|b d|b"},  {"a|b", "a|b"},     {"|a|b", "a|b"},
        {"|b", ""},        {"d|b", "d|b"},     {"c", "c"},
        {"|a|c", "c"},     {"ns:a", "ns:a"},   {"ns:a|ns:b", "ns:b"},
        {":ns:b", "ns:b"}, {"ns:a|b", ""},     {"ns:in:e", "ns:in:e"},
        {"|ns:in:e", ""},  {"e", ""},          {"", ""},
        {"|", ""},         {"a||b", ""},       {"world", ""},
        {"a|", ""},        {"time1", "time1"}, {"B", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Shown(host_.scene().FindAll(c.path)), c.found) << '"' << c.path << '"';
    }
    EXPECT_EQ(host_.scene().Find("b"), nullptr) << "more than one";
}

TEST_F(SceneNamesTest, PatternsStayWithinANamespace) {
    const struct {
        const char* pattern;
        const char* found;
    } cases[] = {
        {"*Shape", "perspShape topShape frontShape sideShape"},
        {"?", "a a|b c d d|b"},
        {"ns:*", "ns:a ns:b"},
        {"*:a", "ns:a"},
        {"*:*:e", "ns:in:e"},
        {"a|*", "a|b c"},
        {"|*|b", "a|b d|b"},
        {"time*", "time1"},
        {"**d", "d"},
        {"x*", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Shown(host_.scene().Matching(c.pattern)), c.found) << c.pattern;
    }
}

TEST_F(SceneNamesTest, NamesBecomeFreeAndLegal) {
    const struct {
        const char* wanted;
        const char* got;
    } cases[] = {
        {"a", "a1"},        {"b", "b"},
        {"time1", "time2"}, {"fresh", "fresh"},
        {"7up", "_7up"},    {"a b!", "a_b_"},
        {"\xc3\xa4", "_"},  {"ns::x:", "ns:x"},
        {"new#", "new1"},   {"a#", "a1"},
        {"", "transform1"}, {"persp", "persp1"},
        {"|a", "_a"},       {"e9999999999", "e9999999999"},
    };
    for (const auto& c : cases) {
        const auto node = edit::CreateNode(host_, "transform", c.wanted);
        EXPECT_EQ(node->Name(), c.got) << c.wanted;
        edit::DeleteNodes(host_, {node});
    }
    EXPECT_EQ(edit::CreateNode(host_, "script", "b")->Name(), "b1")
        << "outside the DAG the name must be no one's";
    const auto fresh = Make("transform", "fresh");
    EXPECT_EQ(edit::CreateNode(host_, "transform", "b", fresh)->Name(), "b") << "no sibling has it";
    EXPECT_EQ(edit::CreateNode(host_, "transform", "b", fresh)->Name(), "b2")
        << "b1 is taken outside the DAG";
}

TEST_F(SceneNamesTest, PlugsAreFoundByAnyOfTheirNames) {
    const struct {
        const char* text;
        const char* name;
    } cases[] = {
        {"a.t", "a.translate"},
        {"a.translate.tx", "a.translateX"},
        {"|a|c.tx", "c.translateX"},
        {"a.worldMatrix[2]", "a.worldMatrix[2]"},
        {"a.wm", "a.worldMatrix"},
        {"curve.ktv[3].kv", "curve.keyTimeValue[3].keyValue"},
        {"curve.keyTimeValue[3].kt", "curve.keyTimeValue[3].keyTime"},
    };
    edit::CreateNode(host_, "animCurveTU", "curve");
    for (const auto& c : cases) {
        EXPECT_EQ(host_.scene().FindPlug(c.text).Name(), c.name) << c.text;
    }
    for (const char* text : {"a", "a.", ".t", "a.nosuch", "b.t", "nosuch.t", "a.tx.t", "a.t[0]", "a.wm[",
                             "a.wm[]", "a.wm[-1]", "a.wm[99999999999]", "a.r.tx", "a..t"}) {
        EXPECT_THROW(host_.scene().FindPlug(text), SceneError) << text;
        EXPECT_FALSE(host_.scene().HasPlug(text)) << text;
    }
}

TEST_F(SceneNamesTest, NewNodesGoIntoTheCurrentNamespace) {
    host_.scene().currentNamespace = "ns";
    EXPECT_EQ(edit::CreateNode(host_, "transform", "new")->Name(), "ns:new");
    EXPECT_EQ(edit::CreateNode(host_, "transform", ":new")->Name(), "new");
    EXPECT_EQ(edit::CreateNode(host_, "transform")->Name(), "ns:transform1");
    host_.scene().currentNamespace.clear();
    EXPECT_FALSE(host_.scene().RemoveNamespace("ns")) << "it is used";
}

// A view that is too short of memory to follow keeps no name back, and no undo step.
TEST_F(SceneNamesTest, ARenameStandsWhoeverCannotFollow) {
    std::string told;
    host_.events().AddRenameCallback([](Node&, const std::string&) { throw std::bad_alloc(); });
    host_.events().AddRenameCallback(
        [&](Node& node, const std::string& before) { told += before + ">" + node.Name() + " "; });
    Node& node = *host_.scene().Find("d");
    EXPECT_EQ(edit::Rename(host_, node, "e"), "e");
    EXPECT_EQ(host_.scene().Find("d"), nullptr);
    host_.undo().Undo();
    EXPECT_EQ(node.Name(), "d");
    host_.undo().Redo();
    EXPECT_EQ(host_.scene().Find("e").get(), &node);
    EXPECT_EQ(told, "d>e e>d d>e ");
}
