// SPDX-License-Identifier: BSD-3-Clause
// Messages as an enemy would write them, through the public interface.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include "tests/hostile/hostile_text.h"
#include "tests/support/temp_folder.h"

namespace {

const char kBody[] =
    "<rpc name='op'><input><leaf name='a'><type name='string'/></leaf>"
    "<list name='l'><leaf name='k'><type name='uint32'/></leaf></list>"
    "<choice name='c'><case name='p'><leaf-list name='x'><type name='uint32'/></leaf-list></case>"
    "<leaf name='y'><type name='empty'/></leaf></choice>"
    "<anydata name='any'/></input></rpc>"
    "<notification name='ev'><leaf-list name='x'><type name='string'/></leaf-list>"
    "<anydata name='any'/></notification>";

bool Request(const std::string& content) {
  return IsValidRequest(ModuleText(kBody), "<op xmlns='urn:m'>" + content + "</op>");
}

TEST(HostileMessage, NestingUpToTheParsersLimitIsHandled) {
  // 257 open elements parse, 258 do not: the operation, the anydata and 255 more.
  const auto nested = [](size_t levels) {
    return "<any>" + Repeat("<d>", levels) + Repeat("</d>", levels) + "</any>";
  };
  EXPECT_TRUE(Request(nested(250)));
  EXPECT_TRUE(Request(nested(255)));
  EXPECT_FALSE(Request(nested(256)));
  EXPECT_FALSE(Request(nested(100000)));
}

TEST(HostileMessage, ElementTreeDeeperThanAnyParserAllowsIsHandled) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleText(kBody).c_str()));
  xmlDoc* doc = xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"));
  xmlNode* root = xmlNewDocNode(doc, nullptr, reinterpret_cast<const xmlChar*>("op"), nullptr);
  xmlDocSetRootElement(doc, root);
  xmlSetNs(root, xmlNewNs(root, reinterpret_cast<const xmlChar*>("urn:m"), nullptr));
  xmlNode* top = xmlNewChild(root, root->ns, reinterpret_cast<const xmlChar*>("any"), nullptr);
  xmlNode* node = top;
  for (int i = 0; i < 200000; ++i) {
    node = xmlNewChild(node, node->ns, reinterpret_cast<const xmlChar*>("d"), nullptr);
  }
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, root, nullptr, nullptr);
  EXPECT_EQ(nullptr, err);
  EXPECT_EQ(nullptr, node->_private);
  QM_FreeErrNode(err);
  xmlFreeDoc(doc);
  QM_CTX_Delete(ctx);
}

TEST(HostileMessage, MillionSiblingsAreValidatedOnceEach) {
  EXPECT_TRUE(Request(Repeat("<l><k>1</k></l>", 500000)));
  EXPECT_TRUE(Request(Repeat("<x>1</x>", 1000000)));
  EXPECT_FALSE(Request(Repeat("<x>1</x>", 1000000) + "<y/>"));
}

TEST(HostileMessage, TextOfTenMegabytesIsTakenAsAnyOther) {
  EXPECT_TRUE(Request("<a>" + std::string(9 * 1024 * 1024, 'x') + "</a>"));
  EXPECT_FALSE(Request("<l><k>" + std::string(9 * 1024 * 1024, '1') + "</k></l>"));
  // Whether more than ten million bytes are taken is libxml2's choice.
  static_cast<void>(Request("<a>" + std::string(11 * 1024 * 1024, 'x') + "</a>"));
}

TEST(HostileMessage, NamesAndAttributesWithoutEndAreNotFound) {
  const std::string longName(60000, 'n');
  EXPECT_FALSE(Request("<" + longName + "/>"));
  EXPECT_FALSE(Request("<" + std::string(64, 'n') + "/><" + std::string(65, 'n') + "/>"));
  EXPECT_TRUE(
      Request("<a " + std::string(40000, 'n') + "='" + std::string(60000, 'v') + "'>x</a>"));
}

TEST(HostileMessage, InvalidUtf8AndForeignEncodingsAreRefused) {
  EXPECT_FALSE(Request("<a>\xC3\x28</a>"));
  EXPECT_FALSE(Request("<a>\xF8\x88\x80\x80\x80</a>"));
  EXPECT_FALSE(Request("<a>\xED\xA0\x80</a>"));
  EXPECT_FALSE(Request("<a>&#0;</a>"));
  EXPECT_FALSE(Request("<a>&#xFFFF;</a>"));
  const std::string module = ModuleText(kBody);
  EXPECT_FALSE(
      IsValidRequest(module, "<?xml version='1.0' encoding='no-such'?><op xmlns='urn:m'/>"));
  EXPECT_TRUE(IsValidRequest(
      module, "<?xml version='1.0' encoding='ISO-8859-1'?><op xmlns='urn:m'><a>\xE9</a></op>"));
}

