// SPDX-License-Identifier: BSD-3-Clause
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/dict.h"
#include "tests/support/counting_memory.h"
#include "tests/support/type_fixture.h"
#include "tests/support/yin_text.h"
#include "types/type.h"
#include "yin/load_type.h"

using type_fixture::DumpType;
using type_fixture::Module;

namespace {

// A typedef element with the given attributes and children.
std::string Typedef(const std::string& attributes, const std::string& children) {
  return "<typedef" + std::string(yin_text::kNamespace) + " " + attributes + ">" + children +
         "</typedef>";
}

uint32_t Parse(Module* module, const std::string& xml, QmsTypedef* td) {
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  EXPECT_NE(nullptr, doc) << xml;
  const uint32_t ret =
      QMT_LOADER_ParseTypeDefStmt(module->Get(), xmlDocGetRootElement(doc), QMS_STMT_MODULE, td);
  xmlFreeDoc(doc);
  return ret;
}

void Destroy(Module* module, QmsTypedef* td) {
  QMS_TYPE_DestroyTypDefInner(module->Dict(), td);
}

void ExpectZero(const QmsTypedef& td) {
  EXPECT_EQ(nullptr, td.name);
  EXPECT_EQ(nullptr, td.defaultValue);
  EXPECT_EQ(nullptr, td.units);
  EXPECT_EQ("typedef", DumpType(&td.type));
  EXPECT_EQ(nullptr, td.type.cons);
  EXPECT_EQ(0, td.type.rangeFlags);
}

TEST(ParseTypeDefStmt, KeepsNameTypeDefaultAndUnits) {
  Module module(QM_LOAD_UNITS);
  QmsTypedef td = {};
  EXPECT_EQ(QM_OK, Parse(&module,
                         Typedef("name='percent'",
                                 "<units name='%'/><default value='5'/><reference/>"
                                 "<type name='uint8'><range value='0..100'/></type>"),
                         &td));
  EXPECT_STREQ("percent", td.name);
  EXPECT_STREQ("5", td.defaultValue);
  EXPECT_STREQ("%", td.units);
  EXPECT_EQ("uint8 range{0..100} flags=3", DumpType(&td.type));
  Destroy(&module, &td);
}

TEST(ParseTypeDefStmt, ABaseThatDoesNotExistYetIsFine) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(QM_OK, Parse(&module, Typedef("name='t'", "<type name='later'/>"), &td));
  EXPECT_EQ("typedef derived{m:later}", DumpType(&td.type));
  EXPECT_EQ(nullptr, td.defaultValue);
  Destroy(&module, &td);
}

TEST(ParseTypeDefStmt, AMissingNameIsRecorded) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(QM_INVALID, Parse(&module, Typedef("", "<type name='int8'/>"), &td));
  EXPECT_EQ(std::vector<std::string>{"Failed to get value of statement \"typedef\"."},
            module.Messages());
  ExpectZero(td);
}

TEST(ParseTypeDefStmt, AMissingTypeIsRecorded) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(QM_INVALID, Parse(&module, Typedef("name='t'", "<default value='5'/>"), &td));
  EXPECT_EQ(std::vector<std::string>{"typedef \"t\" must define with type statement."},
            module.Messages());
  ExpectZero(td);
}

TEST(ParseTypeDefStmt, AFailedTypeIsRecordedWithTheTypedefsName) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(
      QM_INVALID,
      Parse(&module,
            Typedef("name='t'", "<default value='5'/><type name='int8'><range value='x'/></type>"),
            &td));
  const std::vector<std::string> expected = {
      "Failed to parse value \"int8\" of statement \"type\".",
      "Failed to parse value \"t\" of statement \"typedef\"."};
  EXPECT_EQ(expected, module.Messages());
  ExpectZero(td);
}

TEST(ParseTypeDefStmt, TheDefaultOfAnIdentityrefTakesTheModulesName) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(QM_OK, Parse(&module,
                         Typedef("name='t'",
                                 "<type name='identityref'><base name='b'/></type>"
                                 "<default value='o:x'/>"),
                         &td));
  EXPECT_STREQ("other:x", td.defaultValue);
  Destroy(&module, &td);
}

TEST(ParseTypeDefStmt, ADefaultThatCannotBeRefreshedDestroysTheTypedef) {
  Module module;
  QmsTypedef td = {};
  EXPECT_EQ(QM_INVALID, Parse(&module,
                              Typedef("name='t'",
                                      "<type name='identityref'><base name='b'/></type>"
                                      "<default value='unknown:x'/>"),
                              &td));
  ExpectZero(td);
}

TEST(ParseTypeDefStmt, ANullRecordIsRefused) {
  Module module;
  EXPECT_EQ(QM_INVALID, Parse(&module, Typedef("name='t'", "<type name='int8'/>"), nullptr));
}

Module* g_module = nullptr;

TEST(ParseTypeDefStmt, LeavesNothingForEachRefusedAllocation) {
  Module module;
  g_module = &module;
  QmsTypedef failed = {};  // fills the two places for messages
  EXPECT_EQ(QM_INVALID, Parse(&module, Typedef("name='t'", "<type name='x:y'/>"), &failed));
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    QmsTypedef td = {};
    const uint32_t ret = Parse(g_module,
                               Typedef("name='t'",
                                       "<type name='identityref'><base name='o:b'/></type>"
                                       "<default value='x'/>"),
                               &td);
    if (ret == QM_OK) {
      EXPECT_STREQ("m:x", td.defaultValue);
      Destroy(g_module, &td);
    } else {
      EXPECT_TRUE(refusing);
      EXPECT_TRUE(ret == QM_NO_MEMORY || ret == QM_INVALID) << ret;
      ExpectZero(td);
    }
  });
  EXPECT_GT(injected, 10u);
}

}  // namespace
