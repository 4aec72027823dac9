// SPDX-License-Identifier: BSD-3-Clause
// Each rewriting held against what the condition means: libxml2 evaluates the condition as
// it was written, the library validates the message with the condition as it was rewritten.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "compiler/conditions/condition.h"
#include "compiler/words/xpath_edit.h"
#include "context/memory.h"
#include "tests/compiler/exactness/reference.h"
#include "tests/support/message_fixture.h"
#include "yin/augment_condition.h"

namespace exactness {
namespace {

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '<')
      out += "&lt;";
    else if (c == '&')
      out += "&amp;";
    else if (c == '"')
      out += "&quot;";
    else
      out += c;
  }
  return out;
}

// Every kind of node that conditions treat in a way of their own; "probe" holds them.
std::string Nodes(const std::string& conditions, bool probeIsMandatory) {
  const auto leaf = [](const std::string& name, const std::string& type,
                       const std::string& more = "") {
    return "<leaf name=\"" + name + "\"><type name=\"" + type + "\"/>" + more + "</leaf>";
  };
  const std::string identityref = "<type name=\"identityref\"><base name=\"b\"/></type>";
  const std::string mandatory = "<mandatory value=\"true\"/>";
  return leaf("name", "string") + leaf("n", "int32") + leaf("n2", "int32") +
         leaf("mn", "int32", mandatory) +
         "<leaf name=\"d\"><type name=\"decimal64\"><fraction-digits value=\"1\"/></type></leaf>"
         "<leaf name=\"e\"><type name=\"enumeration\"><enum name=\"one\"/><enum "
         "name=\"two\"/></type></leaf>" +
         leaf("flag", "boolean") + leaf("emp", "empty") + "<leaf name=\"t\">" + identityref +
         "</leaf>"
         "<leaf name=\"mt\">" +
         identityref + mandatory + "</leaf>" + leaf("def", "int32", "<default value=\"1\"/>") +
         "<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>"
         "<list name=\"l\"><key value=\"k\"/>" +
         leaf("k", "int32") + leaf("v", "int32") + "<container name=\"lc\">" + leaf("x", "string") +
         "</container></list>"
         "<container name=\"np\">" +
         leaf("x", "string") + "<container name=\"np2\">" + leaf("y", "int32") +
         "</container></container>"
         "<container name=\"p\"><presence value=\"yes\"/>" +
         leaf("z", "string") +
         "</container>"
         "<choice name=\"ch\"><case name=\"a\">" +
         leaf("ca", "string") +
         "</case>"
         "<case name=\"b\">" +
         leaf("cb", "int32") + leaf("cm", "string", mandatory) +
         "</case></choice>"
         "<leaf name=\"ref\"><type name=\"leafref\"><path value=\"../name\"/></type></leaf>"
         "<leaf name=\"npref\"><type name=\"leafref\"><path value=\"../np/x\"/></type></leaf>"
         "<container name=\"box\">" +
         leaf("pre", "string") + "<leaf name=\"probe\"><type name=\"string\"/>" +
         (probeIsMandatory ? mandatory : "") + conditions + "</leaf></container>";
}

// What holds the nodes: an rpc's input, or a notification. There "probe" may be missing,
// since it goes when its condition is false.
enum class Kind : uint8_t { kRequest, kNotification };

std::string Body(const std::string& conditions, Kind kind = Kind::kRequest) {
  const bool request = kind == Kind::kRequest;
  return std::string(
             "<identity name=\"b\"/>"
             "<identity name=\"i1\"><base name=\"b\"/></identity>"
             "<identity name=\"i2\"><base name=\"b\"/></identity>"
             "<identity name=\"i3\"><base name=\"b\"/><base name=\"i1\"/></identity>") +
         (request ? "<rpc name=\"r\"><input>" : "<notification name=\"r\">") +
         Nodes(conditions, request) + (request ? "</input></rpc>" : "</notification>");
}

std::string Statement(const std::string& keyword, const std::string& condition) {
  return "<" + keyword + " condition=\"" + Escaped(condition) + "\"/>";
}

