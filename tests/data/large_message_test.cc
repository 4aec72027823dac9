// SPDX-License-Identifier: BSD-3-Clause
// Messages come from the network and may be long. A run must cost no more than
// their length: each of these has so many siblings that a search through them
// for each entry, 10^10 steps, would keep the test going for minutes.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "data/data_node.h"
#include "data/validate.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"
#include "xpath/child_lookup.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateRpc;
using yin_text::Leaf;
using yin_text::Rpc;

constexpr int kEntries = 100000;

std::string Repeat(const std::string& text, int times) {
  std::string all;
  all.reserve(text.size() * static_cast<size_t>(times));
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string Message(const std::string& content) {
  return "<r xmlns='urn:m'>" + content + "</r>";
}

class LargeMessage : public testing::Test {
 protected:
  Schema schema_;
};

TEST_F(LargeMessage, EntriesBelowOneCase) {
  schema_.Load("m",
               Rpc("<choice name=\"ch\"><case name=\"x\"><list name=\"li\"><key value=\"k\"/>" +
                   Leaf("k") + "</list></case><case name=\"y\">" + Leaf("y") + "</case></choice>"));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), Message(Repeat("<li><k>1</k></li>", kEntries))));
  EXPECT_EQ("8|/m:r/y|Data for more than one case branch of a choice is present.|y|-",
            ValidateRpc(schema_.ctx(), Message(Repeat("<li><k>1</k></li>", kEntries) + "<y/>")));
}

TEST_F(LargeMessage, EntriesOfANestedChoiceBetweenForeignOnes) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"x\"><choice name=\"in\"><case name=\"p\">"
                        "<list name=\"li\"/></case></choice></case></choice>"));
  const std::string import = "<import module=\"m\"><prefix value=\"m\"/></import>";
  schema_.Load("k", import + "<augment target-node=\"/m:r/m:input\"><list name=\"fo\"/></augment>");
  schema_.Load(
      "l", import + "<augment target-node=\"/m:r/m:input/m:ch/m:x\"><list name=\"fx\"/></augment>");
  EXPECT_EQ("valid",
            ValidateRpc(schema_.ctx(), Message(Repeat("<li/><fo xmlns='urn:k'/><fx xmlns='urn:l'/>",
                                                      kEntries / 3))));
}

TEST_F(LargeMessage, EveryEntryIsCompletedConditionedAndChecked) {
  schema_.Load("m",
               Rpc("<list name=\"li\"><key value=\"k\"/><when condition=\"not(../nothing)\"/>"
                   "<must condition=\"../limit = '5'\"/>" +
                   Leaf("k") + Leaf("a", "<default value=\"1\"/>") +
                   Leaf("b", "<default value=\"1\"/>", "<when condition=\"../../nothing\"/>") +
                   Leaf("c", "<mandatory value=\"true\"/>", "<when condition=\"../../nothing\"/>") +
                   "</list>" + Leaf("limit")));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), Message(Repeat("<li><k>1</k></li>", kEntries) +
                                                        "<limit>5</limit>")));
}

TEST_F(LargeMessage, DefaultsAmongLongRunsOfForeignSiblings) {
  std::string input;
  for (int i = 0; i < 20; ++i) {
    const std::string number = std::to_string(i);
    input += Leaf("d" + number, "<default value=\"1\"/>") + "<container name=\"c" + number + "\">" +
             Leaf("x", "<default value=\"1\"/>") + "</container>";
  }
  schema_.Load("m", Rpc(input + "<leaf-list name=\"z\"><type name=\"string\"/></leaf-list>"));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\"><leaf-list name=\"f\">"
               "<type name=\"string\"/></leaf-list></augment>");
  EXPECT_EQ("valid",
            ValidateRpc(schema_.ctx(), Message(Repeat("<f xmlns='urn:k'>1</f>", kEntries / 2) +
                                               Repeat("<z>1</z>", kEntries / 2))));
}

