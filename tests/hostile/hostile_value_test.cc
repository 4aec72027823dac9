// SPDX-License-Identifier: BSD-3-Clause
// Values, conditions and trees as an enemy would write them, at and beyond the limits
// that the library states.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <array>

#include "tests/hostile/hostile_text.h"
#include "tests/support/yin_text.h"

namespace {

const xmlChar* Xml(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

// A module with one leaf of this type, and the status of values for it.
class LeafOf {
 public:
  explicit LeafOf(const std::string& type, const std::string& body = "") : ctx_(QM_CTX_Create(0)) {
    const std::string text = ModuleText(body + "<leaf name='l'>" + type + "</leaf>");
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, text.c_str())) << LoadErrorLines(ctx_);
  }
  ~LeafOf() { QM_CTX_Delete(ctx_); }
  LeafOf(const LeafOf&) = delete;
  LeafOf& operator=(const LeafOf&) = delete;
  uint32_t Check(const std::string& value) {
    return QM_NODE_ValidateValue(QM_CTX_GetTargetNode(ctx_, "/m:l", nullptr), QM_INPUT_TEXT,
                                 value.c_str());
  }

 private:
  QmCtx* ctx_;
};

TEST(HostileValue, IntegersAtAndOverTheirLimits) {
  const std::array<const char*, 5> rows[] = {
      {"int8", "-128", "127", "-129", "128"},
      {"int16", "-32768", "32767", "-32769", "32768"},
      {"int32", "-2147483648", "2147483647", "-2147483649", "2147483648"},
      {"int64", "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
       "9223372036854775808"},
      {"uint8", "0", "255", "-1", "256"},
      {"uint16", "0", "65535", "-1", "65536"},
      {"uint32", "0", "4294967295", "-1", "4294967296"},
      {"uint64", "0", "18446744073709551615", "-1", "18446744073709551616"},
  };
  for (const auto& [type, least, most, below, above] : rows) {
    SCOPED_TRACE(type);
    LeafOf leaf("<type name='" + std::string(type) + "'/>");
    EXPECT_EQ(QM_OK, leaf.Check(least));
    EXPECT_EQ(QM_OK, leaf.Check(most));
    EXPECT_EQ(QM_OK, leaf.Check(std::string(100000, ' ') + std::string(100000, '0') + most));
    EXPECT_EQ(QM_VALUE_BAD_RANGE, leaf.Check(below));
    EXPECT_EQ(QM_VALUE_BAD_RANGE, leaf.Check(above));
    EXPECT_EQ(QM_VALUE_BAD_RANGE, leaf.Check(std::string(1000000, '9')));
    for (const char* noNumber : {"", " ", "-", "+", "--1", "1-", "1 1", "0x1", "1.0", "\xC3\x28"}) {
      SCOPED_TRACE(noNumber);
      EXPECT_EQ(QM_VALUE_BAD_RANGE, leaf.Check(noNumber));
    }
  }
}