compiler::ConditionResult Rewritten(const Model& model, const std::string& condition,
                                    bool isWhen = false) {
  compiler::Xpath xpath;
  compiler::XpathError error;
  EXPECT_TRUE(ParseXpath(condition, &xpath, &error)) << condition << ": " << error.message;
  compiler::ConditionPlace place;
  place.schema = model.Schema();
  place.words = model.Module();
  place.context = model.Node("r/input/box/probe");
  if (place.context == nullptr) place.context = model.Node("r/box/probe");
  place.isWhenOfContext = isWhen;
  return MakeExact(xpath, place);
}

// The library with the condition on "probe".
class Library {
 public:
  explicit Library(const std::string& condition, const std::string& keyword = "must",
                   Kind kind = Kind::kRequest)
      : ctx_(QM_CTX_Create(0)), kind_(kind) {
    const Model model(Body(Statement(keyword, condition), kind));
    EXPECT_EQ(QM_CTX_LoadMemory(ctx_, model.Yin().c_str()), 0U) << model.Yin();
  }
  ~Library() { QM_CTX_Delete(ctx_); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // "1" and "0", or how the message fails for another reason.
  std::string Answer(const std::string& message) const {
    if (kind_ == Kind::kNotification) return AnswerOfNotification(message);
    const std::string verdict = message_fixture::ValidateRpc(ctx_, message);
    if (verdict == "valid") return "1";
    const bool isFalse =
        verdict.find("must-violation") != std::string::npos ||
        verdict.find("probe is not satisfied when condition.") != std::string::npos;
    return isFalse ? "0" : verdict;
  }

 private:
  // Where the condition is false, the node is taken out.
  std::string AnswerOfNotification(const std::string& message) const {
    const std::string text = message_fixture::ValidateNotif(ctx_, message);
    if (text.find("<box") == std::string::npos) return text;
    return text.find("<probe") != std::string::npos ? "1" : "0";
  }

  QmCtx* ctx_;
  Kind kind_;
};

// The first message on which the two differ, or "".
std::string Difference(const Model& model, const Library& library, const std::string& original,
                       const std::string& rewritten, unsigned messages, unsigned seed) {
  std::mt19937 random(seed);
  for (unsigned i = 0; i < messages; ++i) {
    const std::string message = DrawMessage(model, model.Node("r"), &random);
    if (message.find("<probe") == std::string::npos) continue;
    const std::string wanted = std::to_string(Answer(model, message, "probe", original));
    const std::string got = library.Answer(message);
    const int again = Answer(model, message, "probe", rewritten);
    if (got != wanted || std::to_string(again) != wanted) {
      return original + "\n -> " + rewritten + "\n wanted " + wanted + ", the library " + got +
             ", XPath of the rewritten " + std::to_string(again) + "\n" + message;
    }
  }
  return "";
}

struct Row {
  const char* original;
  const char* rewritten;
};

constexpr Row kExact[] = {
    // as they stand
    {"../../n", "../../n"},
    {"(../../n)", "(../../n)"},
    {"not(../../name) and ../../mn > 0", "not(../../name) and ../../mn > 0"},
    {"../../n = 1 or ../../e = 'one'", "../../n = 1 or ../../e = 'one'"},
    {"../../n > ../../n2", "../../n > ../../n2"},
    {"../../n >= 'x'", "../../n >= 'x'"},
    {"../../l", "../../l"},
    {"../../ll and ../../l/k", "../../ll and ../../l/k"},
    {"/r/n = 1", "/r/n = 1"},
    {". = 'a' or . != 'b'", ". = 'a' or . != 'b'"},
    {"../../def = 1", "../../def = 1"},
    {"derived-from-or-self(../../mt, 'i1')", "derived-from-or-self(../../mt, 'i1')"},
    {"../../mt != 'm:i1'", "../../mt != 'm:i1'"},
    {"1 = 1", "1 = 1"},
    {"../../n != 1 and ../../n", "../../n != 1 and ../../n"},
    {"not(../../n) or ../../n != 1", "not(../../n) or ../../n != 1"},
    {"(not((../../name))) or (../../name = '')", "(not((../../name))) or (../../name = '')"},
    {"(../../n and ../../e) and ../../n != 1", "(../../n and ../../e) and ../../n != 1"},
    {"not(../../n and ../../e) or ../../n != 1", "not(../../n and ../../e) or ../../n != 1"},
    {"(../../np[x = 'a']/np2/y) and ../../np/x != 'a'",
     "(../../np/x = 'a' and ../../np/np2/y) and ../../np/x and ../../np/x != 'a'"},
    // current() and "."
    {"current() = 'a'", ". = 'a'"},
    {"current()/../../n = 1", "../../n = 1"},
    {"not(current()/../pre)and(current()/../../n)", "not(../pre)and ../../n"},
    {"./../../n", "./../../n"},
    {"self::node()/parent::node()/pre", "../pre"},
    {"(../..)/n", "../../n"},
    // count() and boolean()
    {"count(../../n) > 0", "../../n"},
    {"count(../../ll) >= 1 or ../../n", "../../ll or ../../n"},
    {"count(../../l) = 0", "not(../../l)"},
    {"0 < count(../../l)", "../../l"},
    {"not(count(../../l) != 0)", "not(../../l)"},
    {"count(../../n) = 1", "../../n"},
    {"count(../../n) <= 1", "1 = 1"},
    {"count(../../n) > 1", "1 = 0"},
    {"count(../../ll) < 0.5", "not(../../ll)"},
    {"count(../../ll)", "../../ll"},
    {"boolean(../../n)", "../../n"},
    {"not(boolean(../../n)) and ../../name", "not(../../n) and ../../name"},
    {"boolean(../../n or ../../n2) and ../../e", "(../../n or ../../n2) and ../../e"},
    // true() and false()
    {"true()", "1 = 1"},
    {"../../n and true() or false()", "../../n and 1 = 1 or 1 = 0"},
    {"../../name = true()", "not(not(../../name))"},
    {"boolean(../../name) = false()", "not(../../name)"},
    {"not(../../name) = (../../n = 1)", "not(../../name) = (../../n = 1)"},
    {"(../../n = 1) != ../../name", "(../../n = 1) != not(not(../../name))"},
    {"not(../../n) = true()", "not(../../n)"},
    // missing nodes
    {"../../n != 1", "../../n and ../../n != 1"},
    {"../../name != 'a' or ../../n", "../../name and ../../name != 'a' or ../../n"},
    {"not(../../name != 'a')", "not(../../name and ../../name != 'a')"},
    {"../../name = ''", "../../name and ../../name = ''"},
    {"../../name != ''", "../../name != ''"},
    {"../../emp = ''", "../../emp and ../../emp = ''"},
    {"'a' != ../../name", "../../name and 'a' != ../../name"},
    {"../../n = ../../n2", "../../n and ../../n2 and ../../n = ../../n2"},
    {"../../n = ../../mn", "../../n = ../../mn"},
    {"../../n != ../../mn", "../../n and ../../n != ../../mn"},
    {"../../name = .", "../../name and ../../name = ."},
    {"../../def != 1", "../../def != 1"},
    {"../../cb != 1", "../../cb and ../../cb != 1"},
    {"../../t = 'i1'", "../../t = 'm:i1'"},
    {"../../t != 'i1'", "../../t and ../../t != 'm:i1'"},
    // numbers
    {"../../n = -1", "../../n >= '-1' and ../../n <= '-1'"},
    {"../../n != -1", "../../n and not(../../n >= '-1' and ../../n <= '-1')"},
    {"../../n > -1", "../../n > '-1'"},
    {"-1 < ../../d", "'-1' < ../../d"},
    {"../../d = -1", "../../d >= '-1' and ../../d <= '-1'"},
    {"../../n < 2 * 5 - 1", "../../n < 9"},
    {"../../n = 10 div 5", "../../n = 2"},
    {"1 + 1 = 2", "1 = 1"},
    {"position() = last()", "1 = 1"},
    // texts
    {"string-length(../../name) > 0", "../../name != ''"},
    {"string-length(../../name) = 0", "not(../../name != '')"},
    {"string(../../name) = 'a'", "../../name = 'a'"},
    {"string(../../name) = ''", "not(../../name) or ../../name = ''"},
    {"string(../../name) != 'a'", "not(../../name) or ../../name != 'a'"},
    {"string(../../name)", "../../name != ''"},
    // unions
    {"../../n | ../../name", "../../n or ../../name"},
    {"not(../../n | ../../name)", "not(../../n or ../../name)"},
    {"(../../n | ../../n2) = 1", "../../n = 1 or ../../n2 = 1"},
    {"(../../n | ../../n2) != 1", "../../n and ../../n != 1 or ../../n2 and ../../n2 != 1"},
    // containers without presence
    {"../../np", "../.."},
    {"../../np/np2", "../.."},
    {"../../np/../n", "../../n"},
    {"not(../../np/np2/y)", "not(../../np/np2/y)"},
    {"../../p", "../../p"},
    {"count(../../np) = 1", "../.."},
    // predicates on what occurs once
    {"../../np[x = 'a']/np2/y = 1", "../../np/x = 'a' and ../../np/np2/y = 1"},
    {"../../name[. = 'a']", "../../name = 'a' and ../../name"},
    {"../../np[x = current()]", "../../np/x and ../../np/x = ."},
    {"current()/parent::node()[pre = 'a']/../name != 'a'",
     "../pre = 'a' and ../../name and ../../name != 'a'"},
    {"../../n[1] = 1", "../../n = 1"},
    {"../../p[not(z)]", "not(../../p/z) and ../../p"},
    // leafrefs
    {"deref(../../ref)", "../../ref and ../../name"},
    {"deref(../../npref)/../np2/y = 1", "../../npref and ../../np/np2/y = 1"},
    {"deref(../../ref)/../n != 1", "../../ref and ../../n and ../../n != 1"},
};

TEST(MakeExact, HasTheAnswerOfXpathInTheLibrary) {
  const Model model(Body(""));
  for (const Row& row : kExact) {
    SCOPED_TRACE(row.original);
    const compiler::ConditionResult result = Rewritten(model, row.original);
    for (const compiler::ConditionRemark& remark : result.remarks) ADD_FAILURE() << remark.message;
    EXPECT_EQ(result.text, row.rewritten);
    EXPECT_EQ(Difference(model, Library(result.text), row.original, result.text, 150, 1), "");
    EXPECT_EQ(Rewritten(model, result.text).text, result.text) << "rewritten again";
  }
}

// The messages tell a condition that is not rewritten from one that is: a rewriting that
// were left out or wrong would be seen.
TEST(MakeExact, EachRewritingIsSeenInSomeMessage) {
  const Model model(Body(""));
  std::vector<std::string> unseen;
  for (const Row& row : kExact) {
    if (std::string(row.original) == row.rewritten) continue;
    const Library library(row.original);
    if (Difference(model, library, row.original, row.original, 150, 1).empty())
      unseen.emplace_back(row.original);
  }
  // Of what occurs once the library takes the first, with or without the predicate.
  EXPECT_THAT(unseen, testing::ElementsAre("../../n[1] = 1"));
}

// A when that does not look at its own node.
// What a when says of its own node it says of one without value and children.
TEST(MakeExact, LeavesAWhenThatLooksAtItsOwnNode) {
  const Model model(Body(""));
  for (const char* text : {". = 'a'", "../probe != 'a'"}) {
    const compiler::ConditionResult result = Rewritten(model, text, true);
    EXPECT_EQ(result.text, text);
    EXPECT_EQ(result.remarks.size(), 1U);
  }
}

TEST(MakeExact, HoldsForWhenAsForMust) {
  const Model model(Body(""));
  unsigned exact = 0;
  for (const Row& row : kExact) {
    SCOPED_TRACE(row.original);
    const compiler::ConditionResult result = Rewritten(model, row.original, true);
    if (!result.remarks.empty()) continue;
    ++exact;
    const Library library(result.text, "when");
    EXPECT_EQ(Difference(model, library, row.original, result.text, 30, 3), "");
  }
  EXPECT_GT(exact, std::size(kExact) / 2);
}

// The library adds no defaults there.
TEST(MakeExact, HoldsInNotifications) {
  const Model model(Body("", Kind::kNotification));
  unsigned exact = 0;
  for (const Row& row : kExact) {
    SCOPED_TRACE(row.original);
    const compiler::ConditionResult result = Rewritten(model, row.original);
    if (!result.remarks.empty()) continue;
    ++exact;
    const Library library(result.text, "must", Kind::kNotification);
    EXPECT_EQ(Difference(model, library, row.original, result.text, 60, 4), "");
  }
  EXPECT_GT(exact, std::size(kExact) / 2);
  const compiler::ConditionResult result = Rewritten(model, "../../def = 1");
  ASSERT_EQ(result.remarks.size(), 1U);
  EXPECT_EQ(result.remarks[0].message,
            "a default of \"../../def = 1\" that is not written counts as missing");
}

struct Unexact {
  const char* original;
  compiler::ConditionIssue issue;
  const char* message;
};

constexpr Unexact kUnexact[] = {
    {"../../l[k = 1]/v", compiler::ConditionIssue::kPredicate,
     "the library passes over \"[k = 1]\" in \"../../l[k = 1]/v\" and takes the first entry"},
    {"../../l/v", compiler::ConditionIssue::kSeveral,
     "of several entries in \"../../l/v\" the library looks at the first only"},
    {"../../ll = 'a'", compiler::ConditionIssue::kSeveral,
     "of several entries in \"../../ll = 'a'\" the library looks at the first only"},
    {"../../../x", compiler::ConditionIssue::kOutside,
     "\"../../../x\" leads out of the message, where the library finds nothing"},
    {"/m:config", compiler::ConditionIssue::kOutside,
     "\"/m:config\" leads out of the message, where the library finds nothing"},
    {"count(../../ll) > 1", compiler::ConditionIssue::kFails,
     "the library evaluates no \"count(../../ll) > 1\""},
    {"contains(../../name, 'a')", compiler::ConditionIssue::kFails,
     "the library has no function \"contains\""},
    {"../../n + 1 = 2", compiler::ConditionIssue::kFails,
     "the library evaluates no \"../../n + 1\""},
    {"derived-from(../../t, 'b')", compiler::ConditionIssue::kFails,
     "where \"../../t\" is missing the library refuses the request"},
    {"derived-from(../../n, 'b')", compiler::ConditionIssue::kFails,
     "where \"../../n\" is missing the library refuses the request"},
    {"derived-from(../../mn, 'b')", compiler::ConditionIssue::kFails,
     "\"../../mn\" is no identityref: the library refuses the request"},
    {"//n", compiler::ConditionIssue::kFails,
     "the library evaluates no path that begins with \"//\""},
    {"../..//y", compiler::ConditionIssue::kOther, "the library takes \"//\" for \"/\""},
    {"../../*", compiler::ConditionIssue::kOther,
     "the library takes \"*\" for a name, which no node has"},
    {"ancestor::node()", compiler::ConditionIssue::kFails,
     "the library knows no step \"ancestor::node()\""},
    {"../../name > 1", compiler::ConditionIssue::kOther,
     "texts such as \"+1\" and \"1e3\" in \"../../name > 1\" are numbers for the library"},
    {"../../np = 'a'", compiler::ConditionIssue::kOther,
     "\"../../np = 'a'\" compares what is no leaf: the library sees no text there"},
};

TEST(MakeExact, LeavesWhatHasNoExactFormAndTellsWhy) {
  const Model model(Body(""));
  for (const Unexact& row : kUnexact) {
    SCOPED_TRACE(row.original);
    const compiler::ConditionResult result = Rewritten(model, row.original);
    EXPECT_EQ(result.text, row.original);
    ASSERT_EQ(result.remarks.size(), 1U);
    EXPECT_EQ(result.remarks[0].issue, row.issue);
    EXPECT_EQ(result.remarks[0].message, row.message);
  }
}

// What is said to fail does: some message that is refused for no other reason.
TEST(MakeExact, WhatIsSaidToFailFailsInTheLibrary) {
  const Model model(Body(""));
  for (const Unexact& row : kUnexact) {
    const bool fails = row.issue == compiler::ConditionIssue::kFails;
    SCOPED_TRACE(row.original);
    const Library library(row.original);
    std::mt19937 random(2);
    unsigned failures = 0;
    for (unsigned i = 0; i < 100; ++i) {
      const std::string answer = library.Answer(DrawMessage(model, model.Node("r"), &random));
      if (answer != "0" && answer != "1") {
        ++failures;
        EXPECT_NE(answer.find("Failed to check must condition of probe."), std::string::npos)
            << answer;
      }
    }
    EXPECT_EQ(failures != 0, fails);
  }
}

// Expressions of all that the rewriting knows, in any combination.
class Grammar {
 public:
  explicit Grammar(std::mt19937* random) : random_(random) {}