// Every entry compares the text, megabytes of it, and reads it as a number.
TEST_F(LargeMessage, ConditionsOnALongText) {
  schema_.Load("m", Rpc(Leaf("text") + "<leaf name=\"number\"><type name=\"uint32\"/></leaf>" +
                        "<list name=\"li\">" +
                        Leaf("k",
                             "<must condition=\"../../text != 'x' and ../../number &lt; 10 and "
                             "../../number = 5 and not(../../text &gt; 1)\"/>") +
                        "</list>"));
  const std::string text = "<text>" + std::string(8 << 20, 'x') + "</text>";
  const std::string blanks(8 << 20, ' ');
  const std::string entries = Repeat("<li><k>1</k></li>", kEntries);
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(),
                                 Message(text + "<number>" + blanks + "5</number>" + entries)));
  EXPECT_EQ(
      "18|/m:r/li/k|k is not satisfied must condition.|k|must-violation",
      ValidateRpc(schema_.ctx(), Message(text + "<number>" + blanks + "6</number>" + entries)));
}

// Half of the leaves are written, the others are placed between them. Asking every
// sibling anew for each would take 10^10 steps of the schema.
TEST_F(LargeMessage, DefaultsOfAWideSchema) {
  constexpr int kPairs = 1500;
  std::string input;
  std::string content;
  std::string completed;
  for (int i = 0; i < kPairs; ++i) {
    const std::string number = std::to_string(i);
    const std::string written = "<w" + number + ">1</w" + number + ">";
    input += Leaf("w" + number);
    const std::string leaf = Leaf("d" + number, "<default value=\"2\"/>");
    input += i % 3 == 0   ? leaf
             : i % 3 == 1 ? "<choice name=\"c" + number + "\"><default value=\"d" + number +
                                "\"/>" + leaf + "</choice>"
                          : "<container name=\"e" + number + "\">" + leaf + "</container>";
    const std::string added = "<d" + number + ">2</d" + number + ">";
    content += written;
    completed +=
        written + (i % 3 == 2 ? "<e" + number + ">" + added + "</e" + number + ">" : added);
  }
  schema_.Load("m", Rpc(input));
  Document doc(Message(content));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:m\">" + completed + "</r>", doc.Dump());
}

// Added first to all entries of one list and then to those of the other, they are
// taken away in the order of the document, where the entries alternate.
TEST_F(LargeMessage, DefaultsAreTakenAwayInAnotherOrderThanAdded) {
  const std::string gone =
      Leaf("gone", "<default value=\"1\"/>", "<when condition=\"../nothing\"/>");
  schema_.Load("m", Rpc("<list name=\"li\">" + gone + "</list>"));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\"><list name=\"lj\">" +
                   gone + "</list></augment>");
  Document doc(Message(Repeat("<li/><lj xmlns='urn:k'/>", kEntries)));
  const std::string before = doc.Dump();
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ(before, doc.Dump());
}

TEST_F(LargeMessage, NotificationLosesAllEntriesBehindALongRun) {
  schema_.Load("m",
               "<notification name=\"n\"><leaf-list name=\"f\"><type name=\"string\"/></leaf-list>"
               "<list name=\"li\"><when condition=\"../nothing or ../li/x\"/>" +
                   Leaf("x") +
                   "</list><list name=\"lm\"><must condition=\"../last = '1'\"/></list>" +
                   Leaf("last") + "</notification>");
  const std::string run = Repeat("<f>1</f>", kEntries);
  EXPECT_EQ("<n xmlns=\"urn:m\">" + run + "<last>2</last></n>",
            message_fixture::ValidateNotif(schema_.ctx(),
                                           "<n xmlns='urn:m'>" + run + Repeat("<li/>", kEntries) +
                                               Repeat("<lm/>", kEntries) + "<last>2</last></n>"));
}

TEST_F(LargeMessage, CommentsAndTextBetweenEntries) {
  schema_.Load("m", Rpc("<list name=\"li\"/>" + Leaf("a")));
  EXPECT_EQ("valid",
            ValidateRpc(schema_.ctx(), Message(Repeat("<!--x--><li/>", kEntries) + "<a/>")));
}

// What a run keeps of its searches must give the same answers as the tree.
class KeptAnswers : public testing::Test {
 protected:
  KeptAnswers() : doc_("<r>" + Repeat("<f/>", 100) + "<a n='1'/><a n='2'><x/></a><b/></r>") {}
  xmlNode* Find(const char* name) { return QMD_PAS_FindChildDataNode(doc_.root(), name); }
  Document doc_;
};

