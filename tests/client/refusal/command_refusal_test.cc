// SPDX-License-Identifier: BSD-3-Clause
// What every command does, with every option, when memory is refused to the library, to
// libxml2 or to itself: it says so, and no call ends with another answer than it would give
// otherwise.
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "tests/client/refusal/client_call.h"

namespace {

constexpr char kModel[] = R"(module a {
  yang-version 1.1; namespace urn:a; prefix a;
  import b { prefix b; }
  organization "those who test"; description "A model.";
  revision 2026-01-02;
  feature f; feature unused;
  extension mark { argument text; }
  identity base-of-all; identity one { base base-of-all; }
  typedef t { type int8 { range "1..5 | 7"; } }
  container c {
    description "Two
      lines.";
    a:mark "outer" { a:mark "inner"; }
    leaf k { type t; units metres; default 3; }
    list l { key "id other"; ordered-by user;
      leaf id { type string { length 1..40; pattern "[a-z]+"; } }
      leaf other { type leafref { path "../../k"; } } }
    leaf i { type identityref { base base-of-all; } }
    leaf u { if-feature f; when "../k > 2";
      type union { type t; type b:flags; type enumeration { enum on; enum off { value 7; } } }
      must "../k" { error-message "no k"; error-app-tag no-k; } }
    leaf d { type decimal64 { fraction-digits 2; range "-1.5..max"; } status deprecated; }
    choice ch { leaf x { type empty; } case y { leaf z { type binary; } } }
    leaf gone { if-feature unused; type string; }
    action act { input { leaf p { type string; } } }
  }
  rpc r { input { leaf n { type int8; mandatory true; } leaf m { type t; default 2; }
      leaf s { type string { pattern "(a|b){2,3}[^x]*"; } must "../n > 1"; } }
    output { leaf o { type string; } } }
  notification e { leaf n { type int8; } leaf m { type t; default 4; } }
  augment /b:top { leaf more { type string; default some; } }
})";

constexpr char kImported[] = R"(module b {
  namespace urn:b; prefix b;
  typedef flags { type bits { bit red; bit green { position 4; } } }
  container top { leaf first { type int64; } }
})";

// What the library skips, with a file of its own.
constexpr char kPublished[] = R"(<module name="p" xmlns="urn:ietf:params:xml:ns:yang:yin:1">
  <namespace uri="urn:p"/><prefix value="p"/>
  <grouping name="g"><leaf name="a"><type name="string"/></leaf></grouping>
  <container name="c"><uses name="g"/></container></module>)";

struct Command {
  const char* name;
  const char* words;  // "@" stands for the folder of models
  Between between = Between::kNothing;
};

void PrintTo(const Command& command, std::ostream* out) {
  *out << "qmodel " << command.words;
}

// Without --version and --help, which take no memory.
constexpr Command kCommands[] = {
    {"Load", "load -p @ -i -f a:f a b"},
    {"LoadAsJson", "load -p @ -i -d --json -f * a"},
    {"LoadOfAFile", "load -q -p @ @/sub/p.yin"},
    {"LoadWithWhatIsSkipped", "load -p @ p"},
    {"LoadOfNothing", "load -p @ bb"},
    {"LoadWithAnUnknownFeature", "load -p @ -f bb:f b"},
    {"LoadWithoutAFeature", "load -p @ -f b:ff b"},
    {"LoadFromNowhere", "load -p @/nowhere b"},
    {"Unload", "load -p @ -m a -u b -u c b"},
    {"Tree", "tree -p @ -i -f * --depth 2 a b"},
    {"TreeOfWhatIsGone", "tree -p @ -u b b"},
    {"TreeBelowANode", "tree -p @ -i --node /a:c/l a"},
    {"TreeBelowNothing", "tree -p @ -i --node /aa:c/a:cc a"},
    {"TreeOfRfc8340", "tree -p @ -i --rfc8340 -f a:f a b"},
    {"TreeAsAPage", "tree -p @ -i --html - a b"},
    {"TreeInAFile", "tree -p @ -i --html @/../output/page.html b", Between::kEmptyOutput},
    {"Show", "show -p @ -i -m a -f * /a:c /a:c/l /a:c/u /a:c/i"},
    {"ShowOfTypes", "show -p @ -i -m a /a:c/d /a:c/l/id /a:c/l/other /a:c/a:ch/a:y /a:e"},
    {"ShowWithoutImports", "show -p @ -m a /a:c/u"},
    {"ShowOfNothing", "show -p @ -m a /b:top /a:none"},
    {"Value", "value -p @ -i -m a --explain /a:c/u 3 6 red on"},
    {"ValueOfAPattern", "value -p @ -i -m a /a:c/l/id abc 12"},
    {"ValueOfAnIdentity", "value -p @ -i -m a /a:c/i a:one a:two"},
    {"ValueWithoutImports", "value -p @ -m a /a:c/u yellow"},
    {"ValueOfNothing", "value -p @ -m a /a:cc 1"},
    {"Rpc", "rpc -p @ -i -m a -v @/valid.xml"},
    {"RpcThatIsNotValid", "rpc -p @ -i -m a @/invalid.xml @/broken.xml"},
    {"RpcAsJson", "rpc -p @ -m a --json @/valid.xml @/unknown.xml @/none.xml"},
    {"Notif", "notif -p @ -i -m a -v @/event.xml"},
    {"NotifThatIsNotValid", "notif -p @ -m a -v @/wrong-event.xml @/valid.xml @/broken.xml"},
    {"Help", "help tree"},
    {"HelpWithNothing", "help tre"},
    {"NoCommand", "lode a"},
    {"NoOption", "load --rfc8340 a"},
};

