// SPDX-License-Identifier: BSD-3-Clause
// Instances of extensions and namespaces, in text and in YIN.
#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

constexpr char kExtensions[] =
    "module e { namespace urn:e; prefix e;\n"
    "  extension plain; extension named { argument name; }\n"
    "  extension held { argument text { yin-element true; } }\n"
    "  extension off { argument text { yin-element false; } }\n"
    "}";

// Module m, read by either reader, that imports module e; bound.
class BindPrefixesTest : public testing::Test {
 protected:
  void Bind(Module* module) {
    ASSERT_NE(module, nullptr);
    module_ = module;
    Module* e = ReadModuleText(session_.get(), "e.yang", kExtensions, &report_);
    for (Import& import : module->imports)
      if (import.module == "e") import.target = e;
    BindPrefixes(session_.get(), module, &report_);
  }
  void BindText(const std::string& content) {
    Bind(ReadModuleText(
        session_.get(), "m.yang",
        "module m { namespace urn:m; prefix m; import e { prefix x; } " + content + "}", &report_));
  }
  void BindYin(const std::string& content) {
    Bind(ReadModuleYin(session_.get(), "m.yin",
                       "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' "
                       "xmlns:q='urn:e' xmlns:o='urn:other'><namespace uri='urn:m'/>"
                       "<prefix value='m'/><import module='e'><prefix value='x'/></import>" +
                           content + "</module>",
                       &report_));
  }
  // What is written after the import.
  std::string Written() const {
    const std::string all = WriteYin(*module_);
    const size_t from = all.find("</import>\n") + 10;
    return all.substr(from, all.size() - from - sizeof("</module>"));
  }
  std::string Findings() const {
    std::string lines;
    for (const Finding& finding : report_.findings) {
      EXPECT_EQ(finding.severity, Severity::kError);
      EXPECT_STREQ(finding.group, "extension");
      lines += finding.message + "\n";
    }
    return lines;
  }

  std::unique_ptr<Session> session_ = OpenSession();
  Report report_;
  Module* module_ = nullptr;
};

constexpr char kBound[] =
    "  <x:plain/>\n"
    "  <x:named name=\"a\"/>\n"
    "  <x:held>\n"
    "    <x:text>b &amp; c</x:text>\n"
    "    <leaf name=\"d\">\n"
    "      <x:plain/>\n"
    "    </leaf>\n"
    "  </x:held>\n"
    "  <x:held>\n"
    "    <x:text/>\n"
    "  </x:held>\n"
    "  <x:off text=\"e\"/>\n";

TEST_F(BindPrefixesTest, TextTakesFormFromTheDefinition) {
  BindText("x:plain; x:named a; x:held 'b & c' { leaf d { x:plain; } } x:held ''; x:off e;");
  EXPECT_EQ(Findings(), "");
  EXPECT_EQ(Written(), kBound);
  EXPECT_TRUE(module_->extensions.empty());
  const xmlNode* held = NextSibling(NextSibling(FirstChild(module_->root, Keyword::kNone)));
  EXPECT_STREQ(ArgumentOf(held), "b & c");
  EXPECT_TRUE(Is(FirstChild(held), Keyword::kLeaf));
}

TEST_F(BindPrefixesTest, YinIsReadTheSame) {
  BindYin(
      "<q:plain> \n </q:plain><q:named name='a'/>\n<q:held>\n<q:text>b &amp; c</q:text>"
      "<leaf name='d'><q:plain/></leaf></q:held><q:held><q:text/></q:held><q:off text='e'/>");
  EXPECT_EQ(Findings(), "");
  EXPECT_EQ(Written(), kBound);
  const xmlNode* held = NextSibling(NextSibling(FirstChild(module_->root, Keyword::kNone)));
  EXPECT_STREQ(ArgumentOf(held), "b & c");
  EXPECT_TRUE(Is(FirstChild(held), Keyword::kLeaf));
}

TEST_F(BindPrefixesTest, NamespacesOfImportsAreDeclared) {
  BindText("");
  const xmlNs* own = module_->root->nsDef;
  ASSERT_NE(own, nullptr);
  EXPECT_STREQ(reinterpret_cast<const char*>(own->prefix), "m");
  EXPECT_STREQ(reinterpret_cast<const char*>(own->href), "urn:m");
  ASSERT_NE(own->next, nullptr);
  EXPECT_STREQ(reinterpret_cast<const char*>(own->next->prefix), "x");
  EXPECT_STREQ(reinterpret_cast<const char*>(own->next->href), "urn:e");
  EXPECT_EQ(own->next->next, nullptr);
}