  std::string Boolean(unsigned depth) {
    const auto kind = static_cast<unsigned>((*random_)() % (depth == 0 ? 9 : 16));
    switch (kind) {
      case 0:
      case 1:
        return Path();
      case 2:
        return "boolean(" + Path() + ")";
      case 3:
        return "count(" + Path() + ") " + Operator() + " " + Pick({"0", "1", "0.5", "2"});
      case 4:
        return Pick({"true()", "false()", "1 = 1"});
      case 5:
        return Pick({"derived-from(../../mt, 'i1')", "derived-from-or-self(../../mt, \"b\")",
                     "string-length(../../name) > 0", "string(../../name) != 'a'",
                     "string(../pre) = ''", "deref(../../ref)/../n != 1"});
      case 6:
        return Leaf() + " " + Pick({"=", "!="}) + " " + Literal();
      case 7:
        return Number() + " " + Operator() + " " + Pick({"1", "-1", "0", "2 - 1", Number()});
      case 8:
        return Leaf() + " " + Pick({"=", "!="}) + " " + Leaf();
      case 9:
      case 10:
        return Boolean(depth - 1) + " and " + Boolean(depth - 1);
      case 11:
      case 12:
        return Boolean(depth - 1) + " or " + Boolean(depth - 1);
      case 13:
        return "not(" + Boolean(depth - 1) + ")";
      case 14:
        return "(" + Boolean(depth - 1) + ")" + Pick({" = ", " != "}) + "(" + Boolean(depth - 1) +
               ")";
      default:
        return "(" + Boolean(depth - 1) + ")";
    }
  }

