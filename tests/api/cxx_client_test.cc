// SPDX-License-Identifier: BSD-3-Clause
// The header for C++ as a client of the shared library uses it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/qmodel.hpp>

#include <libxml/parser.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kHead[] = "<module xmlns='urn:ietf:params:xml:ns:yang:yin:1' name='";

std::string Module(const std::string& name, const std::string& body) {
  return kHead + name + "' xmlns:m='urn:m'><namespace uri='urn:" + name + "'/><prefix value='" +
         name + "'/>" + body + "</module>";
}

std::string Leaf(const std::string& name, const std::string& inside = "") {
  return "<leaf name='" + name + "'><type name='string'/>" + inside + "</leaf>";
}

const std::string kModel = Module(
    "m",
    "<feature name='f'/><container name='c'><must condition='x'><error-message><value>bad"
    "</value></error-message></must>" +
        Leaf("x") + "<list name='l'><key value='b a'/>" + Leaf("a") + Leaf("b") +
        "</list></container><rpc name='r'><input>" + Leaf("name", "<mandatory value='true'/>") +
        "<leaf name='count'><type name='uint8'/><default value='3'/></leaf></input></rpc>"
        "<notification name='n'>" +
        Leaf("text") + "</notification>");

class CxxClient : public testing::Test {
 protected:
  void SetUp() override {
    std::optional<qmodel::Context> ctx = qmodel::Context::Create();
    ASSERT_TRUE(ctx);
    ctx_ = std::move(ctx);
    ASSERT_TRUE(ctx_->loadText(kModel));
  }
  std::optional<qmodel::Context> ctx_;
};

template <typename Range>
std::vector<std::string> Names(const Range& range) {
  std::vector<std::string> names;
  for (const auto view : range) names.emplace_back(view.name());
  return names;
}

TEST_F(CxxClient, LoopsRunOverModulesAndNodes) {
  ASSERT_TRUE(ctx_->loadText(Module("a", "")));
  EXPECT_THAT(Names(ctx_->modules()), ElementsAre("a", "m"));
  const qmodel::Module m = ctx_->module("m");
  EXPECT_THAT(Names(m.nodes()), ElementsAre("c", "r", "n"));
  EXPECT_THAT(Names(ctx_->dataNode("/m:c").children()), ElementsAre("x", "l"));
  EXPECT_TRUE(ctx_->module("a").nodes().empty());
  EXPECT_THAT(Names(m.features()), ElementsAre("f"));
  EXPECT_EQ("urn:m", m.ns());
  EXPECT_EQ(1u, m.yangVersion());
  EXPECT_EQ(m, ctx_->moduleByNamespace("urn:m"));
  EXPECT_FALSE(ctx_->module("none"));
}

TEST_F(CxxClient, NodesTellWhatTheyAre) {
  const qmodel::Node list = ctx_->dataNode("/m:c/l");
  EXPECT_EQ("list", list.kindName());
  EXPECT_EQ(QMS_NODE_LIST, list.kind());
  EXPECT_THAT(Names(list.keys()), ElementsAre("b", "a"));
  EXPECT_EQ("/m:c/l/a", ctx_->dataNode("/m:c/l/a").path());
  EXPECT_EQ("c", list.parent().name());
  EXPECT_EQ("m", list.module().name());
  ASSERT_THAT(list.parent().musts(), SizeIs(1));
  EXPECT_EQ("bad", list.parent().musts()[0].message);
  EXPECT_EQ("", list.parent().musts()[0].appTag);
  EXPECT_THAT(ctx_->dataNode("/m:r/count").defaults(), ElementsAre("3"));
  EXPECT_TRUE(ctx_->dataNode("/m:r/count").checkValue("255").ok());
  const qmodel::Status wrong = ctx_->dataNode("/m:r/count").checkValue("256");
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_RANGE}, wrong.code());
  EXPECT_EQ("number unparsable or outside its range", wrong.text());
  EXPECT_EQ(QM_NODE_GetNodeName(list.get()), list.name().data());
}

TEST_F(CxxClient, NoneIsAViewThatAnswersNothing) {
  const qmodel::Node none = ctx_->dataNode("/m:none");
  EXPECT_FALSE(none);
  EXPECT_EQ("", none.name());
  EXPECT_EQ("", none.path());
  EXPECT_FALSE(none.module());
  EXPECT_TRUE(none.children().empty());
  EXPECT_THAT(none.keys(), IsEmpty());
  EXPECT_THAT(none.module().features(), IsEmpty());
  EXPECT_FALSE(none.module().tree().has_value());
  EXPECT_TRUE(none.walk([](qmodel::Node) { return qmodel::Walk::kOn; }));
}