TEST(HostileValue, Decimal64AtAndOverItsLimits) {
  const auto type = [](const std::string& digits) {
    return "<type name='decimal64'><fraction-digits value='" + digits + "'/></type>";
  };
  LeafOf fine(type("18"));
  EXPECT_EQ(QM_OK, fine.Check("9.223372036854775807"));
  EXPECT_EQ(QM_OK, fine.Check("-9.223372036854775808"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, fine.Check("9.223372036854775808"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, fine.Check("-9.223372036854775809"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, fine.Check("10"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, fine.Check("0.0000000000000000001")) << "19 digits";
  LeafOf coarse(type("1"));
  EXPECT_EQ(QM_OK, coarse.Check("922337203685477580.7"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, coarse.Check("922337203685477580.8"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, coarse.Check("1000000000000000000"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, coarse.Check("0.00"));
  EXPECT_EQ(QM_OK, coarse.Check(std::string(1000000, '0') + "1.5"));
  for (const char* noNumber : {"1e5", "inf", "nan", "1,5", "0x1p3", "1.5.1", "--1"}) {
    SCOPED_TRACE(noNumber);
    EXPECT_EQ(QM_VALUE_BAD_RANGE, coarse.Check(noNumber));
  }
}

TEST(HostileValue, BitsTakeNamesOf64CharactersAnd129OfThem) {
  LeafOf named("<type name='bits'><bit name='" + std::string(64, 'n') + "'/><bit name='" +
               std::string(65, 'n') + "'/></type>");
  EXPECT_EQ(QM_OK, named.Check(std::string(64, 'n')));
  EXPECT_EQ(QM_VALUE_BAD_BITS, named.Check(std::string(65, 'n')));
  EXPECT_EQ(QM_VALUE_BAD_BITS, named.Check(std::string(1000000, 'n')));
  LeafOf many("<type name='bits'>" + Numbered("<bit name='b", "'/>", 200) + "</type>");
  EXPECT_EQ(QM_OK, many.Check(Numbered("b", " ", 129)));
  EXPECT_EQ(QM_VALUE_BAD_BITS, many.Check(Numbered("b", " ", 130)));
  EXPECT_EQ(QM_VALUE_BAD_BITS, many.Check("b1 b2 b1"));
  EXPECT_EQ(QM_VALUE_BAD_BITS, many.Check(Repeat("b1 ", 100000)));
  EXPECT_EQ(QM_OK, many.Check("b1" + std::string(1000000, ' ') + "b2"));
}

TEST(HostileValue, EnumsAreMatchedAsAWhole) {
  const std::string name(5000, 'n');
  LeafOf leaf("<type name='enumeration'><enum name='" + name + "'/><enum name='%s%n'/></type>");
  EXPECT_EQ(QM_OK, leaf.Check(name));
  EXPECT_EQ(QM_VALUE_BAD_ENUM, leaf.Check(name + "n"));
  EXPECT_EQ(QM_VALUE_BAD_ENUM, leaf.Check(name.substr(1)));
  EXPECT_EQ(QM_OK, leaf.Check("%s%n"));
  EXPECT_EQ(QM_VALUE_BAD_ENUM, leaf.Check(""));
}

TEST(HostileValue, IdentitiesWithNamesBeyondAllLimitsAreNone) {
  LeafOf leaf("<type name='identityref'><base name='b'/></type>",
              "<identity name='b'/><identity name='" + std::string(64, 'i') +
                  "'><base name='b'/></identity>");
  EXPECT_EQ(QM_OK, leaf.Check("m:b"));
  EXPECT_EQ(QM_OK, leaf.Check("m:" + std::string(64, 'i')));
  for (const std::string& value :
       {"m:" + std::string(65, 'i'), std::string(64, 'm') + ":b", std::string(65, 'm') + ":b",
        std::string(1000000, 'm') + ":b", "m:" + std::string(1000000, 'b'), std::string("m:"),
        std::string(":b"), std::string(":"), std::string("m:b:b"), std::string("b"),
        std::string("")}) {
    SCOPED_TRACE(value.substr(0, 70));
    EXPECT_EQ(QM_VALUE_BAD_IDENTITY, leaf.Check(value));
  }
}

const char kIdentityBody[] =
    "<identity name='b'/><rpc name='op'><input><leaf-list name='l'><type name='identityref'>"
    "<base name='b'/></type></leaf-list></input></rpc>";

TEST(HostileValue, PrefixesOfIdentitiesAreReadUpTo1024Characters) {
  const auto request = [](const std::string& prefix) {
    return "<op xmlns='urn:m' xmlns:" + prefix + "='urn:m'><l>" + prefix + ":b</l></op>";
  };
  const std::string module = ModuleText(kIdentityBody);
  EXPECT_TRUE(IsValidRequest(module, request(std::string(1024, 'p'))));
  EXPECT_FALSE(IsValidRequest(module, request(std::string(1025, 'p'))));
  EXPECT_FALSE(IsValidRequest(module, request(std::string(40000, 'p'))));
  EXPECT_FALSE(IsValidRequest(module, "<op xmlns='urn:m'><l>xml:b</l></op>"));
  EXPECT_FALSE(IsValidRequest(module, "<op xmlns='urn:m'><l>:b</l></op>"));
  EXPECT_FALSE(IsValidRequest(module, "<op xmlns='urn:m' xmlns:p='urn:n'><l>p:b</l></op>"));
}

TEST(HostileValue, PrefixIsFoundBehindThousandsOfOthers) {
  EXPECT_TRUE(IsValidRequest(ModuleText(kIdentityBody),
                             "<op xmlns='urn:m' " + Numbered("xmlns:p", "='urn:n' ", 5000) +
                                 "xmlns:q='urn:m'>" + Repeat("<l>q:b</l>", 20000) + "</op>"));
}

// The status of a condition on the document <r/>.
uint32_t Condition(const std::string& text) {
  xmlDoc* doc = xmlParseMemory("<r/>", 4);
  const uint32_t status = QM_XPATH_EvalCondition(static_cast<xmlNode*>(static_cast<void*>(doc)),
                                                 xmlDocGetRootElement(doc), text.c_str());
  xmlFreeDoc(doc);
  return status;
}

TEST(HostileCondition, TextsOfTenMegabytesAreRead) {
  const size_t size = 10 << 20;
  const std::string literal = "'" + std::string(size, 'x') + "'";
  EXPECT_EQ(QM_OK, Condition(literal + " = " + literal));
  EXPECT_EQ(QM_XPATH_FALSE, Condition(literal + " != " + literal));
  EXPECT_EQ(QM_XPATH_FALSE, Condition(std::string(size, 'n')));
  EXPECT_EQ(QM_OK, Condition(std::string(size, ' ') + "1"));
  EXPECT_EQ(QM_OK, Condition(std::string(size, '9') + " > 1"));
  EXPECT_EQ(QM_OK, Condition("0." + std::string(size, '0') + "1 < 1"));
  EXPECT_EQ(QM_XPATH_UNKNOWN_FUNCTION, Condition(std::string(size, 'f') + "()"));
  EXPECT_EQ(QM_XPATH_BAD_TOKEN, Condition("'" + std::string(size, 'x')));
}

TEST(HostileCondition, FiveThousandOfEverythingAreRead) {
  const size_t count = 5000;
  EXPECT_EQ(QM_OK, Condition(Repeat("1 or ", count) + "1"));
  EXPECT_EQ(QM_XPATH_FALSE, Condition(Repeat("a/", count) + "a"));
  EXPECT_EQ(QM_OK, Condition(Repeat("../", count) + "."));
  EXPECT_EQ(QM_XPATH_FALSE, Condition("a" + Repeat("[1]", count)));
  EXPECT_EQ(QM_XPATH_BAD_PREDICATE, Condition("a" + Repeat("[", count)));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, Condition(std::string(count, '(')));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, Condition("1" + std::string(count, ')')));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, Condition(Repeat("not(", count)));
  EXPECT_EQ(QM_INVALID, Condition("not(" + Repeat("1,", count) + "1)"));
  EXPECT_EQ(QM_INVALID, Condition(Repeat("1 ", 2)));
}

TEST(HostileCondition, SubExpressionsNestUpTo256) {
  EXPECT_EQ(QM_OK, Condition(std::string(256, '(') + "1" + std::string(256, ')')));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, Condition(std::string(257, '(') + "1" + std::string(257, ')')));
}

const char kTreeBody[] =
    "<rpc name='op'><input><leaf name='a'><type name='string'/></leaf><leaf name='n'>"
    "<type name='uint8'/></leaf><list name='l'><key value='k'/><leaf name='k'>"
    "<type name='string'/></leaf><leaf name='v'><type name='uint8'/></leaf></list>"
    "<anydata name='any'/></input></rpc>";

TEST(HostileTree, TextsInOtherEncodingsEndAtTheirFirstNul) {
  const std::string module = ModuleText(kTreeBody);
  const char little[] = "\xFF\xFE<\0o\0p\0/\0>\0";
  const char big[] = "\xFE\xFF\0<\0o\0p\0/\0>";
  EXPECT_FALSE(IsValidRequest(module, std::string(little, sizeof little - 1)));
  EXPECT_FALSE(IsValidRequest(module, std::string(big, sizeof big - 1)));
  EXPECT_FALSE(IsValidRequest(module, "<?xml version='1.0' encoding='UTF-16'?><op/>"));
  EXPECT_TRUE(IsValidRequest(module, std::string("<op xmlns='urn:m'/>\0<op>", 24)));
}

TEST(HostileTree, OperationsInAnotherModulesNamespaceAreNotFound) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleText(kTreeBody).c_str()));
  ASSERT_EQ(QM_OK,
            QM_CTX_LoadMemory(
                ctx, yin_text::Module("n", "<container name='a'/><rpc name='other'/>").c_str()));
  const std::array<const char*, 3> rows[] = {
      {"<op xmlns='urn:n'/>", "Unexpected element: op.", "/n:op"},
      {"<other xmlns='urn:m'/>", "Unexpected element: other.", "/m:other"},
      {"<op xmlns='urn:m'><a xmlns='urn:n'>x</a></op>", "Unexpected element: a.", "/m:op/n:a"},
      {"<op xmlns='urn:m'><any/><p:n xmlns:p='urn:o'>1</p:n></op>", "Unexpected element: n.",
       "/m:op/n"},
      {"<op xmlns='urn:o'/>", "op has invalid namespace: urn:o.", "/op"},
  };
  for (const auto& [text, message, path] : rows) {
    SCOPED_TRACE(text);
    std::string copy = text;
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, copy.data(), nullptr, nullptr);
    EXPECT_STREQ(message, QM_GetErrorMessage(err));
    EXPECT_STREQ(path, QM_GetErrorPath(err));
    QM_FreeErrNode(err);
  }
  QM_CTX_Delete(ctx);
}