TEST_F(BindPrefixesTest, OwnExtensionsAreFoundWithOwnPrefix) {
  BindText("extension mine { argument a; } m:mine b;");
  EXPECT_EQ(Findings(), "");
  EXPECT_NE(Written().find("<m:mine a=\"b\"/>"), std::string::npos);
}

// An attribute or element of such a name would not be well-formed, or say something else.
TEST_F(BindPrefixesTest, ArgumentsThatXmlDoesNotTakeLeaveTheTree) {
  BindText(
      "extension a { argument 'a b'; } extension b { argument xmlns; }\n"
      "extension c { argument '1' { yin-element true; } }\n"
      "extension d { argument xmlns { yin-element true; } }\n"
      "m:a x; m:a; m:b x; m:c x; m:d x;");
  EXPECT_EQ(Findings(),
            "'m:a' has an argument whose name 'a b' XML does not take\n"
            "'m:a' has an argument whose name 'a b' XML does not take\n"
            "'m:b' has an argument whose name 'xmlns' XML does not take\n"
            "'m:c' has an argument whose name '1' XML does not take\n");
  EXPECT_EQ(Written().find("<m:a"), std::string::npos);
  EXPECT_NE(Written().find("  <m:d>\n    <m:xmlns>x</m:xmlns>\n  </m:d>\n"), std::string::npos);
}

// Without a prefix it would be a statement of YANG.
TEST_F(BindPrefixesTest, InstancesOfAModuleWithoutNamespaceLeaveTheTree) {
  for (const char* uri : {"", "urn:ietf:params:xml:ns:yang:yin:1"}) {
    report_ = Report();
    Bind(ReadModuleText(session_.get(), "m.yang",
                        std::string("module m { prefix m; namespace '") + uri +
                            "'; import e { prefix x; } extension x; m:x; x:plain; }",
                        &report_));
    EXPECT_EQ(Findings(),
              "'m:x' cannot be written, since module 'm' has no namespace of its own\n");
    EXPECT_NE(Written().find("<x:plain/>"), std::string::npos);
    EXPECT_EQ(Written().find("<x/>"), std::string::npos);
  }
}

TEST_F(BindPrefixesTest, WhatIsNotDefinedLeavesTheTreeWithAllInIt) {
  BindText("x:gone { x:gone { x:plain; y:a; } } y:b c; x:plain a; x:named; x:held; leaf l;");
  EXPECT_EQ(Findings(),
            "module 'e' defines no extension 'gone'\n"
            "module 'e' defines no extension 'gone'\n"
            "no import has the prefix 'y'\n"
            "no import has the prefix 'y'\n"
            "'x:plain' takes no argument\n"
            "'x:named' lacks its argument 'name'\n"
            "'x:held' lacks its argument 'text'\n");
  EXPECT_EQ(Written(), "  <leaf name=\"l\"/>\n");
}

TEST_F(BindPrefixesTest, YinThatDoesNotFitLeavesTheTree) {
  BindYin(
      "<q:gone/><o:a/><b xmlns='urn:b'/><q:plain name='a'/><q:named nam='a'/><q:held "
      "text='a'/><q:held>"
      "<leaf name='a'/><q:text/></q:held><leaf name='l'/><q:plain>text</q:plain>");
  EXPECT_EQ(Findings(),
            "module 'e' defines no extension 'gone'\n"
            "no import has the namespace of 'o:a'\n"
            "no import has the namespace of 'b'\n"
            "'q:plain' takes no argument\n"
            "'q:named' calls its argument 'name'\n"
            "'q:held' lacks its argument 'text'\n"
            "'q:held' lacks its argument 'text'\n"
            "module 'e' defines no extension 'text'\n"
            "'q:plain' holds text\n");
  EXPECT_EQ(Written(), "  <leaf name=\"l\"/>\n  <x:plain/>\n");
}

TEST_F(BindPrefixesTest, AnImportThatIsNotFoundLeavesItsInstancesAsTheyAre) {
  BindText("import gone { prefix g; } g:a b; leaf l;");
  EXPECT_EQ(Findings(), "");
  EXPECT_STREQ(ArgumentOf(FirstChild(module_->root, Keyword::kNone)), "b");
}

}  // namespace
}  // namespace compiler
