// SPDX-License-Identifier: BSD-3-Clause
// The program that the README shows: as printed there, and run with what a reader may
// try first.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/client/run_client.h"

namespace {

const std::string kExamples = QMODEL_EXAMPLES;
const std::string kModels = kExamples + "/models";

std::string Content(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

ClientRun Example(const std::vector<std::string>& args) {
  return RunProgram(QMODEL_EXAMPLE, kExamples, args);
}

ClientRun Restart(const std::string& content) {
  return Example({kModels, "router-system",
                  "<restart xmlns='urn:example:router-system'>" + content + "</restart>"});
}

TEST(Readme, PrintsTheExampleToTheLetter) {
  const std::string readme = Content(QMODEL_README);
  const std::string fence = "\n```c\n";
  const size_t start = readme.find(fence);
  ASSERT_NE(std::string::npos, start);
  const size_t code = start + fence.size();
  EXPECT_EQ(Content(kExamples + "/validate_rpc.c"),
            readme.substr(code, readme.find("```\n", code) - code));
}

TEST(ValidateRpc, AcceptsAValidRequest) {
  const ClientRun run = Restart("<reason>test</reason>");
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("valid\n", run.out);
  EXPECT_EQ("", run.err);
}

TEST(ValidateRpc, SaysWhatIsWrongWithARequest) {
  const ClientRun run = Restart("");
  EXPECT_EQ(1, run.status);
  EXPECT_EQ("/router-system:restart: Missing element: reason.\n", run.out);
  EXPECT_EQ("", run.err);
}

TEST(ValidateRpc, RefusesWhatIsNoMessage) {
  for (const char* request :
       {"", " ", "garbage", "<restart", "<a></b>", "<a/>", "<!-- -->", "\xff\xfe",
        "<!DOCTYPE restart><restart xmlns='urn:example:router-system'/>"}) {
    SCOPED_TRACE(request);
    const ClientRun run = Example({kModels, "router-system", request});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("/: not valid\n", run.out);
    EXPECT_EQ("", run.err);
  }
}

TEST(ValidateRpc, SaysThatAModuleIsMissing) {
  const ClientRun run = Example({kModels, "no-such-module", "<a/>"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("no-such-module: no file: Failed to find \"no-such-module\" from search directories.\n",
            run.err);
}

TEST(ValidateRpc, SaysThatADirectoryIsNoneOrRelative) {
  for (const char* dir : {"models", ".", "", "/no/such/directory", QMODEL_README}) {
    SCOPED_TRACE(dir);
    const ClientRun run = Example({dir, "router-system", "<a/>"});
    EXPECT_EQ(3, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(std::string(dir) + ": not the absolute path of a directory\n", run.err);
  }
}

TEST(ValidateRpc, SaysWhyAFileCannotBeLoaded) {
  std::string dir = testing::TempDir() + "qmodel-example-XXXXXX";
  ASSERT_NE(nullptr, mkdtemp(dir.data()));
  for (const char* text : {"", "no model", "<module"}) {
    SCOPED_TRACE(text);
    std::ofstream(dir + "/m.yin") << text;
    const ClientRun run = Example({dir, "m", "<a/>"});
    EXPECT_EQ(3, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(
        "m: m.yin: Failed to read content from the yin file.\n"
        "m: m.yin: Failed to parse module \"m\" from the yin file.\n",
        run.err);
  }
  std::filesystem::remove_all(dir);
}

TEST(ValidateRpc, SaysHowItIsCalled) {
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{}, {kModels}, {kModels, "router-system"}, {"a", "b", "c", "d"}}) {
    const ClientRun run = Example(args);
    EXPECT_EQ(2, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("usage: validate_rpc DIR MODULE REQUEST\n", run.err);
  }
}

ClientRun KitReply(const std::string& message, const char* module = "router-system") {
  return RunProgram(QMODEL_KIT_EXAMPLE, kExamples, {kModels, module}, message);
}

std::string Rpc(const std::string& attributes, const std::string& operation) {
  return "<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'" + attributes + ">" + operation +
         "</rpc>";
}

constexpr char kReply[] = "<rpc-reply xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"";

TEST(KitRpc, IsPrintedByItsPageToTheLetter) {
  const std::string page = Content(QMODEL_KIT_PAGE);
  const std::string fence = "\n```c\n";
  const size_t start = page.find(fence);
  ASSERT_NE(std::string::npos, start);
  const size_t code = start + fence.size();
  EXPECT_EQ(Content(kExamples + "/kit_rpc.c"), page.substr(code, page.find("```\n", code) - code));
}

TEST(KitRpc, AnswersAValidRequestWithItsAttributes) {
  const ClientRun run =
      KitReply(Rpc(" message-id='7' xmlns:e='urn:e' e:trace='x'",
                   "<restart xmlns='urn:example:router-system'><reason>t</reason></restart>"));
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(std::string(kReply) +
                " xmlns:e=\"urn:e\" message-id=\"7\" e:trace=\"x\">\n  <ok/>\n</rpc-reply>\n",
            run.out);
  EXPECT_NE(std::string::npos, run.err.find("loaded router-system, urn:example:router-system\n"));
  EXPECT_NE(std::string::npos, run.err.find("do restart\n"));
}

TEST(KitRpc, AnswersAnInvalidRequestWithItsError) {
  const ClientRun run =
      KitReply(Rpc(" message-id='8'", "<restart xmlns='urn:example:router-system'/>"));
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.out.find(std::string(kReply) + " message-id=\"8\">\n<rpc-error "));
  EXPECT_NE(std::string::npos,
            run.out.find("<error-path xmlns:router-system=\"urn:example:router-system\">"
                         "/router-system:restart</error-path>"));
  EXPECT_NE(std::string::npos, run.out.find("<bad-element>reason</bad-element>"));
}

TEST(KitRpc, AnswersWhatIsNoMessage) {
  for (const char* message : {"", "garbage", "<a>", "<!DOCTYPE a><a/>"}) {
    SCOPED_TRACE(message);
    const ClientRun run = KitReply(message);
    EXPECT_EQ(1, run.status);
    EXPECT_NE(std::string::npos, run.out.find("<error-tag>malformed-message</error-tag>"));
  }
  EXPECT_NE(std::string::npos, KitReply(Rpc("", "<a/>")).out.find("missing-attribute"));
}

TEST(KitRpc, SaysThatAModuleIsMissing) {
  const ClientRun run = KitReply("<a/>", "no-such-module");
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("kit_rpc: no-such-module: file or module not found\n", run.err);
  EXPECT_EQ(2, RunProgram(QMODEL_KIT_EXAMPLE, kExamples, {}).status);
}

}  // namespace
