// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/path.h"

#include <gtest/gtest.h>

#include <string>

namespace compiler {
namespace {

std::string Dump(const NodePath& path) {
  std::string out = path.absolute ? "abs" : "up" + std::to_string(path.ups);
  if (path.throughDeref) out += " deref(" + std::string(path.Of(path.deref)) + ")";
  for (const PathStep& step : path.steps) {
    out += " ";
    if (!step.prefix.empty()) out += std::string(path.Of(step.prefix)) + ":";
    out += path.Of(step.name);
    out += path.Of(step.predicates);
  }
  return out;
}

std::string Leafref(const std::string& text) {
  NodePath path;
  XpathError error;
  if (ParseLeafrefPath(text, &path, &error)) return Dump(path);
  return std::to_string(error.offset) + ": " + error.message;
}

std::string NodeId(const std::string& text, bool absolute) {
  NodePath path;
  XpathError error;
  if (ParseSchemaNodeId(text, absolute, &path, &error)) return Dump(path);
  return std::to_string(error.offset) + ": " + error.message;
}

TEST(ParseLeafrefPath, ReadsStepsAndPredicates) {
  EXPECT_EQ(Leafref("/p:a/b"), "abs p:a b");
  EXPECT_EQ(Leafref("../../a"), "up2 a");
  EXPECT_EQ(Leafref(" .. / p:a\n/b "), "up1 p:a b");
  EXPECT_EQ(Leafref("/a[k = current()/../x]/b"), "abs a[k = current()/../x] b");
  EXPECT_EQ(Leafref("/a[k=current()/../x/y][l=current()/../../z]/b"),
            "abs a[k=current()/../x/y][l=current()/../../z] b");
  EXPECT_EQ(Leafref("deref(../x)/../b"), "up1 deref(../x) b");
}

TEST(ParseLeafrefPath, RefusesWhatIsNoPath) {
  EXPECT_EQ(Leafref("a/b"), "0: a path begins with \"/\" or \"..\"");
  EXPECT_EQ(Leafref(".."), "2: the path names no node");
  EXPECT_EQ(Leafref("/"), "1: the path names no node");
  EXPECT_EQ(Leafref("/a//b"), "4: a path has no \"//\"");
  EXPECT_EQ(Leafref("/a/../b"), "3: \"..\" stands in front of all names only");
  EXPECT_EQ(Leafref("../*"), "3: a path consists of names and \"..\"");
  EXPECT_EQ(Leafref("../a | ../b"), "0: this is no path");
  EXPECT_EQ(Leafref("current()/../a"), "0: a path begins with \"/\" or \"..\"");
  EXPECT_EQ(Leafref("/a[1]/b"), "3: a predicate of a path reads \"[key = current()/../name]\"");
  EXPECT_EQ(Leafref("/a[k='x']/b"), "5: a predicate of a path reads \"[key = current()/../name]\"");
  EXPECT_EQ(Leafref("/a[k=current()/x]/b"),
            "5: a predicate of a path reads \"[key = current()/../name]\"");
  EXPECT_EQ(Leafref(""), "0: the expression is empty");
}

TEST(ParseSchemaNodeId, ReadsAbsoluteAndDescendantForms) {
  EXPECT_EQ(NodeId("/p:a/b", true), "abs p:a b");
  EXPECT_EQ(NodeId("p:a/b", false), "up0 p:a b");
  EXPECT_EQ(NodeId(" /a ", true), "abs a");
}

TEST(ParseSchemaNodeId, RefusesOthers) {
  EXPECT_EQ(NodeId("a/b", true), "0: this path begins with \"/\"");
  EXPECT_EQ(NodeId("/a", false),
            "0: this path is relative to where it stands: it does not begin with \"/\"");
  EXPECT_EQ(NodeId("", true), "0: a name is missing here");
  EXPECT_EQ(NodeId("/a/", true), "3: a name is missing here");
  EXPECT_EQ(NodeId("/a//b", true), "3: a name is missing here");
  EXPECT_EQ(NodeId("/a:/b", true), "3: a name is missing here");
  EXPECT_EQ(NodeId("/a b", true), "2: this character belongs to no path of names");
  EXPECT_EQ(NodeId("/a/../b", true), "3: a name is missing here");
  EXPECT_EQ(NodeId("/1a", true), "1: a name is missing here");
}

TEST(SplitNames, DropsBlanks) {
  EXPECT_EQ(SplitNames(" a\n b:c/d\t"), (std::vector<std::string_view>{"a", "b:c/d"}));
  EXPECT_TRUE(SplitNames(" ").empty());
}

TEST(IsIdentifier, FollowsTheGrammar) {
  for (const char* name : {"a", "_", "a-b.c_9", "xml"}) EXPECT_TRUE(IsIdentifier(name)) << name;
  for (const char* name : {"", "9", "-a", "a b", "a:b", "\xc3\xa4"}) {
    EXPECT_FALSE(IsIdentifier(name)) << name;
  }
}

}  // namespace
}  // namespace compiler
