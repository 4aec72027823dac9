// SPDX-License-Identifier: BSD-3-Clause
// Comments, processing instructions and CDATA sections in every place of a model and
// of a message.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <libxml/parser.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/hostile/hostile_text.h"

namespace {

const char* const kComments[] = {"<!-- c -->", "<?pi x?>", "<!-- c --><?pi x?> <!-- d -->"};
const char kCdata[] = "<![CDATA[ <x> ]]>";

std::string ReadFile(const std::string& name) {
  std::ifstream file(QMODEL_TEST_MODELS "/statements/" + name);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Behind the root's start tag and behind each tag in it, but for the root's end tag.
std::vector<size_t> PlacesBehindTags(const std::string& text, size_t first) {
  std::vector<size_t> places;
  for (size_t at = text.find('>', first); at + 1 < text.size(); at = text.find('>', at + 1)) {
    if (text.find('>', at + 1) == std::string::npos) break;
    places.push_back(at + 1);
  }
  return places;
}

uint32_t AddText(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

// The tree of the module, and what was recorded as failed.
std::string TreeOf(const std::string& text) {
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  std::string seen = std::to_string(QM_CTX_LoadMemory(ctx, text.c_str())) + "\n";
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, "st-base");
  if (module != nullptr) {
    EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, AddText, &seen));
  }
  seen += LoadErrorLines(ctx);
  QM_CTX_Delete(ctx);
  return seen;
}

TEST(HostileMarkup, CommentsInEveryPlaceOfAModelChangeNothing) {
  const std::string text = ReadFile("st-base.yin");
  const std::string tree = TreeOf(text);
  ASSERT_NE(std::string::npos, tree.find("+--rw top")) << tree;
  for (const char* noise : kComments) {
    for (size_t place : PlacesBehindTags(text, text.find("<module"))) {
      std::string noisy = text;
      noisy.insert(place, noise);
      EXPECT_EQ(tree, TreeOf(noisy)) << noisy.substr(0, place) << "<<< here";
    }
  }
}

TEST(HostileMarkup, CdataInEveryPlaceOfAModelChangesNoNode) {
  const std::string text = ReadFile("st-base.yin");
  const std::string tree = TreeOf(text);
  for (size_t place : PlacesBehindTags(text, text.find("<module"))) {
    std::string noisy = text;
    noisy.insert(place, kCdata);
    EXPECT_EQ(tree, TreeOf(noisy)) << noisy.substr(0, place) << "<<< here";
  }
}

const char kBody[] =
    "<rpc name='op'><input><leaf name='a'><type name='string'/></leaf>"
    "<container name='b'><list name='l'><key value='k'/><leaf name='k'><type name='uint32'/></leaf>"
    "</list></container><leaf-list name='x'><type name='uint32'/></leaf-list></input></rpc>";
const char kRequest[] =
    "<op xmlns='urn:m'><a>text</a><b><l><k>1</k></l><l><k>2</k></l></b><x>1</x><x>2</x></op>";

TEST(HostileMarkup, CommentsInEveryPlaceOfAMessageButBeforeAValueChangeNothing) {
  const std::string module = ModuleText(kBody);
  const std::string request = kRequest;
  ASSERT_TRUE(IsValidRequest(module, request));
  for (const char* noise : {"<!-- c -->", "<?pi x?>"}) {
    for (size_t place : PlacesBehindTags(request, 0)) {
      std::string noisy = request;
      noisy.insert(place, noise);
      const bool beforeValue = request[place] != '<';
      EXPECT_EQ(!beforeValue, IsValidRequest(module, noisy)) << noisy;
    }
    for (size_t end = request.find("</"); end != std::string::npos;
         end = request.find("</", end + 1)) {
      std::string noisy = request;
      noisy.insert(end, noise);
      EXPECT_TRUE(IsValidRequest(module, noisy)) << noisy;
    }
  }
}

// A leaf's value is its first text node; the section stands beside it.
TEST(HostileMarkup, CdataBetweenElementsOfAMessageIsNoElement) {
  const std::string module = ModuleText(kBody);
  const std::string request = kRequest;
  for (size_t place : PlacesBehindTags(request, 0)) {
    if (request[place] != '<') continue;
    std::string noisy = request;
    noisy.insert(place, kCdata);
    EXPECT_TRUE(IsValidRequest(module, noisy)) << noisy;
  }
}

int g_asked = 0;

// libxml2 asks this for every file and address that it wants to read.
xmlParserInput* CountAndRefuse(const char* /*url*/, const char* /*id*/, xmlParserCtxt* /*ctxt*/) {
  ++g_asked;
  return nullptr;
}

TEST(HostileMarkup, EntitiesAndDeclarationsOfEveryKindAskForNoFile) {
  const xmlExternalEntityLoader loader = xmlGetExternalEntityLoader();
  xmlSetExternalEntityLoader(CountAndRefuse);
  const std::string module = ModuleText(kBody);
  for (const std::string& declaration :
       {std::string("op SYSTEM 'file:///etc/passwd'"),
        std::string("op PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' 'http://127.0.0.1:9/x.dtd'"),
        std::string("op [<!ENTITY e SYSTEM 'file:///etc/passwd'>]"),
        std::string("op [<!ENTITY e PUBLIC 'p' '/etc/passwd'>]"),
        std::string("op [<!ENTITY % p SYSTEM 'file:///etc/passwd'> %p; <!ENTITY e 'x'>]"),
        std::string("op [<!ENTITY % p '<!ENTITY e SYSTEM \"/etc/passwd\">'> %p;]"),
        std::string("op [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM '/etc/passwd' NDATA n>]"),
        std::string("op SYSTEM '/etc/passwd' [<!ATTLIST op b CDATA #IMPLIED><!ENTITY e 'x'>]")}) {
    SCOPED_TRACE(declaration);
    const std::string doctype = "<!DOCTYPE " + declaration + ">";
    EXPECT_FALSE(IsValidRequest(module, doctype + "<op xmlns='urn:m'><a>&e;</a></op>"));
    EXPECT_FALSE(IsValidRequest(module, doctype + "<op xmlns='urn:m' z='&e;'/>"));
    EXPECT_FALSE(IsValidRequest(
        module, doctype + "<op xmlns='urn:m' xmlns:x='http://www.w3.org/2001/XInclude'>"
                          "<x:include href='/etc/passwd'/></op>"));
    static_cast<void>(LoadBesideOther(doctype + ModuleText("&e;<container name='c'/>")));
  }
  EXPECT_EQ(0, g_asked);
  // The counter is asked when something does want a file.
  xmlDoc* doc = xmlReadFile("/nowhere/x.xml", nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  EXPECT_EQ(nullptr, doc);
  EXPECT_EQ(1, g_asked);
  xmlSetExternalEntityLoader(loader);
}

}  // namespace