TEST(HostileTree, OddNamespacesAndXmlAttributesAreHarmless) {
  const std::string module = ModuleText(kTreeBody);
  for (const char* text : {
           "<op xmlns='urn:m' xml:base='http://127.0.0.1:9/' xml:lang='x' xml:space='preserve'/>",
           "<op xmlns='urn:m'><a xml:space='preserve'> </a></op>",
           "<p:op xmlns:p='urn:m' xmlns='urn:other'><p:a>x</p:a></p:op>",
           "<op xmlns='urn:m'><a xmlns=''>x</a></op>",
           "<p:op xmlns:p='urn:m'><q:a xmlns:q='urn:m' xmlns:p='urn:o'>x</q:a></p:op>",
       }) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(IsValidRequest(module, text));
  }
  for (const char* text : {
           "<op/>",
           "<op xmlns=''/>",
           "<q:op/>",
           "<op xmlns='urn:m' xmlns='urn:m'/>",
           "<xmlns:op/>",
           "<op xmlns='urn:m'><q:a>x</q:a></op>",
           "<op xmlns='urn:m' a='1' a='2'/>",
       }) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(IsValidRequest(module, text));
  }
}

TEST(HostileTree, EntitiesInAttributesAreRefused) {
  const std::string module = ModuleText(kTreeBody);
  const std::string dtd = "<!DOCTYPE op [<!ENTITY e 'urn:m'><!ENTITY f 'x'>]>";
  EXPECT_TRUE(IsValidRequest(module, "<op xmlns='urn:m'><a b='&amp;&#65;'>x</a></op>"));
  EXPECT_FALSE(IsValidRequest(module, dtd + "<op xmlns='urn:m'><a b='&f;&f;'>x</a></op>"));
  EXPECT_FALSE(IsValidRequest(module, dtd + "<op xmlns='urn:m'><a b='&g;'>x</a></op>"));
  std::string attributes;
  for (int i = 0; i < 100; ++i) attributes += " CDATA 'x' a" + std::to_string(i);
  EXPECT_FALSE(IsValidRequest(
      module, "<!DOCTYPE op [<!ATTLIST l a" + attributes + " CDATA ''>]><op xmlns='urn:m'/>"))
      << "each entry would get them all";
}