TEST_F(KeptAnswers, AreTheFirstChildOfTheName) {
  ChildLookup lookup;
  xmlNode* first = Find("a");
  EXPECT_EQ(doc_.Find("a"), first);
  EXPECT_FALSE(lookup.Knows(doc_.root())) << "one search is no reason yet";
  EXPECT_EQ(first, Find("a"));
  EXPECT_TRUE(lookup.Knows(doc_.root()));
  EXPECT_EQ(first, Find("a"));
  EXPECT_EQ(nullptr, Find("none"));
  EXPECT_EQ(doc_.root()->children, Find("f"));
  EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(first, "a"));
  EXPECT_FALSE(lookup.Knows(first)) << "short searches are not worth a table";
}

void Remove(xmlNode* node) {
  NoteChildLeaves(node);
  xmlUnlinkNode(node);
  xmlFreeNode(node);
}

TEST_F(KeptAnswers, FollowRemovals) {
  ChildLookup lookup;
  xmlNode* first = Find("a");
  xmlNode* second = first->next;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(first, Find("a"));
  Remove(first);
  EXPECT_EQ(second, Find("a"));
  EXPECT_TRUE(lookup.Knows(doc_.root()));
  Remove(second);
  EXPECT_EQ(nullptr, Find("a"));
  for (int i = 0; i < 99; ++i) Remove(Find("f"));
  EXPECT_EQ(doc_.root()->children, Find("f"));
  Remove(Find("f"));
  EXPECT_EQ(nullptr, Find("f"));
  EXPECT_EQ(doc_.root()->children, Find("b"));
}

TEST_F(KeptAnswers, FollowAdditions) {
  ChildLookup lookup;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(nullptr, Find("none"));
  for (const bool inFront : {false, true}) {
    xmlNode* added =
        xmlNewDocNode(doc_.doc(), nullptr, reinterpret_cast<const xmlChar*>("none"), nullptr);
    xmlNode* root = doc_.root();
    ASSERT_EQ(added, inFront ? xmlAddPrevSibling(root->children, added) : xmlAddChild(root, added));
    NoteChildAdded(added);
    EXPECT_EQ(added, Find("none"));
  }
}

// Names of one hash, so that they share their place in a table.
TEST_F(KeptAnswers, TellNamesOfOneHashApart) {
  Document doc("<r>" + Repeat("<f/>", 100) + "<costarring/><liquid/><costarring/></r>");
  const auto find = [&](const char* name) { return QMD_PAS_FindChildDataNode(doc.root(), name); };
  ChildLookup lookup;
  xmlNode* one = doc.Find("costarring");
  xmlNode* other = doc.Find("liquid");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(one, find("costarring"));
    EXPECT_EQ(other, find("liquid"));
  }
  Remove(doc.root()->last);
  Remove(one);
  Remove(other);
  EXPECT_EQ(nullptr, find("liquid"));
  EXPECT_EQ(nullptr, find("costarring"));
}

TEST_F(KeptAnswers, OfAParentThatLeavesAreDropped) {
  Document doc("<r><c>" + Repeat("<f/>", 100) + "</c></r>");
  ChildLookup lookup;
  xmlNode* container = doc.Find("c");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(container, "none"));
  EXPECT_TRUE(lookup.Knows(container));
  NoteChildLeaves(doc.root());
  EXPECT_FALSE(lookup.Knows(container));
}

TEST_F(KeptAnswers, StayRightWhateverIsEdited) {
  std::mt19937_64 random(5);
  const std::vector<std::string> names = {"a", "b", "c", "d", "f", "g"};
  for (int round = 0; round < 20; ++round) {
    Document doc("<r>" + Repeat("<f/>", 70) + Repeat("<a/><b/>", 30) + "</r>");
    xmlNode* root = doc.root();
    ChildLookup lookup;
    for (int step = 0; step < 300; ++step) {
      const std::string& name = names[random() % names.size()];
      xmlNode* place = root->children;
      for (uint64_t i = random() % 140; i > 0 && place != nullptr; --i) place = place->next;
      if (random() % 2 == 0 && place != nullptr) {
        Remove(place);
      } else if (random() % 2 == 0) {
        xmlNode* added = xmlNewDocNode(doc.doc(), nullptr,
                                       reinterpret_cast<const xmlChar*>(name.c_str()), nullptr);
        static_cast<void>(place != nullptr ? xmlAddPrevSibling(place, added)
                                           : xmlAddChild(root, added));
        NoteChildAdded(added);
      }
      xmlNode* expected = root->children;
      while (expected != nullptr && name != reinterpret_cast<const char*>(expected->name))
        expected = expected->next;
      ASSERT_EQ(expected, QMD_PAS_FindChildDataNode(root, name.c_str())) << step;
    }
  }
}

