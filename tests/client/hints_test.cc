// SPDX-License-Identifier: BSD-3-Clause
// What the program says beside its answers: verdicts, reasons, and what may have been meant.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

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

Args With(Args args, const Args& more) {
  args.insert(args.end(), more.begin(), more.end());
  return args;
}

const Args kRpc = {"rpc", "-i", "-p", "models", "-m", "router-system"};
const Args kNotif = {"notif", "-i", "-p", "models", "-m", "router-alarms"};
constexpr char kUseImports[] = "qmodel: imports not loaded: use -i\n";

// ---- help

// The lines of a command's help below "Examples", lines that end with "\" with the next.
std::vector<std::string> ExamplesOf(const std::string& command) {
  std::istringstream help(Qmodel({"help", command}).out);
  std::vector<std::string> found;
  bool inside = false;
  std::string begun;
  for (std::string line; std::getline(help, line);) {
    if (line.rfind("Examples", 0) == 0) {
      inside = true;
      continue;
    }
    if (inside && line.empty()) break;
    if (!inside) continue;
    begun += line;
    if (begun.ends_with('\\')) {
      begun.pop_back();
      continue;
    }
    found.push_back(begun);
    begun.clear();
  }
  return found;
}

TEST(ClientHelp, ExamplesOfEachCommandRun) {
  const std::string path =
      "PATH='" + std::string(QMODEL_CLIENT) + "'; PATH=${PATH%/*}:/usr/bin:/bin; ";
  for (const char* command :
       {"load", "tree", "rpc", "notif", "value", "show", "compile", "lint", "help"}) {
    const std::vector<std::string> examples = ExamplesOf(command);
    EXPECT_LE(1u, examples.size()) << command;
    for (const std::string& example : examples) {
      SCOPED_TRACE(example);
      EXPECT_NE(std::string::npos, example.find(std::string("qmodel ") + command));
      const ClientRun run = RunProgram("/bin/sh", kExamples, {"-c", path + example});
      EXPECT_EQ(0, run.status) << run.err;
      const bool quiet = example.find(" -q ") != std::string::npos;
      EXPECT_EQ(quiet || std::string(command) == "lint", run.out.empty()) << run.out;
    }
  }
}

TEST(ClientHelp, CommandsOfTheHelpAreThoseWithExamplesHere) {
  const std::string help = Qmodel({"help"}).out;
  const std::regex call("  qmodel ([a-z]+)");
  std::set<std::string> commands;
  for (std::sregex_iterator it(help.begin(), help.end(), call), end; it != end; ++it) {
    commands.insert((*it)[1]);
  }
  for (const std::string& command : commands) EXPECT_NE(0u, ExamplesOf(command).size()) << command;
  EXPECT_LE(9u, commands.size());
}

// A word that named an option alone, before another option began with it, too.
TEST(ClientHelp, BeginningsOfOptionsKeepTheirMeaning) {
  const std::string version = Qmodel({"--version"}).out;
  for (const char* option : {"--v", "--ve", "--ver", "--vers", "-V"}) {
    SCOPED_TRACE(option);
    EXPECT_EQ(version, Qmodel({option}).out);
  }
  const std::string help = Qmodel({"--help"}).out;
  const Args load = {"load", "-c", "-p", "models", "router-types"};
  for (const char* option : {"--n", "--no", "--de", "--r"}) {
    EXPECT_EQ(0, Qmodel(With(load, {option})).status) << option;
  }
  for (const char* option : {"--h", "--he", "-h"}) EXPECT_EQ(help, Qmodel({option}).out) << option;
}

// ---- quiet