TEST(HostileTree, OnlyTheFirstPieceOfAValueIsRead) {
  const std::string module = ModuleText(kTreeBody);
  const std::string start = "<op xmlns='urn:m'><n>";
  for (const char* rest : {"<![CDATA[x]]>", "<!-- -->x", "<?p?>x"}) {
    SCOPED_TRACE(rest);
    EXPECT_TRUE(IsValidRequest(module, start + "1" + rest + "</n></op>"));
    EXPECT_FALSE(IsValidRequest(module, start + "x" + rest + "</n></op>"));
    EXPECT_FALSE(IsValidRequest(module, start + rest + "1</n></op>"));
  }
  EXPECT_FALSE(IsValidRequest(module, "<!DOCTYPE op [<!ENTITY e 'x'>]>" + start + "1&e;</n></op>"));
  EXPECT_FALSE(IsValidRequest(module, "<op xmlns='urn:m'><n>1<x/></n></op>"));
}

// True when an element has a text and more pieces beside it: what a client that hands a
// printed result on looks for.
bool HasUncheckedPieces(const xmlNode* element) {
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE && HasUncheckedPieces(child)) return true;
    if (child->type == XML_TEXT_NODE && element->children->next != nullptr) return true;
  }
  return false;
}

TEST(HostileTree, WhatFollowsTheFirstPieceIsPrintedAndAClientCanTell) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleText(kTreeBody).c_str()));
  for (const char* rest : {"<![CDATA[x]]>", "<!-- -->x", "<?p?>x", ""}) {
    SCOPED_TRACE(rest);
    const std::string text = std::string("<op xmlns=\"urn:m\"><n>1") + rest + "</n></op>";
    xmlDoc* doc = xmlParseMemory(text.data(), static_cast<int>(text.size()));
    xmlNode* root = xmlDocGetRootElement(doc);
    EXPECT_EQ(*rest != '\0', HasUncheckedPieces(root));
    EXPECT_EQ(nullptr, QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, root, nullptr, nullptr));
    xmlChar* printed = nullptr;
    int size = 0;
    xmlDocDumpMemory(doc, &printed, &size);
    EXPECT_THAT(std::string(reinterpret_cast<const char*>(printed)), testing::HasSubstr(text));
    xmlFree(printed);
    xmlFreeDoc(doc);
  }
  QM_CTX_Delete(ctx);
}