 private:
  std::string Pick(const std::vector<std::string>& all) { return all[(*random_)() % all.size()]; }
  std::string Operator() { return Pick({"=", "!=", "<", "<=", ">", ">="}); }
  std::string Literal() { return Pick({"'a'", "''", "'one'", "'true'", "'1'"}); }
  std::string Number() {
    return Pick(
        {"../../n", "../../mn", "../../d", "current()/../../def", "../../np/np2/y", "../../cb"});
  }
  std::string Leaf() {
    return Pick({"../../name", "../pre", ".", "current()", "../../e", "../../emp", "../../n",
                 "../../np/x", "../../flag", "../../p/z", "../../np[x = 'a']/x",
                 "(../../name | ../pre)"});
  }
  std::string Path() {
    return Pick({"../../n",
                 "../../l",
                 "../../ll",
                 "../../np",
                 "../../np/np2",
                 "../../p",
                 "../../p/z",
                 "../../l/k",
                 "../../l/lc",
                 "../../np/../ca",
                 "../../p/..",
                 "../../l/../n",
                 ".",
                 "..",
                 "current()/..",
                 "../../np[np2/y = 1]/x",
                 "../../p[z]",
                 "(../../n | ../pre)",
                 "/r/np/x",
                 "../../cm"});
  }

