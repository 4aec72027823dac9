// SPDX-License-Identifier: BSD-3-Clause
// The program qmodel, end to end: standard output, standard error, exit status.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>

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

bool StartsWith(const std::string& text, const std::string& head) {
  return text.compare(0, head.size(), head) == 0;
}

size_t LineCount(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

// ---- usage

TEST(ClientUsage, WithoutCommandIsWrongUsage) {
  const ClientRun run = Qmodel({});
  EXPECT_EQ(2, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_TRUE(StartsWith(run.err, "qmodel: "));
  EXPECT_EQ(1u, LineCount(run.err));
}

TEST(ClientUsage, WrongUsageGivesStatus2AndOneLineOnStandardErrorOnly) {
  const Args calls[] = {
      {"frobnicate"},
      {"load"},
      {"tree"},
      {"rpc"},
      {"notif"},
      {"value"},
      {"value", "/m:a"},
      {"load", "--nonsense", "router-types"},
      {"load", "-x", "router-types"},
      {"load", "router-types", "-p"},
      {"load", "router-types", "--path"},
      {"load", "-f", "no-colon", "-p", "models", "router-types"},
      {"load", "-f", ":x", "-p", "models", "router-types"},
      {"load", "-f", "router-types:", "-p", "models", "router-types"},
      {"load", "-f", "router-types:nothing", "-p", "models", "router-types"},
      {"load", "-f", "router-system:*", "-p", "models", "router-types"},
      {"load", "-f", "*:*", "-p", "models", "router-types"},
      {"compile", "-f", "*", "-p", "models", "router-types"},
      {"load", "--explain", "-p", "models", "router-types"},
      {"compile", "-q", "-p", "models", "router-types"},
      {"tree", "--depth", "0", "-p", "models", "router-types"},
      {"tree", "--depth", "2x", "-p", "models", "router-types"},
      {"tree", "--depth", "-1", "-p", "models", "router-types"},
      {"tree", "--node", "", "-p", "models", "router-types"},
      {"tree", "--node", "/router-types:x", "-p", "models", "router-types"},
      {"tree", "--rfc8340", "--node", "/router-system:ping", "-p", "models", "router-system"},
      {"tree", "--html", "x", "--depth", "1", "-p", "models", "router-types"},
      {"tree", "--html", "", "-p", "models", "router-types"},
      {"load", "--depth", "1", "-p", "models", "router-types"},
      {"notif", "--json", "-p", "models", "x"},
      {"show", "-p", "models", "-m", "router-types"},
      {"show", "-p", "models", "-m", "router-system", "/router-system:ping", "/router-system:x"},
      {"lint", "-v", "-p", "models", "router-types"},
      {"value", "-p", "models", "-m", "router-types", "/router-types:nothing", "1"},
      {"value", "-p", "models", "-m", "router-types", "relative", "1"},
      {"tree", "-p", "models", "-u", "router-types", "router-types"},
      {"help", "nothing"},
      {"help", "load", "tree"},
      {"nothing", "--help"},
      {"load", "-r", "-p", "models", "router-types"},
      {"load", "-c", "-F", "-p", "models", "router-types"},
      {"load", "-c", "-o", "out", "-p", "models", "router-types"},
      {"compile"},
      {"compile", "-c", "-p", "models", "router-types"},
      {"compile", "-m", "router-types", "-p", "models", "router-types"},
      {"compile", "-p", "models", "-i", "router-types"},
      {"compile", "-p", "models", "router-types", "router-system"},
  };
  for (const Args& call : calls) {
    SCOPED_TRACE(testing::PrintToString(call));
    const ClientRun run = Qmodel(call);
    EXPECT_EQ(2, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_TRUE(StartsWith(run.err, "qmodel: ")) << run.err;
    EXPECT_EQ(1u, LineCount(run.err));
  }
}

TEST(ClientUsage, HelpAndVersionGoToStandardOutput) {
  for (const Args& call :
       {Args{"--help"}, Args{"help"}, Args{"help", "rpc"}, Args{"rpc", "--help"}, Args{"--version"},
        Args{"-h"}, Args{"-V"}, Args{"rpc", "-h"}, Args{"-qh"}}) {
    SCOPED_TRACE(testing::PrintToString(call));
    const ClientRun run = Qmodel(call);
    EXPECT_EQ(0, run.status);
    EXPECT_NE("", run.out);
    EXPECT_EQ("", run.err);
  }
}

std::set<std::string> LongOptions(const std::string& text) {
  std::set<std::string> found;
  const std::regex option("--([a-z][a-z0-9-]*)");
  for (std::sregex_iterator it(text.begin(), text.end(), option), end; it != end; ++it) {
    found.insert((*it)[1]);
  }
  return found;
}

TEST(ClientUsage, HelpAndManPageNameTheSameOptions) {
  std::ifstream page(QMODEL_MAN_PAGE);
  const std::string manual((std::istreambuf_iterator<char>(page)),
                           std::istreambuf_iterator<char>());
  const std::set<std::string> expected = {"path",    "module",       "imports",
                                          "feature", "unload",       "descriptions",
                                          "compile", "recursive",    "features-complete",
                                          "output",  "drop-failing", "convert",
                                          "warn",    "json",         "help",
                                          "version", "no-cache",     "quiet",
                                          "verbose", "explain",      "depth",
                                          "rfc8340", "html",         "node"};
  EXPECT_EQ(expected, LongOptions(Qmodel({"--help"}).out));
  EXPECT_EQ(expected, LongOptions(manual));
}

TEST(ClientUsage, OptionsAndOperandsStandInAnyOrder) {
  const ClientRun run = Qmodel({"load", "router-types", "-p", "models"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("router-types 2026-05-04 urn:example:router-types\n", run.out);
  EXPECT_EQ(run.out, Qmodel({"-p", "models", "load", "--", "router-types"}).out);
}

// ---- loading

TEST(ClientLoad, PrintsNameRevisionNamespaceInOperandOrder) {
  const ClientRun run = Qmodel({"load", "-i", "-p", "models", "router-interfaces", "router-types"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "router-interfaces 2026-05-04 urn:example:router-interfaces\n"
      "router-types 2026-05-04 urn:example:router-types\n",
      run.out);
  EXPECT_EQ("", run.err);
}

TEST(ClientLoad, DashStandsForAMissingField) {
  ModelDir dir;
  dir.Write("m.yin", std::string("<module name='m'") + yin_text::kNamespace +
                         "><prefix value='m'/></module>");
  const ClientRun run = Qmodel({"load", "-p", dir.Path(), "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("m - -\n", run.out);
}

TEST(ClientLoad, CurrentDirectoryIsTheDefaultSearchDirectory) {
  const ClientRun run = RunClient(kExamples + "/models", {"load", "router-types"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("router-types 2026-05-04 urn:example:router-types\n", run.out);
}

TEST(ClientLoad, MissingModuleGivesStatus3AndItsLoadErrorWithoutFile) {
  const ClientRun run = Qmodel({"load", "-p", "models", "no-such-module", "router-types"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("no-such-module: Failed to find \"no-such-module\" from search directories.\n",
            run.err);
}

TEST(ClientLoad, LoadErrorsCarryTheFileAndDoNotAloneFail) {
  ModelDir dir;
  // A condition that cannot be tokenized is kept as written: recorded, not fatal.
  dir.Write("m.yin", Module("m",
                            "<leaf name='x'><type name='string'/>"
                            "<when condition='$x'/></leaf>"));
  const ClientRun run = Qmodel({"load", "-p", dir.Path(), "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("m - urn:m\n", run.out);
  EXPECT_EQ("m: m.yin: Failed to transfer prefix to module name in statement \"when\".\n", run.err);
}

// What a model or a file name holds must not drive the terminal.
TEST(ClientLoad, LoadErrorsShowControlCharactersAsEscapes) {
  ModelDir dir;
  dir.Write("m@\x1b[31m\x7f.yin",
            Module("m",
                   "<leaf name='x'><type name='string'/>"
                   "<config value='a&#10;b&#9;c&#13;\x7f \xc3\xa9'/></leaf>"));
  const ClientRun run = Qmodel({"load", "-p", dir.Path(), "m"});
  EXPECT_EQ(3, run.status);
  EXPECT_TRUE(StartsWith(run.err,
                         "m: m@\\x1b[31m\\x7f.yin: Failed to parse value "
                         "\"a\\x0ab\\x09c\\x0d\\x7f \xc3\xa9\" of statement \"config\".\n"))
      << run.err;
}

TEST(ClientLoad, LoadErrorsShowControlCharactersOfAModuleNameAsEscapes) {
  const ClientRun run = Qmodel({"load", "-p", "models", "no\n\x01such"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("no\\x0a\\x01such: Failed to find \"no\\x0a\\x01such\" from search directories.\n",
            run.err);
}

TEST(ClientLoad, UnusableSearchDirectoryGivesStatus3) {
  const ClientRun run = Qmodel({"load", "-p", "no-such-dir", "router-types"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("qmodel: no-such-dir: not a usable search directory\n", run.err);
}

TEST(ClientLoad, UnloadedOperandHasNoLine) {
  const ClientRun run =
      Qmodel({"load", "-p", "models", "-u", "router-types", "router-types", "router-interfaces"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("router-interfaces 2026-05-04 urn:example:router-interfaces\n", run.out);
}

TEST(ClientLoad, LoadErrorsArePrintedAgainAfterUnloads) {
  ModelDir dir;
  dir.Write("m.yin", Module("m",
                            "<leaf name='x'><type name='string'/>"
                            "<when condition='$x'/></leaf>"));
  dir.Write("n.yin", Module("n", ""));
  const ClientRun run = Qmodel({"load", "-p", dir.Path(), "-u", "n", "m", "n"});
  const std::string line =
      "m: m.yin: Failed to transfer prefix to module name in statement \"when\".\n";
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(line + line, run.err);
}

// ---- tree

TEST(ClientTree, PrintsTheTreesOfAllOperands) {
  const ClientRun run = Qmodel({"tree", "-p", "models", "router-types", "router-alarms"});
  EXPECT_EQ(0, run.status);
  EXPECT_TRUE(StartsWith(run.out, "module: router-types\nmodule: router-alarms\nnotifications:\n"))
      << run.out;
}

TEST(ClientTree, UnloadingADeviatingModuleBringsTheTreeBack) {
  const ClientRun plain = Qmodel({"tree", "-i", "-p", "models", "router-system"});
  const ClientRun lite =
      Qmodel({"tree", "-i", "-p", "models", "-m", "router-lite", "router-system"});
  const ClientRun back = Qmodel(
      {"tree", "-i", "-p", "models", "-m", "router-lite", "-u", "router-lite", "router-system"});
  EXPECT_EQ(0, lite.status);
  EXPECT_NE(plain.out, lite.out);
  EXPECT_NE(std::string::npos, plain.out.find("cpu"));
  EXPECT_EQ(std::string::npos, lite.out.find("cpu"));
  EXPECT_EQ(plain.out, back.out);
}

// ---- rpc

const Args kRpc = {"rpc", "-i", "-p", "models", "-m", "router-system"};

Args With(Args args, const Args& more) {
  args.insert(args.end(), more.begin(), more.end());
  return args;
}

TEST(ClientRpc, ValidRequestIsPrintedWithItsDefaults) {
  const ClientRun run = Qmodel(With(kRpc, {"messages/restart.xml"}));
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<restart xmlns=\"urn:example:router-system\">\n"
      "  <delay>0</delay>\n"
      "  <reason>planned maintenance</reason>\n"
      "  <force>false</force>\n"
      "</restart>\n",
      run.out);
  EXPECT_EQ("", run.err);
}

TEST(ClientRpc, PrintedRequestIsValidAgainAndUnchanged) {
  for (const char* message : {"restart", "ping", "install-image"}) {
    SCOPED_TRACE(message);
    const ClientRun first = Qmodel(With(kRpc, {std::string("messages/") + message + ".xml"}));
    const ClientRun second = Qmodel(With(kRpc, {"-"}), first.out);
    EXPECT_EQ(0, first.status);
    EXPECT_EQ(0, second.status) << second.out;
    EXPECT_EQ(first.out, second.out);
  }
}

TEST(ClientRpc, BadRequestIsAnsweredWithItsErrorRecord) {
  const ClientRun run = Qmodel(With(kRpc, {"messages/restart-bad-delay.xml"}));
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(
      "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n"
      "  <error-type>application</error-type>\n"
      "  <error-tag>bad-element</error-tag>\n"
      "  <error-severity>error</error-severity>\n"
      "  <error-path>/router-system:restart/delay</error-path>\n"
      "  <error-message>delay has invalid value tomorrow.</error-message>\n"
      "  <error-info>\n"
      "    <bad-element>delay</bad-element>\n"
      "  </error-info>\n"
      "</rpc-error>\n",
      run.out);
  EXPECT_EQ("", run.err);
}

TEST(ClientRpc, MustOfTheModelGivesItsAppTagAndMessage) {
  const ClientRun run = Qmodel(With(kRpc, {"messages/install-image-unverified.xml"}));
  EXPECT_EQ(1, run.status);
  EXPECT_NE(std::string::npos, run.out.find("<error-tag>operation-failed</error-tag>"));
  EXPECT_NE(std::string::npos, run.out.find("<error-app-tag>unverified-image</error-app-tag>"));
  EXPECT_NE(std::string::npos,
            run.out.find("<error-message>An image that is not verified cannot be activated."));
}

TEST(ClientRpc, ActionIsValidatedInItsDataTree) {
  const ClientRun run = Qmodel(
      {"rpc", "-i", "-p", "models", "-m", "router-interfaces", "messages/reset-counters.xml"});
  EXPECT_EQ(0, run.status);
  EXPECT_NE(std::string::npos, run.out.find("<delay>0</delay>"));
}

constexpr char kGenericRecord[] =
    "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n"
    "  <error-type>application</error-type>\n"
    "  <error-tag>operation-failed</error-tag>\n"
    "  <error-severity>error</error-severity>\n"
    "  <error-path>/</error-path>\n"
    "</rpc-error>\n";

TEST(ClientRpc, TextThatIsNoXmlGivesTheGenericRecordAndStatus1) {
  for (const char* text :
       {"", "no xml", "<restart xmlns='urn:example:router-system'>", "<a></b>"}) {
    SCOPED_TRACE(text);
    const ClientRun run = Qmodel(With(kRpc, {"-"}), text);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(kGenericRecord, run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ClientRpc, AllFilesAreHandledAndTheGreatestStatusIsGiven) {
  const ClientRun run = Qmodel(With(
      kRpc, {"messages/restart-no-reason.xml", "messages/nothing.xml", "messages/restart.xml"}));
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("qmodel: messages/nothing.xml: No such file or directory\n", run.err);
  EXPECT_NE(std::string::npos, run.out.find("Missing element: reason."));
  EXPECT_NE(std::string::npos, run.out.find("<force>false</force>"));
}

TEST(ClientRpc, DirectoryAsFileGivesStatus3) {
  const ClientRun run = Qmodel(With(kRpc, {"messages"}));
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("qmodel: messages: Is a directory\n", run.err);
}

// The library reads regular files only; what the client is given may be anything.
TEST(ClientRpc, FileMayBeAPipe) {
  ModelDir dir;
  const std::string fifo = dir.Path() + "/fifo";
  const std::string call = "'" QMODEL_CLIENT "' rpc -i -p models -m router-system ";
  const ClientRun plain = Qmodel(With(kRpc, {"messages/restart.xml"}));
  for (const std::string& line : {"cat messages/restart.xml | " + call + "/dev/stdin",
                                  "mkfifo '" + fifo + "' && { cat messages/restart.xml >'" + fifo +
                                      "' & } && " + call + "'" + fifo + "'"}) {
    SCOPED_TRACE(line);
    const ClientRun run = RunProgram("/bin/sh", kExamples, {"-c", line});
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(plain.out, run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ClientRpc, FeatureSwitchesNodesOn) {
  // Defaults below a node whose feature is off are not added; here the value of a
  // node is only looked at once its module is known, so both calls are valid.
  const Args call = With(kRpc, {"-f", "router-system:*", "messages/install-image.xml"});
  EXPECT_EQ(0, Qmodel(call).status);
}

TEST(ClientRpc, CutInvalidValueIsStillPrintedAsWellFormedUtf8) {
  // 126 two-byte characters and one more byte in front: the cut at 253 bytes splits one.
  std::string value;
  for (int i = 0; i < 200; ++i) value += "\xC3\xA9";
  const ClientRun run =
      Qmodel(With(kRpc, {"-"}),
             "<restart xmlns='urn:example:router-system'><delay>" + value + "</delay></restart>");
  EXPECT_EQ(1, run.status);
  EXPECT_NE(std::string::npos, run.out.find("\xC3\xA9\xEF\xBF\xBD..."));
  EXPECT_NE(std::string::npos, run.out.find("</rpc-error>\n"));
}

TEST(ClientRpc, FileWithANulByteGivesTheGenericRecordAndStatus1) {
  const std::string request =
      "<restart xmlns='urn:example:router-system'><reason>x</reason></restart>";
  ASSERT_EQ(0, Qmodel(With(kRpc, {"-"}), request).status);
  using namespace std::string_literals;
  for (const std::string& text : {request + "\0"s, request + "\0junk"s, "\0"s + request,
                                  request + "\n\0\n"s, request + "\0</x>"s}) {
    SCOPED_TRACE(testing::PrintToString(text));
    const ClientRun run = Qmodel(With(kRpc, {"-"}), text);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(kGenericRecord, run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ClientRpc, FileWithADocumentTypeGivesTheGenericRecordAndStatus1) {
  for (const char* declaration :
       {"<!DOCTYPE restart>", "<!DOCTYPE restart SYSTEM 'messages/restart.xml'>",
        "<!DOCTYPE restart [<!ENTITY x 'y'>]>",
        "<!DOCTYPE restart [<!ATTLIST restart z CDATA #IMPLIED>]>"}) {
    SCOPED_TRACE(declaration);
    const ClientRun run =
        Qmodel(With(kRpc, {"-"}),
               std::string(declaration) +
                   "<restart xmlns='urn:example:router-system'><reason>x</reason></restart>");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(kGenericRecord, run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ClientRpc, EntityThatPointsAtAFileIsNotFetched) {
  const ClientRun run =
      Qmodel(With(kRpc, {"-"}),
             "<!DOCTYPE restart [<!ENTITY x SYSTEM 'messages/restart.xml'>]>"
             "<restart xmlns='urn:example:router-system'><reason>&x;</reason></restart>");
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(kGenericRecord, run.out);
}

// ---- notif

const Args kNotif = {"notif", "-i", "-p", "models", "-m", "router-alarms"};

TEST(ClientNotif, ValidNotificationIsPrinted) {
  const ClientRun run = Qmodel(With(kNotif, {"messages/alarm-link-down.xml"}));
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<alarm xmlns=\"urn:example:router-alarms\">\n"
      "  <kind>link-down</kind>\n"
      "  <severity>major</severity>\n"
      "  <interface>ge-0/0/1</interface>\n"
      "</alarm>\n",
      run.out);
}

TEST(ClientNotif, InvalidOnesAreNamedOnStandardError) {
  const ClientRun run = Qmodel(With(kNotif, {"messages/alarm-no-severity.xml", "-"}), "no xml");
  EXPECT_EQ(1, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ(
      "qmodel: messages/alarm-no-severity.xml: not a valid notification\n"
      "qmodel: -: not a valid notification\n",
      run.err);
}

TEST(ClientNotif, FilesWithANulByteOrADocumentTypeAreNotValid) {
  const std::string alarm =
      "<alarm xmlns='urn:example:router-alarms'><kind>link-down</kind>"
      "<severity>major</severity></alarm>";
  EXPECT_EQ(0, Qmodel(With(kNotif, {"-"}), alarm).status);
  for (const std::string& text : {alarm + std::string(1, '\0'), "<!DOCTYPE alarm>" + alarm,
                                  "<!DOCTYPE alarm [<!ENTITY x 'y'>]>" + alarm}) {
    SCOPED_TRACE(testing::PrintToString(text));
    const ClientRun run = Qmodel(With(kNotif, {"-"}), text);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("qmodel: -: not a valid notification\n", run.err);
  }
}

// ---- value

TEST(ClientValue, EachValueGetsALine) {
  const ClientRun run = Qmodel({"value", "-i", "-p", "models", "-m", "router-system",
                                "/router-system:system/host-name", "edge-1", "edge_1", "x"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ("valid\ninvalid 28679\nvalid\n", run.out);
}

TEST(ClientValue, CodesAreTheLibrarys) {
  const Args call = {"value", "-i", "-p", "models", "-m", "router-system"};
  struct Row {
    const char* path;
    const char* value;
    const char* line;
  };
  const Row rows[] = {
      {"/router-system:system", "x", "invalid 22\n"},
      {"/router-system:restart/delay", "86401", "invalid 28680\n"},
      {"/router-system:restart/delay", "86400", "valid\n"},
      {"/router-system:ping/probe/interval", "0.015", "invalid 28680\n"},
      {"/router-system:ping/probe/options", "timestamp record-route", "valid\n"},
      {"/router-system:ping/probe/options", "timestamp timestamp", "invalid 28675\n"},
      {"/router-system:ping/interface-type", "router-types:gigabit-ethernet", "valid\n"},
      {"/router-system:ping/interface-type", "gigabit-ethernet", "invalid 28674\n"},
      {"/router-system:ping/destination", "2001:db8::1", "valid\n"},
      {"/router-system:ping/destination", "nowhere", "invalid 28681\n"},
      {"/router-system:restart/force", "True", "invalid 28682\n"},
      {"/router-interfaces:interfaces/interface[name='x']/address/prefix-length", "129",
       "invalid 28680\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.path) + " " + row.value);
    EXPECT_EQ(row.line, Qmodel(With(call, {row.path, row.value})).out);
  }
}

TEST(ClientValue, ChoiceIsNoStepOfADataPath) {
  const Args call = {"value", "-i", "-p", "models", "-m", "router-system"};
  EXPECT_EQ(2, Qmodel(With(call, {"/router-system:install-image/source/file", "x"})).status);
  EXPECT_EQ(0, Qmodel(With(call, {"/router-system:install-image/file", "x"})).status);
}

}  // namespace