TEST(HostileTree, ValuesAndPathsInErrorsAreCutOrLeftOut) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleText(kTreeBody).c_str()));
  const auto validate = [ctx](const std::string& content) {
    std::string text = "<op xmlns='urn:m'>" + content + "</op>";
    return QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr);
  };
  for (size_t length : {size_t{256}, size_t{257}, size_t{1000000}}) {
    SCOPED_TRACE(length);
    QmErrNode* err = validate("<n>" + std::string(length, 'v') + "</n>");
    const std::string quoted =
        length <= 256 ? std::string(length, 'v') : std::string(253, 'v') + "...";
    EXPECT_EQ("n has invalid value " + quoted + ".", QM_GetErrorMessage(err));
    QM_FreeErrNode(err);
  }
  // "/m:op/l[k='…']/v" has 15 characters beside the key.
  for (size_t length : {size_t{10239 - 15}, size_t{10240 - 15}, size_t{1000000}}) {
    SCOPED_TRACE(length);
    const std::string key(length, 'k');
    QmErrNode* err = validate("<l><k>" + key + "</k><v>x</v></l>");
    const char* path = QM_GetErrorPath(err);
    if (length == 10239 - 15) {
      EXPECT_EQ("/m:op/l[k='" + key + "']/v", path == nullptr ? "" : path);
    } else {
      EXPECT_EQ(nullptr, path);
    }
    QM_FreeErrNode(err);
  }
  QmErrNode* err = validate("<" + std::string(40000, 'e') + "/>");
  EXPECT_EQ(10240u, std::string(QM_GetErrorMessage(err)).size());
  EXPECT_EQ(nullptr, QM_GetErrorPath(err));
  QM_FreeErrNode(err);
  QM_CTX_Delete(ctx);
}

