// SPDX-License-Identifier: BSD-3-Clause
#include "yin/keyword.h"

#include <gtest/gtest.h>

#include <string>

#include "context/xml_parse.h"

// Written out once more: the table of the library is what is tested.
static const char* const kKeywords[] = {"unknown",
                                        "action",
                                        "anydata",
                                        "anyxml",
                                        "argument",
                                        "augment",
                                        "base",
                                        "belongs-to",
                                        "bit",
                                        "case",
                                        "choice",
                                        "config",
                                        "contact",
                                        "container",
                                        "default",
                                        "description",
                                        "deviate",
                                        "deviation",
                                        "enum",
                                        "error-app-tag",
                                        "error-message",
                                        "extension",
                                        "feature",
                                        "fraction-digits",
                                        "grouping",
                                        "identity",
                                        "if-feature",
                                        "import",
                                        "include",
                                        "input",
                                        "key",
                                        "leaf",
                                        "leaf-list",
                                        "length",
                                        "list",
                                        "mandatory",
                                        "max-elements",
                                        "min-elements",
                                        "modifier",
                                        "module",
                                        "must",
                                        "namespace",
                                        "notification",
                                        "ordered-by",
                                        "organization",
                                        "output",
                                        "path",
                                        "pattern",
                                        "position",
                                        "prefix",
                                        "presence",
                                        "range",
                                        "reference",
                                        "refine",
                                        "require-instance",
                                        "revision",
                                        "revision-date",
                                        "rpc",
                                        "status",
                                        "submodule",
                                        "type",
                                        "typedef",
                                        "unique",
                                        "units",
                                        "uses",
                                        "value",
                                        "when",
                                        "yang-version",
                                        "yin-element",
                                        "text",
                                        "extension-instance"};

TEST(GetKeywordByStmt, EveryIdHasItsKeyword) {
  ASSERT_EQ(71u, std::size(kKeywords));
  for (uint32_t id = 0; id < 71; ++id) EXPECT_STREQ(kKeywords[id], QMS_LOADER_GetKeywordByStmt(id));
}

TEST(GetKeywordByStmt, IdsPastTheLastAreUnknown) {
  EXPECT_STREQ("unknown", QMS_LOADER_GetKeywordByStmt(71));
  EXPECT_STREQ("unknown", QMS_LOADER_GetKeywordByStmt(UINT32_MAX));
}

TEST(GetStmtByKeyword, EveryKeywordGivesItsId) {
  for (uint32_t id = 1; id < 70; ++id) {
    SCOPED_TRACE(kKeywords[id]);
    EXPECT_EQ(id, QMS_LOADER_GetStmtByKeyword(kKeywords[id]));
  }
}

TEST(GetStmtByKeyword, OtherNamesGiveZero) {
  const char* const names[] = {"unknown", "extension-instance",
                               "Leaf",    "LEAF",
                               "leafy",   "lea",
                               "l",       "",
                               "-leaf",   "_",
                               "1",       "leaf ",
                               " leaf",   "header",
                               "join",    "query",
                               "xml",     "zone",
                               "{",       "`",
                               "\xC3\xA4"};
  for (const char* name : names) {
    SCOPED_TRACE(name);
    EXPECT_EQ(0u, QMS_LOADER_GetStmtByKeyword(name));
  }
  EXPECT_EQ(0u, QMS_LOADER_GetStmtByKeyword(nullptr));
}

TEST(GetStmtByKeywordStartWith, LettersKnowTheirOwnWords) {
  EXPECT_EQ(5u, QMS_LOADER_GetStmtByKeywordStartWithA("augment"));
  EXPECT_EQ(68u, QMS_LOADER_GetStmtByKeywordStartWithY("yin-element"));
  EXPECT_EQ(65u, QMS_LOADER_GetStmtByKeywordStartWithV("value"));
  EXPECT_EQ(0u, QMS_LOADER_GetStmtByKeywordStartWithW("wait"));
  EXPECT_EQ(0u, QMS_LOADER_GetStmtByKeywordStartWithK(nullptr));
  EXPECT_EQ(0u, QMS_LOADER_GetStmtByKeywordStartWithK(""));
}

TEST(GetStmtFromStmtMap, FirstCharacterIsNotComparedAndFirstMatchWins) {
  const QmsKeyWord map[] = {{"leaf", 1}, {"leaf", 2}, {"list", 3}};
  EXPECT_EQ(1u, QMS_LOADER_GetStmtFromStmtMap("leaf", map, 3));
  EXPECT_EQ(3u, QMS_LOADER_GetStmtFromStmtMap("mist", map, 3));
  EXPECT_EQ(0u, QMS_LOADER_GetStmtFromStmtMap("list", map, 2));
}

static uint32_t StmtOfRoot(const char* text) {
  xmlDoc* doc = ParseXmlText(text, std::string(text).size());
  EXPECT_NE(nullptr, doc);
  const uint32_t stmt = QMS_LOADER_GetXmlNodeYangStmt(xmlDocGetRootElement(doc));
  xmlFreeDoc(doc);
  return stmt;
}

TEST(GetXmlNodeYangStmt, NamespaceDecidesBeforeTheName) {
  EXPECT_EQ(31u, StmtOfRoot("<leaf xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"));
  EXPECT_EQ(31u, StmtOfRoot("<y:leaf xmlns:y='urn:ietf:params:xml:ns:yang:yin:1'/>"));
  EXPECT_EQ(0u, StmtOfRoot("<leafy xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"));
  EXPECT_EQ(0u, StmtOfRoot("<Leaf xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>"));
  EXPECT_EQ(0u, StmtOfRoot("<leaf/>"));
  EXPECT_EQ(70u, StmtOfRoot("<leaf xmlns='urn:other'/>"));
  EXPECT_EQ(0u, QMS_LOADER_GetXmlNodeYangStmt(nullptr));
}

TEST(GetXmlNodeYangStmt, TextAndCommentsAreNoStatements) {
  const std::string text =
      "<leaf xmlns='urn:ietf:params:xml:ns:yang:yin:1'>leaf<!--leaf--><?leaf leaf?></leaf>";
  xmlDoc* doc = ParseXmlText(text.data(), text.size());
  ASSERT_NE(nullptr, doc);
  uint32_t seen = 0;
  for (xmlNode* n = xmlDocGetRootElement(doc)->children; n != nullptr; n = n->next, ++seen)
    EXPECT_EQ(0u, QMS_LOADER_GetXmlNodeYangStmt(n));
  EXPECT_EQ(3u, seen);
  xmlFreeDoc(doc);
}
