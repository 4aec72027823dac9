// SPDX-License-Identifier: BSD-3-Clause
#include <gtest/gtest.h>
#include <libxml/tree.h>

#include <string>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "context/xml_tree.h"
#include "schema/node_value.h"
#include "schema/typedef.h"
#include "tests/support/schema_tree.h"
#include "tests/support/yin.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

// Module m with typedefs outer -> middle -> inner (int8), and a leaf of outer.
struct TypedefChain {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* leaf = Child(c, QMS_NODE_LEAF, "l");
  TypedefChain() {
    schema_tree::Typedef(m, "inner", QMT_BASE_INT8);
    schema_tree::Typedef(m, "middle", QMT_BASE_INT8);
    schema_tree::Typedef(m, "outer", QMT_BASE_INT8);
    schema_tree::DeriveTypedef(m, "middle", "m", "inner");
    schema_tree::DeriveTypedef(m, "outer", "m", "middle");
    schema_tree::SetDerivedType(leaf, "m", "outer");
  }
  QmsTypedef* Td(const char* name) { return QMS_MOD_FindQmsTypDefByName(m, name); }
  void Set(const char** field, const char* text) {
    EXPECT_TRUE(InternText(schema.dict(), field, text));
  }
};

uint32_t NoteTypedefCb(const char* moduleName, const char* typedefName, QmtType* type, void* arg) {
  std::string* text = static_cast<std::string*>(arg);
  *text += typedefName == nullptr ? "built-in " : std::string(moduleName) + ":" + typedefName + " ";
  EXPECT_NE(nullptr, type);
  return 0;
}

uint32_t StopCb(const char*, const char*, QmtType*, void*) {
  return 7;
}

}  // namespace

TEST(GetRealType, OnlyLeavesAndLeafListsHaveOne) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* leaf = Child(c, QMS_NODE_LEAF, "l");
  QmsNode* list = Child(c, QMS_NODE_LEAF_LIST, "ll");
  EXPECT_EQ(&static_cast<QmsLeaf*>(leaf->payload)->type, QM_NODE_GetRealType(leaf));
  EXPECT_EQ(&static_cast<QmsLeafList*>(list->payload)->type, QMS_NODE_GetLeafSchemaRealType(list));
  EXPECT_EQ(nullptr, QM_NODE_GetRealType(c));
  EXPECT_EQ(nullptr, QM_NODE_GetRealType(Child(c, QMS_NODE_CHOICE, "ch")));
}

TEST(GetDefaultValueStr, TheOwnDefaultComesFirst) {
  TypedefChain chain;
  chain.Set(&chain.Td("outer")->defaultValue, "1");
  chain.Set(&static_cast<QmsLeaf*>(chain.leaf->payload)->defaultValue, "2");
  EXPECT_STREQ("2", QM_NODE_GetDefaultValueStr(chain.leaf));
}

TEST(GetDefaultValueStr, ThenTheNearestTypedefThatHasOne) {
  TypedefChain chain;
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(chain.leaf));
  chain.Set(&chain.Td("inner")->defaultValue, "5");
  EXPECT_STREQ("5", QM_NODE_GetDefaultValueStr(chain.leaf));
  chain.Set(&chain.Td("middle")->defaultValue, "6");
  EXPECT_STREQ("6", QM_NODE_GetDefaultValueStr(chain.leaf));
}

TEST(GetDefaultValueStr, AMandatoryLeafHasNoneEvenWithADefault) {
  TypedefChain chain;
  chain.Set(&static_cast<QmsLeaf*>(chain.leaf->payload)->defaultValue, "2");
  chain.leaf->flags |= QMS_NODE_MANDATORY_TRUE;
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(chain.leaf));
}

TEST(GetDefaultValueStr, LeafListsAndOtherKindsHaveNone) {
  TypedefChain chain;
  chain.Set(&chain.Td("outer")->defaultValue, "1");
  QmsNode* list = Child(chain.c, QMS_NODE_LEAF_LIST, "ll");
  schema_tree::SetDerivedType(list, "m", "outer");
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(list));
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(chain.c));
}

TEST(GetDefaultValueStr, EndsAtATypedefThatIsNotLoaded) {
  TypedefChain chain;
  schema_tree::DeriveTypedef(chain.m, "middle", "gone", "t");
  chain.Set(&chain.Td("inner")->defaultValue, "5");
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(chain.leaf));
}

TEST(GetDefaultValueStr, ATypedefOfItselfEndsAfter128Links) {
  TypedefChain chain;
  schema_tree::DeriveTypedef(chain.m, "inner", "m", "outer");
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(chain.leaf));
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(chain.leaf));
}