TEST(ClientQuiet, PrintsNoAnswerAndKeepsTheStatus) {
  for (const Args& call :
       {Args{"load", "-p", "models", "router-types"}, Args{"tree", "-p", "models", "router-types"},
        With(kRpc, {"messages/restart.xml"}), With(kRpc, {"messages/restart-bad-delay.xml"}),
        With(kNotif, {"messages/alarm-link-down.xml"}),
        With(kNotif, {"messages/alarm-no-severity.xml"}),
        Args{"lint", "-p", "models", "router-types"}}) {
    SCOPED_TRACE(testing::PrintToString(call));
    const ClientRun run = Qmodel(With(call, {"-q"}));
    EXPECT_EQ(Qmodel(call).status, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ClientQuiet, SaysOnlyTheLoadErrorsThatEndACall) {
  ModelDir dir;
  dir.Write("m.yin", Module("m",
                            "<leaf name='x'><type name='string'/>"
                            "<when condition='$x'/></leaf>"));
  EXPECT_NE("", Qmodel({"load", "-p", dir.Path(), "m"}).err);
  EXPECT_EQ("", Qmodel({"load", "-q", "-p", dir.Path(), "m"}).err);
  const ClientRun run = Qmodel({"load", "-q", "-p", dir.Path(), "m", "none"});
  EXPECT_EQ(3, run.status);
  EXPECT_NE(std::string::npos, run.err.find("none: Failed to find"));
}

// ---- verdicts and reasons

TEST(ClientVerdict, NamesTheFileOfEachAnswerOnStandardError) {
  const Args files = {"messages/restart.xml", "messages/restart-bad-delay.xml", "-"};
  const ClientRun plain = Qmodel(With(kRpc, files), "no xml");
  const ClientRun run = Qmodel(With(With(kRpc, {"-v"}), files), "no xml");
  EXPECT_EQ(plain.status, run.status);
  EXPECT_EQ(plain.out, run.out);
  EXPECT_EQ("", plain.err);
  EXPECT_EQ(
      "qmodel: messages/restart.xml: valid\n"
      "qmodel: messages/restart-bad-delay.xml: not valid\n"
      "qmodel: -: not valid\n",
      run.err);
}

TEST(ClientVerdict, StandsBeforeItsAnswerWhenBothAreOneFile) {
  const ClientRun run = RunProgram(
      "/bin/sh", kExamples,
      {"-c",
       std::string("'" QMODEL_CLIENT "'") +
           " rpc -v -i -p models -m router-system messages/ping.xml messages/restart.xml 2>&1"});
  const size_t ping = run.out.find("qmodel: messages/ping.xml: valid\n<?xml");
  const size_t restart = run.out.find("</ping>\nqmodel: messages/restart.xml: valid\n<?xml");
  EXPECT_EQ(0u, ping) << run.out;
  EXPECT_NE(std::string::npos, restart) << run.out;
}

TEST(ClientVerdict, SaysWhyANotificationIsNone) {
  const ClientRun run = Qmodel(
      With(kNotif, {"-v", "messages/alarm-link-down.xml", "messages/alarm-no-severity.xml"}));
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(
      "qmodel: messages/alarm-link-down.xml: valid\n"
      "qmodel: messages/alarm-no-severity.xml: not valid\n"
      "qmodel: messages/alarm-no-severity.xml: not a valid notification\n"
      "qmodel: messages/alarm-no-severity.xml: missing-element at /router-alarms:alarm: "
      "Missing element: severity.\n",
      run.err);
}

TEST(ClientVerdict, SaysThatANotificationIsNoXml) {
  const ClientRun run = Qmodel(With(kNotif, {"-v", "-"}), "no xml");
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.err.find("qmodel: -: not valid\nqmodel: -: not a valid notification\n"
                             "qmodel: -: malformed-message: "))
      << run.err;
}

TEST(ClientValue, ExplainAddsTheTextOfTheCode) {
  const Args call = {
      "value", "-i",   "-p", "models", "-m", "router-system", "/router-system:restart/delay",
      "60",    "86401"};
  EXPECT_EQ("valid\ninvalid 28680\n", Qmodel(call).out);
  const ClientRun run = Qmodel(With(call, {"--explain"}));
  EXPECT_EQ(1, run.status);
  EXPECT_EQ("valid\ninvalid 28680: number unparsable or outside its range\n", run.out);
}

// ---- hints

TEST(ClientHints, NameTheCommandThatWasMeant) {
  EXPECT_EQ("qmodel: unknown command 'laod'; did you mean 'load'?\n", Qmodel({"laod"}).err);
  EXPECT_EQ("qmodel: unknown command 'valu'; did you mean 'value'?\n",
            Qmodel({"help", "valu"}).err);
  EXPECT_EQ("qmodel: unknown command 'frobnicate'; see 'qmodel --help'\n",
            Qmodel({"frobnicate"}).err);
}

TEST(ClientHints, NameTheModuleThatWasMeant) {
  const ClientRun run = Qmodel({"load", "-p", "models", "router-tpyes"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ(
      "router-tpyes: Failed to find \"router-tpyes\" from search directories.\n"
      "qmodel: no module 'router-tpyes'; did you mean 'router-types'?\n",
      run.err);
  EXPECT_EQ(
      "qmodel: no data node '/router-sytem:x'; did you mean 'router-system'?\n",
      Qmodel({"value", "-i", "-p", "models", "-m", "router-system", "/router-sytem:x", "1"}).err);
  const ClientRun compile = Qmodel({"compile", "-p", "vendor", "acme-optic"});
  EXPECT_NE(std::string::npos, compile.err.find("did you mean 'acme-optics'?")) << compile.err;
}

TEST(ClientHints, SayThatAModuleIsTextToBeCompiled) {
  const ClientRun run = Qmodel({"load", "-p", "vendor", "acme-optics"});
  EXPECT_EQ(3, run.status);
  EXPECT_NE(std::string::npos,
            run.err.find("qmodel: 'acme-optics' is YANG text, which is compiled first: use -c\n"));
}

TEST(ClientHints, SayThatAnImportIsNotLoaded) {
  const Args without = {"-p", "models", "-m", "router-system"};
  for (const Args& call : {
           Args{"rpc", "messages/ping.xml"},
           Args{"value", "/router-system:ping/interface-type", "router-types:ethernet"},
           Args{"value", "/router-types:nothing", "1"},
           Args{"load", "-f", "router-types:x", "router-system"},
       }) {
    SCOPED_TRACE(testing::PrintToString(call));
    const ClientRun run = Qmodel(With(call, without));
    EXPECT_NE(std::string::npos, run.err.find(kUseImports)) << run.err;
    EXPECT_EQ(std::string::npos, Qmodel(With(call, With(without, {"-i"}))).err.find(kUseImports));
  }
}

TEST(ClientHints, DoNotBlameImportsForWhatIsSimplyWrong) {
  const Args without = {"-p", "models", "-m", "router-system"};
  EXPECT_EQ("", Qmodel(With({"value", "/router-system:restart/delay", "86401"}, without)).err);
  EXPECT_EQ("", Qmodel(With({"rpc", "messages/restart-bad-delay.xml"}, without)).err);
  EXPECT_EQ("qmodel: no data node '/router-system:nothing'\n",
            Qmodel(With({"value", "/router-system:nothing", "1"}, without)).err);
}

TEST(ClientHints, SayThatAModuleToUnloadIsNotLoaded) {
  const ClientRun run =
      Qmodel({"load", "-p", "models", "-u", "router-type", "-u", "none", "router-types"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("router-types 2026-05-04 urn:example:router-types\n", run.out);
  EXPECT_EQ(
      "qmodel: module 'router-type' is not loaded; did you mean 'router-types'?\n"
      "qmodel: module 'none' is not loaded\n",
      run.err);
}

// ---- features and files

TEST(ClientFeatures, StarEnablesThoseOfAllModules) {
  ModelDir dir;
  const std::string leaf =
      "<feature name='f'/><leaf name='x'><type name='string'/><if-feature name='f'/></leaf>";
  dir.Write("a.yin", Module("a", leaf));
  dir.Write("b.yin", Module("b", leaf));
  dir.Write("c.yin", Module("c", ""));
  const Args call = {"tree", "-p", dir.Path(), "a", "b", "c"};
  const ClientRun each = Qmodel(With(call, {"-f", "a:f", "-f", "b:f"}));
  EXPECT_NE(Qmodel(call).out, each.out);
  const ClientRun all = Qmodel(With(call, {"-f", "*"}));
  EXPECT_EQ(0, all.status);
  EXPECT_EQ(each.out, all.out);
  EXPECT_EQ("", all.err);
}

TEST(ClientFiles, ModuleMayBeNamedByItsFile) {
  const ClientRun run = Qmodel({"load", "-i", "models/router-interfaces.yin"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("router-interfaces 2026-05-04 urn:example:router-interfaces\n", run.out);
  const ClientRun named = Qmodel(
      {"value", "-i", "-m", "models/router-system.yin", "/router-system:restart/delay", "60"});
  EXPECT_EQ("valid\n", named.out);
  const ClientRun unloaded =
      Qmodel({"load", "models/router-types.yin", "-u", "models/router-types.yin"});
  EXPECT_EQ(0, unloaded.status);
  EXPECT_EQ("", unloaded.out);
}

TEST(ClientFiles, FileIsLoadedAlsoWhereTheSearchWouldFindAnother) {
  ModelDir dir;
  const auto model = [](const char* ns) {
    return std::string("<module name='m'") + yin_text::kNamespace + "><namespace uri='" + ns +
           "'/><prefix value='m'/></module>";
  };
  dir.Write("given/m.yin", model("urn:given"));
  dir.Write("m.yin", model("urn:plain"));
  dir.Write("m@2020-01-01.yin", model("urn:old"));
  const auto load = [&](const Args& args) { return RunClient(dir.Path(), args).out; };
  EXPECT_EQ("m - urn:given\n", load({"load", "-p", "given", "m"}));
  EXPECT_EQ("m - urn:plain\n", load({"load", "-p", "given", "./m.yin"}));
  EXPECT_EQ("m - urn:old\n", load({"load", "m@2020-01-01.yin"}));
  EXPECT_EQ("m - urn:plain\n", load({"load", "m.yin"}));
}

TEST(ClientFiles, LoadErrorsNameTheFileThatWasNamed) {
  ModelDir dir;
  dir.Write("m.yin", Module("m", ""));
  dir.Write("old/m@2020-01-01.yin", Module("m",
                                           "<leaf name='x'><type name='string'/>"
                                           "<when condition='$x'/></leaf>"));
  const ClientRun run = RunClient(dir.Path(), {"load", "old/m@2020-01-01.yin"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "m: old/m@2020-01-01.yin: Failed to transfer prefix to module name in statement \"when\".\n",
      run.err);
}

TEST(ClientFiles, NameOfNoFileIsLookedUpAsBefore) {
  const ClientRun run = Qmodel({"load", "-p", "models", "models/nothing.yin"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ(0u, run.err.find("models/nothing.yin: Failed to find \"models/nothing.yin\""))
      << run.err;
}

}  // namespace
