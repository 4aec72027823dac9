// SPDX-License-Identifier: BSD-3-Clause
// Tree diagrams as RFC 8340 has them: section 2 for the lines, 2.6 for the nodes.
#include <gtest/gtest.h>

#include "tests/client/model_dir.h"
#include "tests/client/run_client.h"
#include "tests/support/yin_text.h"

namespace {

using yin_text::Module;
using Args = std::vector<std::string>;

std::string Diagram(const ModelDir& dir, const Args& more) {
  Args args = {"tree", "--rfc8340", "-i", "-p", dir.Path()};
  args.insert(args.end(), more.begin(), more.end());
  const ClientRun run = RunClient("/", args);
  EXPECT_EQ(0, run.status) << run.err;
  EXPECT_EQ("", run.err);
  return run.out;
}

const char kBase[] =
    "<feature name='f'/><feature name='g'/>"
    "<typedef name='t'><type name='string'/></typedef>"
    "<container name='top'>"
    "<list name='entry'><key value='id name'/>"
    "<leaf name='id'><type name='uint8'/></leaf><leaf name='name'><type name='t'/></leaf>"
    "<leaf name='size'><type name='uint8'/><default value='3'/></leaf>"
    "<leaf name='must-be'><type name='t'/><mandatory value='true'/></leaf></list>"
    "<list name='state'><config value='false'/><leaf name='x'><type name='empty'/></leaf></list>"
    "<container name='presence'><presence value='here'/>"
    "<leaf name='off'><if-feature name='f'/><if-feature name='g'/><type name='t'/></leaf>"
    "</container>"
    "<choice name='how'><mandatory value='true'/>"
    "<leaf name='short'><type name='string'/></leaf>"
    "<case name='long'><leaf name='a'><type name='int8'/></leaf>"
    "<leaf-list name='list-of-b'><type name='int8'/></leaf-list></case></choice>"
    "<leaf name='old'><type name='string'/><status value='deprecated'/></leaf>"
    "<leaf name='gone'><type name='string'/><status value='obsolete'/></leaf>"
    "<leaf name='ref'><type name='leafref'><path value='../entry/size'/></type></leaf>"
    "<anyxml name='any'/>"
    "</container>"
    "<rpc name='do'><if-feature name='f'/><input><leaf name='i'><type "
    "name='string'/></leaf></input>"
    "<output><leaf name='o'><type name='string'/></leaf></output></rpc>"
    "<notification name='told'><leaf name='n'><type name='string'/></leaf></notification>";

TEST(ClientRfc8340, DrawsEachKindOfNode) {
  ModelDir dir;
  dir.Write("m.yin", Module("m", kBase));
  EXPECT_EQ(
      "module: m\n"
      "  +--rw top\n"
      "     +--rw entry* [id name]\n"
      "     |  +--rw id         uint8\n"
      "     |  +--rw name       t\n"
      "     |  +--rw size?      uint8\n"
      "     |  +--rw must-be    t\n"
      "     +--ro state* []\n"
      "     |  +--ro x?   empty\n"
      "     +--rw presence!\n"
      "     |  +--rw off?   t {f,g}?\n"
      "     +--rw (how)\n"
      "     |  +--:(short)\n"
      "     |  |  +--rw short?       string\n"
      "     |  +--:(long)\n"
      "     |     +--rw a?           int8\n"
      "     |     +--rw list-of-b*   int8\n"
      "     x--rw old?               string\n"
      "     o--rw gone?              string\n"
      "     +--rw ref?               -> ../entry/size\n"
      "     +--rw any?               <anyxml>\n"
      "\n"
      "  rpcs:\n"
      "    +---x do {f}?\n"
      "       +---w input\n"
      "       |  +---w i?   string\n"
      "       +--ro output\n"
      "          +--ro o?   string\n"
      "\n"
      "  notifications:\n"
      "    +---n told\n"
      "       +--ro n?   string\n",
      Diagram(dir, {"m"}));
}

TEST(ClientRfc8340, NamesOfOtherModulesHaveTheirPrefix) {
  ModelDir dir;
  dir.Write("m.yin", Module("m", kBase));
  dir.Write("other.yin",
            std::string("<module name='other' xmlns:m='urn:m'") + yin_text::kNamespace +
                "><namespace uri='urn:other'/><prefix value='o'/>"
                "<import module='m'><prefix value='m'/></import>"
                "<augment target-node='/m:top/m:entry'>"
                "<leaf name='more'><if-feature name='m:g'/><type name='m:t'/></leaf></augment>"
                "<augment target-node='/m:do/m:input'><leaf name='why'><type name='string'/></leaf>"
                "</augment></module>");
  EXPECT_EQ(
      "module: other\n"
      "\n"
      "  augment /m:top/m:entry:\n"
      "    +--rw more?   m:t {m:g}?\n"
      "  augment /m:do/m:input:\n"
      "    +---w why?   string\n",
      Diagram(dir, {"other"}));
  const std::string base = Diagram(dir, {"-m", "other", "m"});
  EXPECT_NE(std::string::npos, base.find("     |  +--rw o:more?    t {g}?\n")) << base;
  EXPECT_NE(std::string::npos, base.find("       |  +---w o:why?   string\n")) << base;
}

TEST(ClientRfc8340, SwitchingFeaturesOnChangesNothing) {
  ModelDir dir;
  dir.Write("m.yin", Module("m", kBase));
  EXPECT_EQ(Diagram(dir, {"m"}), Diagram(dir, {"m", "-f", "m:*"}));
}

TEST(ClientRfc8340, DepthCountsTheLevelsOfEachSection) {
  ModelDir dir;
  dir.Write("m.yin", Module("m", kBase));
  EXPECT_EQ(
      "module: m\n"
      "  +--rw top\n"
      "\n"
      "  rpcs:\n"
      "    +---x do {f}?\n"
      "\n"
      "  notifications:\n"
      "    +---n told\n",
      Diagram(dir, {"m", "--depth", "1"}));
  const std::string three = Diagram(dir, {"m", "--depth", "3"});
  EXPECT_NE(std::string::npos, three.find("     |  +--:(short)\n     |  +--:(long)\n")) << three;
}

}  // namespace