TEST(GetUnitsValueStr, OwnUnitsThenThoseOfTheTypedefs) {
  TypedefChain chain;
  QmsNode* list = Child(chain.c, QMS_NODE_LEAF_LIST, "ll");
  schema_tree::SetDerivedType(list, "m", "outer");
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(chain.leaf));
  chain.Set(&chain.Td("inner")->units, "seconds");
  EXPECT_STREQ("seconds", QM_NODE_GetUnitsValueStr(chain.leaf));
  EXPECT_STREQ("seconds", QM_NODE_GetUnitsValueStr(list));
  chain.Set(&static_cast<QmsLeaf*>(chain.leaf->payload)->units, "hours");
  chain.Set(&static_cast<QmsLeafList*>(list->payload)->units, "days");
  EXPECT_STREQ("hours", QM_NODE_GetUnitsValueStr(chain.leaf));
  EXPECT_STREQ("days", QM_NODE_GetUnitsValueStr(list));
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(chain.c));
}

TEST(ScanDerivedType, NamesTheTypedefsFromTheNearestOn) {
  TypedefChain chain;
  std::string seen;
  EXPECT_EQ(QM_OK, QM_NODE_ScanDerivedType(chain.leaf, NoteTypedefCb, &seen));
  EXPECT_EQ("m:outer m:middle m:inner ", seen);
  seen.clear();
  QmsNode* plain = LeafOf(chain.c, "plain", QMT_BASE_STRING);
  EXPECT_EQ(QM_OK, QM_NODE_ScanDerivedType(plain, NoteTypedefCb, &seen));
  EXPECT_EQ("built-in ", seen);
  EXPECT_EQ(7u, QM_NODE_ScanDerivedType(chain.leaf, StopCb, nullptr));
}

TEST(ScanDerivedType, RefusesWith22WhatHasNoTypeOrPlace) {
  TypedefChain chain;
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(nullptr, StopCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(chain.leaf, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(chain.c, StopCb, nullptr));
  QmsNode* untyped = Child(chain.c, QMS_NODE_LEAF, "untyped");
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(untyped, StopCb, nullptr));
  QmsModule* module = chain.leaf->module;
  chain.leaf->module = nullptr;
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(chain.leaf, StopCb, nullptr));
  QmsModule bare{};
  chain.leaf->module = &bare;
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanDerivedType(chain.leaf, StopCb, nullptr));
  chain.leaf->module = module;
}

TEST(ValidateValue, ChecksTextsAndElements) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* leaf = LeafOf(c, "l", QMT_BASE_INT8);
  EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(leaf, 1, "-128"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, QM_NODE_ValidateValue(leaf, 1, "128"));
  xmlNode* element = xmlNewNode(nullptr, XmlChars("l"));
  xmlNodeSetContent(element, XmlChars("5"));
  EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(leaf, 2, element));
  xmlNodeSetContent(element, XmlChars("x"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, QM_NODE_ValidateValue(leaf, 2, element));
  xmlFreeNode(element);
}

TEST(ValidateValue, RefusesANodeWithoutTypeWith22) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  EXPECT_EQ(QM_INVALID, QM_NODE_ValidateValue(nullptr, 1, "1"));
  EXPECT_EQ(QM_INVALID, QM_NODE_ValidateValue(c, 1, "1"));
  EXPECT_EQ(QM_INVALID, QM_NODE_ValidateValue(Child(c, QMS_NODE_LEAF, "untyped"), 1, "1"));
}

TEST(FindRealTypeMatchedValue, IsTheTypeOfTheNodeOrNull) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* leaf = LeafOf(c, "l", QMT_BASE_INT8);
  EXPECT_EQ(QM_NODE_GetRealType(leaf), QM_NODE_FindRealTypeMatchedValue(leaf, 1, "1"));
  EXPECT_EQ(nullptr, QM_NODE_FindRealTypeMatchedValue(leaf, 1, "x"));
  EXPECT_EQ(nullptr, QM_NODE_FindRealTypeMatchedValue(c, 1, "x"));
}

TEST(FindRealTypeMatchedValue, IsTheMemberOfAUnion) {
  Schema schema;
  QmsModule* module =
      schema.Load("u", yin::Module("u",
                                   "<leaf name=\"l\"><type name=\"union\">"
                                   "<type name=\"int8\"/><type name=\"boolean\"/></type></leaf>"));
  ASSERT_NE(nullptr, module);
  QmsNode* leaf = module->dataNodes;
  QmtType* number = QM_NODE_FindRealTypeMatchedValue(leaf, 1, "12");
  QmtType* truth = QM_NODE_FindRealTypeMatchedValue(leaf, 1, "true");
  EXPECT_EQ(static_cast<uint32_t>(QMT_BASE_INT8), QM_TYPE_GetBuiltInBaseType(number));
  EXPECT_EQ(static_cast<uint32_t>(QMT_BASE_BOOLEAN), QM_TYPE_GetBuiltInBaseType(truth));
  EXPECT_EQ(nullptr, QM_NODE_FindRealTypeMatchedValue(leaf, 1, "neither"));
}