TEST_F(CxxClient, AWalkGoesOnSkipsAndStops) {
  std::vector<std::string> seen;
  const qmodel::Node c = ctx_->dataNode("/m:c");
  EXPECT_TRUE(c.walk([&seen](qmodel::Node node) {
    seen.emplace_back(node.name());
    return qmodel::Walk::kOn;
  }));
  EXPECT_THAT(seen, ElementsAre("c", "x", "l", "a", "b"));
  seen.clear();
  EXPECT_TRUE(c.walk([&seen](qmodel::Node node) {
    seen.emplace_back(node.name());
    return node.name() == "l" ? qmodel::Walk::kSkipSubtree : qmodel::Walk::kOn;
  }));
  EXPECT_THAT(seen, ElementsAre("c", "x", "l"));
  EXPECT_FALSE(c.walk([](qmodel::Node) { return qmodel::Walk::kStop; }));
}

TEST_F(CxxClient, ARequestIsCompletedOrAnsweredWithItsError) {
  const qmodel::Verdict good = ctx_->validateRequest("<r xmlns='urn:m'><name>x</name></r>");
  EXPECT_TRUE(good);
  EXPECT_THAT(good.completed, HasSubstr("<count>3</count>"));
  EXPECT_FALSE(good.error);
  const qmodel::Verdict bad = ctx_->validateRequest("<r xmlns='urn:m'/>");
  EXPECT_FALSE(bad);
  EXPECT_EQ(QM_AGENT_INVALID, bad.code);
  ASSERT_TRUE(bad.error);
  EXPECT_EQ("missing-element", bad.error->tagName());
  EXPECT_EQ("/m:r", bad.error->path);
  EXPECT_EQ("Missing element: name.", bad.error->message);
  EXPECT_THAT(bad.error->xml, HasSubstr("<bad-element>name</bad-element>"));
  EXPECT_EQ("", bad.completed);
  EXPECT_FALSE(ctx_->validateRequest(""));
  EXPECT_TRUE(ctx_->validateNotification("<n xmlns='urn:m'><text>t</text></n>"));
}

TEST_F(CxxClient, AnElementIsCompletedAndEachDefaultIsTold) {
  const std::string text = "<r xmlns='urn:m'><name>x</name></r>";
  xmlDoc* doc = QM_AGENT_ParseMessage(text.data(), text.size(), nullptr, nullptr);
  ASSERT_NE(nullptr, doc);
  std::vector<std::string> added;
  const qmodel::Verdict verdict =
      ctx_->validateRequest(xmlDocGetRootElement(doc), [&added](const xmlNode* node) {
        added.emplace_back(reinterpret_cast<const char*>(node->name));
      });
  EXPECT_TRUE(verdict);
  EXPECT_THAT(added, ElementsAre("count"));
  xmlFreeDoc(doc);
}

TEST_F(CxxClient, EventsReachALambdaUntilItIsTakenAway) {
  std::vector<std::string> told;
  ctx_->onEvent([&told](const QmAgentEvent& event) { told.emplace_back(event.moduleName); });
  ASSERT_TRUE(ctx_->loadText(Module("later", "")));
  EXPECT_THAT(told, ElementsAre("later"));
  // Moved contexts go on telling.
  qmodel::Context moved = std::move(*ctx_);
  ASSERT_TRUE(moved.loadText(Module("moved", "")));
  EXPECT_THAT(told, ElementsAre("later", "moved"));
  moved.onEvent(nullptr);
  ASSERT_TRUE(moved.loadText(Module("silent", "")));
  EXPECT_THAT(told, SizeIs(2));
}

TEST_F(CxxClient, AContextThatIsReplacedStillTellsOfItsEnd) {
  std::vector<uint32_t> told;
  ctx_->onEvent([&told](const QmAgentEvent& event) { told.push_back(event.kind); });
  {
    std::optional<qmodel::Context> other = qmodel::Context::Create();
    ASSERT_TRUE(other);
    *ctx_ = std::move(*other);
  }
  EXPECT_THAT(told, ElementsAre(uint32_t{QM_AGENT_EVENT_MODULE_GOING}));
}

TEST_F(CxxClient, EveryHandleCanBeHadBack) {
  EXPECT_EQ(QM_CTX_GetModuleByModName(ctx_->get(), "m"), ctx_->module("m").get());
  QmCtx* raw = ctx_->release();
  EXPECT_EQ(nullptr, ctx_->get());
  const qmodel::Context again(raw);
  EXPECT_EQ(raw, again.get());
  EXPECT_TRUE(again.module("m"));
}

TEST_F(CxxClient, LoadErrorsAreValues) {
  EXPECT_FALSE(ctx_->load("no-such"));
  const std::vector<qmodel::LoadError> errors = ctx_->loadErrors();
  ASSERT_THAT(errors, SizeIs(1));
  EXPECT_EQ("no-such", errors[0].module);
  EXPECT_EQ("", errors[0].file);
  EXPECT_THAT(errors[0].message, HasSubstr("from search directories"));
}

}  // namespace