TEST_F(KeptAnswers, AreNumbersOfLongTextsUntilNewerOnesTakeTheirPlace) {
  constexpr int kKept = 128;
  ChildLookup lookup;
  const Document doc("<r>" + Repeat("<n/>", kKept + 1) + "</r>");
  const xmlNode* first = doc.root()->children;
  double number = 0;
  for (const xmlNode* node = first; node != nullptr; node = node->next)
    lookup.KeepNumber(node, number++);
  EXPECT_EQ(nullptr, lookup.FindNumber(first)) << "the oldest";
  ASSERT_NE(nullptr, lookup.FindNumber(first->next));
  EXPECT_EQ(1, lookup.FindNumber(first->next)->number);
  ASSERT_NE(nullptr, lookup.FindNumber(doc.root()->last));
  EXPECT_EQ(kKept, lookup.FindNumber(doc.root()->last)->number);
}

TEST_F(KeptAnswers, AreSearchedForWithoutMemory) {
  ChildLookup lookup;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(doc_.Find("a"), Find("a"));
    EXPECT_EQ(nullptr, Find("none"));
  }
  EXPECT_GT(counting_memory::StopRefusing(), 0u);
  EXPECT_FALSE(lookup.Knows(doc_.root()));
  EXPECT_EQ(doc_.Find("a"), Find("a"));
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  EXPECT_EQ(doc_.Find("a"), Find("a"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_FALSE(lookup.Knows(doc_.root()));
}

TEST_F(KeptAnswers, NumbersEndWithTheirElement) {
  Document doc("<r><c><a/></c><b/></r>");
  double number = 0;
  KeepNumber(doc.Find("a"), 1);
  EXPECT_FALSE(FindKeptNumber(doc.Find("a"), &number)) << "outside of a run none is kept";
  ChildLookup lookup;
  KeepNumber(doc.Find("a"), 1);
  KeepNumber(doc.Find("b"), 2);
  EXPECT_TRUE(FindKeptNumber(doc.Find("a"), &number));
  EXPECT_EQ(1, number);
  NoteChildLeaves(doc.Find("c"));
  EXPECT_FALSE(FindKeptNumber(doc.Find("a"), &number));
  EXPECT_TRUE(FindKeptNumber(doc.Find("b"), &number));
  EXPECT_EQ(2, number);
}

TEST_F(KeptAnswers, EndWithTheirRun) {
  {
    ChildLookup outer;
    {
      ChildLookup inner;
      EXPECT_EQ(&inner, ActiveChildLookup());
    }
    EXPECT_EQ(&outer, ActiveChildLookup());
  }
  EXPECT_EQ(nullptr, ActiveChildLookup());
}

TEST_F(KeptAnswers, AreKeptForAnyNumberOfNames) {
  std::string children;
  for (int i = 0; i < 3000; ++i) children += "<n" + std::to_string(i) + "/>";
  Document doc("<r>" + children + children + "</r>");
  ChildLookup lookup;
  for (int again = 0; again < 2; ++again) {
    const xmlNode* child = doc.root()->children;
    for (int i = 0; i < 3000; ++i, child = child->next) {
      EXPECT_EQ(child, QMD_PAS_FindChildDataNode(doc.root(), ("n" + std::to_string(i)).c_str()));
    }
  }
  EXPECT_TRUE(lookup.Knows(doc.root()));
}

// The walk goes on to other elements and comes back to those above them.
TEST_F(KeptAnswers, AreMadeAgainAfterManyOtherParents) {
  Document doc("<r>" + Repeat("<c>" + Repeat("<f/>", 100) + "<a/></c>", 600) + "</r>");
  ChildLookup lookup;
  int known = 0;
  for (xmlNode* parent = doc.root()->children; parent != nullptr; parent = parent->next) {
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(parent->last, QMD_PAS_FindChildDataNode(parent, "a"));
      EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(doc.root(), "a"));
    }
    EXPECT_TRUE(lookup.Knows(parent));
  }
  for (xmlNode* parent = doc.root()->children; parent != nullptr; parent = parent->next) {
    known += lookup.Knows(parent) ? 1 : 0;
  }
  EXPECT_LT(known, 300);
}

}  // namespace
