// SPDX-License-Identifier: BSD-3-Clause
// Both readers and the writer: one tree.
#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

constexpr char kText[] =
    "module m {\n"
    "  yang-version 1.1;\n"
    "  namespace \"urn:m\"; prefix m;\n"
    "  import n { prefix n; revision-date 2020-01-02; }\n"
    "  include s;\n"
    "  revision 2019-01-01; revision 2021-01-01;\n"
    "  container c { // comment\n"
    "    leaf a { type string; description \"one\n"
    "                                       two\"; }\n"
    "  }\n"
    "}\n";

constexpr char kYin[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<module name=\"m\"\n"
    "        xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\">\n"
    "  <yang-version value=\"1.1\"/>\n"
    "  <namespace uri=\"urn:m\"/>\n"
    "  <prefix value=\"m\"/>\n"
    "  <import module=\"n\">\n"
    "    <prefix value=\"n\"/>\n"
    "    <revision-date date=\"2020-01-02\"/>\n"
    "  </import>\n"
    "  <include module=\"s\"/>\n"
    "  <revision date=\"2019-01-01\"/>\n"
    "  <revision date=\"2021-01-01\"/>\n"
    "  <container name=\"c\">\n"
    "    <leaf name=\"a\">\n"
    "      <type name=\"string\"/>\n"
    "      <description>\n"
    "        <text>one\ntwo</text>\n"
    "      </description>\n"
    "    </leaf>\n"
    "  </container>\n"
    "</module>\n";

void ExpectHeader(const Module& module) {
  EXPECT_EQ(module.name, "m");
  EXPECT_EQ(module.prefix, "m");
  EXPECT_EQ(module.nameSpace, "urn:m");
  EXPECT_EQ(module.revision, "2021-01-01");
  EXPECT_TRUE(module.version11);
  EXPECT_FALSE(module.broken);
  ASSERT_EQ(module.imports.size(), 1u);
  EXPECT_EQ(module.imports[0].module, "n");
  EXPECT_EQ(module.imports[0].prefix, "n");
  EXPECT_EQ(module.imports[0].revision, "2020-01-02");
  ASSERT_EQ(module.includes.size(), 1u);
  EXPECT_EQ(module.includes[0].submodule, "s");
}

TEST(ReadModuleText, GivesTheTreeOfTheYinForm) {
  const ReadResult read = ReadText(kText);
  EXPECT_EQ(read.Findings(), "");
  ASSERT_NE(read.module, nullptr);
  ExpectHeader(*read.module);
  EXPECT_EQ(WriteYin(*read.module), kYin);
}

TEST(ReadModuleYin, GivesTheSameTree) {
  const ReadResult read = ReadYin(kYin);
  EXPECT_EQ(read.Findings(), "");
  ASSERT_NE(read.module, nullptr);
  ExpectHeader(*read.module);
  EXPECT_EQ(WriteYin(*read.module), kYin);
}

}  // namespace
}  // namespace compiler