// A document for trees that no parser makes.
class HandMade {
 public:
  HandMade() : ctx_(QM_CTX_Create(0)), doc_(xmlNewDoc(Xml("1.0"))) {
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, ModuleText(kTreeBody).c_str()));
    root_ = xmlNewDocNode(doc_, nullptr, Xml("op"), nullptr);
    xmlDocSetRootElement(doc_, root_);
    xmlSetNs(root_, xmlNewNs(root_, Xml("urn:m"), nullptr));
  }
  ~HandMade() {
    xmlFreeDoc(doc_);
    QM_CTX_Delete(ctx_);
  }
  HandMade(const HandMade&) = delete;
  HandMade& operator=(const HandMade&) = delete;
  xmlNode* root() { return root_; }
  xmlDoc* doc() { return doc_; }
  xmlNode* Add(const char* name) { return xmlNewChild(root_, root_->ns, Xml(name), nullptr); }
  // The error-tag; 0 for a valid tree.
  uint32_t Validate(void* node) {
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx_, QM_INPUT_ELEMENT, node, nullptr, nullptr);
    const uint32_t tag = QM_GetErrorTag(err);
    QM_FreeErrNode(err);
    return tag;
  }

 private:
  QmCtx* ctx_;
  xmlDoc* doc_;
  xmlNode* root_ = nullptr;
};

TEST(HostileTree, NodesThatAreNoElementsAreRefused) {
  HandMade tree;
  xmlAttr* attribute = xmlNewProp(tree.root(), Xml("a"), Xml("x"));
  xmlNode* comment = xmlAddChild(tree.root(), xmlNewDocComment(tree.doc(), Xml("x")));
  xmlNode* text = xmlAddChild(tree.root(), xmlNewDocText(tree.doc(), Xml("x")));
  xmlNode* data = xmlAddChild(tree.root(), xmlNewCDataBlock(tree.doc(), Xml("x"), 1));
  xmlNode* reference = xmlAddChild(tree.root(), xmlNewReference(tree.doc(), Xml("e")));
  void* nodes[] = {tree.doc(), attribute, comment, text, data, reference};
  for (void* node : nodes) EXPECT_EQ(18u, tree.Validate(node));
  EXPECT_EQ(0u, tree.Validate(tree.root()));
  EXPECT_EQ(18u, tree.Validate(xmlCreateIntSubset(tree.doc(), Xml("op"), nullptr, nullptr)));
  EXPECT_EQ(18u, tree.Validate(tree.root())) << "the document has a type now";
}

TEST(HostileTree, ElementsWithPartsMissingAreHandled) {
  HandMade tree;
  xmlAddChild(tree.Add("n"), xmlNewDocText(tree.doc(), nullptr));
  EXPECT_EQ(8u, tree.Validate(tree.root())) << "a text node without text is no value";
  HandMade empty;
  empty.Add("n");
  EXPECT_EQ(8u, empty.Validate(empty.root())) << "nor is none";
  HandMade loose;
  xmlUnlinkNode(loose.root());
  EXPECT_EQ(0u, loose.Validate(loose.root())) << "nothing here asks for the parent";
  xmlDocSetRootElement(loose.doc(), loose.root());
}

TEST(HostileTree, EntityReferencesLeadNowhere) {
  HandMade tree;
  xmlDtd* dtd = xmlCreateIntSubset(tree.doc(), Xml("op"), nullptr, nullptr);
  xmlAddDocEntity(tree.doc(), Xml("e"), XML_INTERNAL_GENERAL_ENTITY, nullptr, nullptr,
                  Xml("<n>999</n>"));
  xmlNode* reference = xmlAddChild(tree.root(), xmlNewReference(tree.doc(), Xml("e")));
  xmlNode* inLeaf = xmlNewReference(tree.doc(), Xml("e"));
  EXPECT_EQ(18u, tree.Validate(tree.root())) << "the document has a type";
  // The references go on leading to the entity when the document has no type any more.
  xmlUnlinkNode(static_cast<xmlNode*>(static_cast<void*>(dtd)));
  ASSERT_EQ(nullptr, tree.doc()->intSubset);
  ASSERT_NE(nullptr, reference->children);
  EXPECT_EQ(0u, tree.Validate(tree.root())) << "what the entity holds is no part of the tree";
  xmlAddChild(tree.Add("a"), inLeaf);
  EXPECT_EQ(9u, tree.Validate(tree.root()));
  xmlFreeDtd(dtd);
}

}  // namespace