constexpr Command kCompiledFirst[] = {
    {"Load", "load -c --no-cache -q -p @/text -f * b"},
    {"Tree", "tree -c -r --no-cache -p @/text --rfc8340 b"},
    {"Show", "show -c -p @/text -m a /a:c/u"},
    {"Value", "value -c -p @/text -m @/text/a.yang /a:c/u red"},
    {"Rpc", "rpc -c -p @/text -m a @/valid.xml"},
    {"Notif", "notif -c -p @/text -m a @/event.xml"},
    {"Nothing", "load -c --no-cache -p @/text aa"},
};

class CommandRefusal : public testing::TestWithParam<std::tuple<Command, bool>> {
 protected:
  CommandRefusal() {
    const std::string models = folder_.In("models");
    for (const char* name : {"sub", "text"}) folder_.MakeFolder("models", name);
    folder_.Write("models", "text/a.yang", kModel);
    folder_.Write("models", "text/b.yang", kImported);
    EXPECT_EQ(0, Call({"compile", "-i", "-p", models + "/text", "-o", models, "a"}).status);
    folder_.Write("models", "p.yin", kPublished);
    folder_.Write("models", "sub/p.yin", kPublished);
    folder_.Write("models", "valid.xml", "<r xmlns='urn:a'><n>2</n><s>abq</s></r>");
    folder_.Write("models", "invalid.xml", "<r xmlns='urn:a'><n>1</n><s>abq</s></r>");
    folder_.Write("models", "broken.xml", "<r xmlns='urn:a'><n>");
    folder_.Write("models", "unknown.xml", "<rr xmlns='urn:b'/>");
    folder_.Write("models", "event.xml", "<e xmlns='urn:a'><n>2</n></e>");
    folder_.Write("models", "wrong-event.xml", "<e xmlns='urn:a'><n>two</n></e>");
  }

  void Refuse() const {
    const auto& [command, forGood] = GetParam();
    std::vector<std::string> words;
    std::istringstream all(command.words);
    for (std::string word; all >> word; words.push_back(word)) {
      if (word[0] == '@') word = folder_.In("models") + word.substr(1);
    }
    RefuseCall(folder_, words, command.between, forGood);
  }

  ClientFolder folder_;
};

std::string NameOf(const testing::TestParamInfo<CommandRefusal::ParamType>& info) {
  const auto& [command, forGood] = info.param;
  return std::string(command.name) + (forGood ? "_ForGood" : "_Once");
}

INSTANTIATE_TEST_SUITE_P(Plain, CommandRefusal,
                         testing::Combine(testing::ValuesIn(kCommands), testing::Bool()), NameOf);
INSTANTIATE_TEST_SUITE_P(CompiledFirst, CommandRefusal,
                         testing::Combine(testing::ValuesIn(kCompiledFirst), testing::Bool()),
                         NameOf);

TEST_P(CommandRefusal, IsSaid) {
  Refuse();
}

}  // namespace
