// SPDX-License-Identifier: BSD-3-Clause
// What the schema says of a node, parts of trees, and answers as JSON.
#include <gtest/gtest.h>

#include "tests/client/model_dir.h"
#include "tests/client/run_client.h"
#include "tests/support/yin_text.h"

namespace {

using yin_text::Module;
using Args = std::vector<std::string>;

const std::string kExamples = QMODEL_EXAMPLES;

ClientRun Qmodel(const Args& args, const std::string& input = "") {
  return RunClient(kExamples, args, input);
}

// ---- show

TEST(ClientShow, SaysTheTypeDownItsTypedefs) {
  const ClientRun run = Qmodel({"show", "-i", "-p", "models", "-m", "router-interfaces",
                                "/router-interfaces:interfaces/interface/mtu"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "leaf /router-interfaces:interfaces/interface/mtu\n"
      "  module                router-interfaces\n"
      "  config                true\n"
      "  type                  router-interfaces:ethernet-mtu\n"
      "    type                router-types:mtu\n"
      "      range             min..9000\n"
      "      type              uint16\n"
      "        range           68..9216\n"
      "  units                 octets\n"
      "  default               1500\n"
      "  when                  derived-from-or-self(../rif:type, 'router-types:ethernet')\n",
      run.out);
  EXPECT_EQ("", run.err);
}

TEST(ClientShow, SaysAllThatStandsInAnOrdinaryLeaf) {
  ModelDir dir;
  dir.Write(
      "m.yin",
      Module("m",
             "<feature name='f'/>"
             "<list name='l'><key value='b a'/><ordered-by value='user'/>"
             "<leaf name='a'><type name='string'><length value='1..8|16'/>"
             "<pattern value='x.*'/></type></leaf>"
             "<leaf name='b'><type name='enumeration'><enum name='on'><value value='3'/></enum>"
             "<enum name='off'/></type></leaf>"
             "<leaf name='c'><if-feature name='f'/><type name='decimal64'>"
             "<fraction-digits value='2'/><range value='-0.05..1'/></type>"
             "<units name='s'/><default value='0.50'/><status value='deprecated'/>"
             "<must condition='../a'><error-message><value>No a.</value></error-message>"
             "<error-app-tag value='no-a'/></must>"
             "<description><text>First.\n      Second.</text></description></leaf>"
             "</list>"));
  const Args call = {"show", "-p", dir.Path(), "-m", "m"};
  const auto show = [&](const char* path) {
    Args args = call;
    args.emplace_back(path);
    return Qmodel(args).out;
  };
  EXPECT_EQ(
      "list /m:l\n"
      "  module                m\n"
      "  config                true\n"
      "  ordered-by            user\n"
      "  keys                  b a\n",
      show("/m:l"));
  EXPECT_EQ(
      "leaf /m:l/a\n"
      "  module                m\n"
      "  config                true\n"
      "  key                   of its list\n"
      "  type                  string\n"
      "    length              1..8 | 16\n"
      "    pattern             x.*\n",
      show("/m:l/a"));
  EXPECT_EQ(
      "leaf /m:l/b\n"
      "  module                m\n"
      "  config                true\n"
      "  key                   of its list\n"
      "  type                  enumeration\n"
      "    enum                on = 3\n"
      "    enum                off = 4\n",
      show("/m:l/b"));
  EXPECT_EQ(
      "leaf /m:l/c\n"
      "  module                m\n"
      "  status                deprecated\n"
      "  config                true\n"
      "  type                  decimal64\n"
      "    fraction-digits     2\n"
      "    range               -0.05..1.00\n"
      "  units                 s\n"
      "  default               0.50\n"
      "  must                  ../a\n"
      "    error-message       No a.\n"
      "    error-app-tag       no-a\n"
      "  if-feature            m:f (off)\n"
      "  enabled               no: a feature is off\n"
      "  description           First.\n"
      "                        Second.\n",
      show("/m:l/c"));
}

TEST(ClientShow, ListsIdentitiesMembersAndTargets) {
  const ClientRun run = Qmodel({"show", "-i", "-p", "models", "-m", "router-system",
                                "/router-system:ping/interface-type",
                                "/router-system:ping/destination", "/router-system:ping/source"});
  EXPECT_EQ(0, run.status);
  for (const char* line : {
           "    base                router-types:interface-type\n"
           "      identity          router-types:ethernet\n",
           "    type                union\n"
           "      member            router-types:ipv4-address\n"
           "        type            string\n",
           "      path              /router-interfaces:interfaces/interface/name\n"
           "    target              /router-interfaces:interfaces/interface/name\n",
       }) {
    EXPECT_NE(std::string::npos, run.out.find(line)) << line << run.out;
  }
}

TEST(ClientShow, ExtensionsStandInEachOther) {
  ModelDir dir;
  dir.Write(
      "m.yin",
      std::string("<module name='m' xmlns:m='urn:m'") + yin_text::kNamespace +
          "><namespace uri='urn:m'/><prefix value='m'/>"
          "<extension name='e'><argument name='a'/></extension>"
          "<leaf name='x'><m:e a='1'><m:e a='2'/></m:e><type name='string'/></leaf></module>");
  const ClientRun run = Qmodel({"show", "-p", dir.Path(), "-m", "m", "/m:x"});
  EXPECT_EQ(
      "leaf /m:x\n"
      "  module                m\n"
      "  config                true\n"
      "  type                  string\n"
      "  extension             m:e 1\n"
      "    extension           m:e 2\n",
      run.out);
}

TEST(ClientShow, FindsNodesThatAreNoSteps) {
  const Args call = {"show", "-i", "-p", "models", "-m", "router-system"};
  for (const char* path : {"/router-system:install-image/input/source", "/router-system:ping/input",
                           "/router-system:install-image/input/source/file"}) {
    Args args = call;
    args.emplace_back(path);
    const ClientRun run = Qmodel(args);
    EXPECT_EQ(0, run.status) << path;
    EXPECT_NE(std::string::npos, run.out.find(std::string(" ") + path + "\n")) << run.out;
  }
}

TEST(ClientShow, TakesModelsThatAreCompiledFirst) {
  const ClientRun run = Qmodel({"show", "-c", "-i", "-p", "vendor", "-m", "acme-optics",
                                "/acme-optics:ports/port/carrier/frequency"});
  EXPECT_EQ(0, run.status);
  EXPECT_NE(std::string::npos, run.out.find("      range             191.300..196.100\n"));
  EXPECT_NE(std::string::npos,
            run.out.find("  description           The middle of the carrier.\n"));
}

TEST(ClientShow, ShowsControlCharactersAsEscapes) {
  ModelDir dir;
  dir.Write("m.yin", Module("m",
                            "<leaf name='x'><type name='string'/>"
                            "<description><text>a\x7f&#9;b</text></description></leaf>"));
  const ClientRun run = Qmodel({"show", "-p", dir.Path(), "-m", "m", "/m:x"});
  EXPECT_NE(std::string::npos, run.out.find("description           a\\x7f")) << run.out;
}

// ---- parts of trees

TEST(ClientTreeParts, DepthCutsTheLevelsBelow) {
  const Args call = {"tree", "-i", "-p", "models", "router-system"};
  Args cut = call;
  cut.insert(cut.end(), {"--depth", "1"});
  EXPECT_EQ(
      "module: router-system\n+--rw system\nrpcs:\n+---x restart\n+---x install-image\n+---x "
      "ping\n",
      Qmodel(cut).out);
  cut.back() = "9999";
  EXPECT_EQ(Qmodel(call).out, Qmodel(cut).out);
}

TEST(ClientTreeParts, NodeIsPrintedBelowWhatLeadsToIt) {
  const Args call = {
      "tree", "-i", "-p", "models", "router-system", "--node", "/router-system:ping/probe"};
  const std::string above =
      "module: router-system\nrpcs:\n+---x ping\n   +---w input\n      +---w probe\n";
  EXPECT_EQ(above +
                "         +---w count?      uint8 <5>\n"
                "         +---w interval?   decimal64 <1.00>\n"
                "         +---w options?    bits\n",
            Qmodel(call).out);
  Args cut = call;
  cut.insert(cut.end(), {"--depth", "1"});
  EXPECT_EQ(above, Qmodel(cut).out);
}

// ---- JSON

TEST(ClientJson, LoadGivesAnObjectForEachModule) {
  ModelDir dir;
  dir.Write("m.yin", std::string("<module name='m'") + yin_text::kNamespace +
                         "><namespace uri='urn:\"&#92;'/><prefix value='m'/></module>");
  dir.Write("n.yin", std::string("<module name='n'") + yin_text::kNamespace +
                         "><prefix value='n'/></module>");
  const ClientRun run = Qmodel({"load", "--json", "-p", dir.Path(), "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "[\n"
      "  {\"name\": \"m\", \"revision\": null, \"namespace\": \"urn:\\\"\\\\\"}\n"
      "]\n",
      run.out);
  EXPECT_EQ("[\n  {\"name\": \"n\", \"revision\": null, \"namespace\": null}\n]\n",
            Qmodel({"load", "--json", "-p", dir.Path(), "n"}).out);
  EXPECT_EQ("[]\n", Qmodel({"load", "--json", "-p", dir.Path(), "m", "-u", "m"}).out);
}

TEST(ClientJson, RpcGivesAnObjectForEachFile) {
  const ClientRun run =
      Qmodel({"rpc", "--json", "-i", "-p", "models", "-m", "router-system", "messages/restart.xml",
              "messages/restart-bad-delay.xml", "messages/nothing.xml", "-"},
             "no xml");
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("qmodel: messages/nothing.xml: No such file or directory\n", run.err);
  EXPECT_EQ(
      "[\n"
      "  {\"file\": \"messages/restart.xml\", \"valid\": true, \"error\": null},\n"
      "  {\"file\": \"messages/restart-bad-delay.xml\", \"valid\": false, \"error\": "
      "{\"error-type\": \"application\", \"error-tag\": \"bad-element\", "
      "\"error-severity\": \"error\", \"error-path\": \"/router-system:restart/delay\", "
      "\"error-message\": \"delay has invalid value tomorrow.\", "
      "\"error-info\": {\"bad-element\": \"delay\"}}},\n"
      "  {\"file\": \"messages/nothing.xml\", \"valid\": null, \"error\": null},\n"
      "  {\"file\": \"-\", \"valid\": false, \"error\": {\"error-type\": \"application\", "
      "\"error-tag\": \"operation-failed\", \"error-severity\": \"error\", "
      "\"error-path\": \"/\"}}\n"
      "]\n",
      run.out);
}

TEST(ClientJson, TextsStayUtf8AndControlCharactersAreEscaped) {
  const ClientRun run = Qmodel({"rpc", "--json", "-i", "-p", "models", "-m", "router-system", "-"},
                               "<restart xmlns='urn:example:router-system'><delay>\xC3\xA9&#9;\"\\"
                               "</delay></restart>");
  EXPECT_EQ(1, run.status);
  EXPECT_NE(std::string::npos, run.out.find("invalid value \xC3\xA9\\u0009\\\"\\\\.\"")) << run.out;
}

}  // namespace