TEST(HostileMessage, ByteOrderMarkIsAcceptedAtTheStartOnly) {
  const std::string module = ModuleText(kBody);
  EXPECT_TRUE(IsValidRequest(module, "\xEF\xBB\xBF<op xmlns='urn:m'/>"));
  EXPECT_FALSE(IsValidRequest(module, " \xEF\xBB\xBF<op xmlns='urn:m'/>"));
}

TEST(HostileMessage, CommentsAndInstructionsStandAnywhereButInALeafsFront) {
  EXPECT_TRUE(Request("<!-- c --><a>x</a><?pi x?><!-- c --><l><!-- c --><k>1</k><?pi?></l>"));
  EXPECT_TRUE(Request("<a>x<!-- c -->y</a>"));
  EXPECT_FALSE(Request("<a><!-- c -->x</a>"));
  EXPECT_FALSE(Request("<a><?pi?>x</a>"));
  EXPECT_FALSE(Request("<a><![CDATA[x]]></a>"));
  EXPECT_TRUE(IsValidNotification(ModuleText(kBody),
                                  "<?pi?><!-- c --><ev xmlns='urn:m'><!-- c --><x>1</x></ev>"));
}

// A message must not have a document type declaration, whatever it declares.
TEST(HostileMessage, EntitiesOfAnyKindAreRefused) {
  const std::string module = ModuleText(kBody);
  const temp_folder::Folder folder;
  const std::string secret = folder.Path("secret");
  folder.Write("secret", "secret");
  for (const std::string& entity :
       {"SYSTEM 'file://" + secret + "'", "SYSTEM '" + secret + "'",
        std::string("SYSTEM 'http://127.0.0.1:9/x'"), std::string("PUBLIC 'p' 'ftp://127.0.0.1/x'"),
        std::string("'text'")}) {
    SCOPED_TRACE(entity);
    const std::string dtd = "<!DOCTYPE op [<!ENTITY e " + entity + ">]>";
    EXPECT_FALSE(IsValidRequest(module, dtd + "<op xmlns='urn:m'><a>&e;</a></op>"));
    EXPECT_FALSE(IsValidRequest(module, dtd + "<op xmlns='urn:m'><a>x</a></op>"));
    EXPECT_FALSE(IsValidRequest(module, dtd + "<op xmlns='urn:m'><any>&e;</any></op>"));
    EXPECT_FALSE(IsValidNotification(module, dtd + "<ev xmlns='urn:m'><x>1</x></ev>"));
  }
  EXPECT_FALSE(
      IsValidRequest(module, "<!DOCTYPE op SYSTEM 'file://" + secret + "'><op xmlns='urn:m'/>"));
  EXPECT_TRUE(IsValidRequest(module, "<op xmlns='urn:m'><a>x</a></op>")) << "without one";
  EXPECT_FALSE(IsValidRequest(module, "<op xmlns='urn:m'><a>&undefined;</a></op>"));
}

TEST(HostileMessage, EntitiesThatMultiplyDoNotEatMemory) {
  std::string dtd = "<!DOCTYPE op [<!ENTITY e0 'lollollollol'>";
  for (int i = 1; i < 30; ++i) {
    const std::string before = "&e" + std::to_string(i - 1) + ";";
    dtd += "<!ENTITY e" + std::to_string(i) + " '" + Repeat(before, 10) + "'>";
  }
  dtd += "]>";
  EXPECT_FALSE(IsValidRequest(ModuleText(kBody), dtd + "<op xmlns='urn:m'><a>&e29;</a></op>"));
}

// Reading these would take libxml2 most of a minute.
TEST(HostileMessage, DeclarationsOfAttributesAreNotRead) {
  std::string dtd = "<!DOCTYPE op [";
  for (int i = 0; i < 100000; ++i) dtd += "<!ATTLIST op a" + std::to_string(i) + " CDATA ''>";
  const std::string message = dtd + "]><op xmlns='urn:m'/>";
  EXPECT_FALSE(IsValidRequest(ModuleText(kBody), message));
  EXPECT_FALSE(IsValidNotification(ModuleText(kBody), message));
}

TEST(HostileMessage, PatternThatExplodesGivesUp) {
  const std::string module = ModuleText(
      "<rpc name='op'><input><leaf name='a'><type name='string'>"
      "<pattern value='(a|aa|aaa)*b'/></type></leaf></input></rpc>");
  EXPECT_FALSE(
      IsValidRequest(module, "<op xmlns='urn:m'><a>" + std::string(60, 'a') + "</a></op>"));
}

TEST(HostileMessage, FormatsInTextsAreTexts) {
  EXPECT_FALSE(Request("<l><k>%s%n%s%n%1000000d</k></l>"));
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleText(kBody).c_str()));
  std::string text = "<op xmlns='urn:m'><l><k>%s%n</k></l></op>";
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr);
  EXPECT_STREQ("k has invalid value %s%n.", QM_GetErrorMessage(err));
  QM_FreeErrNode(err);
  QM_CTX_Delete(ctx);
}

}  // namespace