  std::mt19937* random_;
};

TEST(MakeExact, HasTheAnswerOfXpathForDrawnConditions) {
  const Model model(Body(""));
  std::mt19937 random(7);
  unsigned exact = 0;
  for (unsigned i = 0; i < 700; ++i) {
    const std::string condition = Grammar(&random).Boolean(i % 4);
    const compiler::ConditionResult result = Rewritten(model, condition);
    if (!result.remarks.empty()) continue;
    ++exact;
    ASSERT_EQ(Difference(model, Library(result.text), condition, result.text, 25, i), "");
    ASSERT_EQ(Rewritten(model, result.text).text, result.text) << "rewritten again: " << condition;
  }
  EXPECT_GT(exact, 300U);
}

// Around an action stand the entries that it lies in, with their keys and nothing else.
TEST(MakeExact, KnowsWhatStandsAroundAnAction) {
  const auto body = [](const std::string& must) {
    return "<container name=\"top\"><leaf name=\"other\"><type name=\"string\"/></leaf>"
           "<list name=\"e\"><key value=\"k\"/><leaf name=\"k\"><type name=\"int32\"/></leaf>"
           "<leaf name=\"v\"><type name=\"int32\"/></leaf>"
           "<action name=\"act\"><input><leaf name=\"probe\"><type name=\"int32\"/>" +
           must + "</leaf></input></action></list></container>";
  };
  const Model model(body(""));
  const compiler::ConditionPlace place = {model.Schema(), model.Node("top/e/act/input/probe"),
                                          model.Module(), false};
  const auto rewritten = [&](const char* text) {
    compiler::Xpath xpath;
    compiler::XpathError error;
    EXPECT_TRUE(ParseXpath(text, &xpath, &error));
    return MakeExact(xpath, place);
  };
  const compiler::ConditionResult key = rewritten("current() != ../../k");
  EXPECT_EQ(key.text, ". != ../../k");
  EXPECT_TRUE(key.remarks.empty());
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_CTX_LoadMemory(ctx, Model(body(Statement("must", key.text))).Yin().c_str()), 0U);
  for (const char* probe : {"1", "2"}) {
    const std::string message = "<top xmlns=\"urn:m\"><e><k>1</k><act><probe>" +
                                std::string(probe) + "</probe></act></e></top>";
    const bool valid = message_fixture::ValidateRpc(ctx, message) == "valid";
    EXPECT_EQ(valid ? 1 : 0, Answer(model, message, "probe", "current() != ../../k"));
  }
  QM_CTX_Delete(ctx);
  for (const char* text : {"../../v = 1", "../../../other", "/m:top/m:other", "../../../e"}) {
    SCOPED_TRACE(text);
    const compiler::ConditionResult outside = rewritten(text);
    EXPECT_EQ(outside.text, text);
    ASSERT_EQ(outside.remarks.size(), 1U);
    EXPECT_EQ(outside.remarks[0].issue, compiler::ConditionIssue::kOutside);
  }
}

// What the compiler thinks that the library makes of an augment's condition is what it makes.
TEST(LibraryShiftOneDown, IsWhatTheLibraryDoes) {
  std::mt19937 random(5);
  for (unsigned i = 0; i < 2000; ++i) {
    const std::string condition = Grammar(&random).Boolean(i % 4);
    char* made = QMS_NODE_GetParentCond(condition.c_str(), nullptr);
    const std::optional<std::string> expected = compiler::LibraryShiftOneDown(condition);
    ASSERT_EQ(made != nullptr, expected.has_value()) << condition;
    if (made != nullptr) {
      EXPECT_EQ(*expected, made);
      g_qmMemFreeFunc(made);
    }
  }
}

}  // namespace
}  // namespace exactness
