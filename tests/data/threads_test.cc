// SPDX-License-Identifier: BSD-3-Clause
// Validation only reads the schema: threads validate different messages on one
// context while another reads the load errors. The thread sanitizer finds what a
// plain run cannot.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Schema;

constexpr int kThreads = 16;
constexpr int kRounds = 25;

constexpr char kModel[] = R"yin(
  <feature name="f"/>
  <identity name="base"/><identity name="id1"><base name="base"/></identity>
  <typedef name="word"><type name="string"><length value="1..8"/><pattern value="[a-z0-9]*"/></type>
    <default value="abc"/></typedef>
  <rpc name="r"><input>
    <leaf name="n"><must condition=". != '13'"/><type name="int32"><range value="0..100"/></type></leaf>
    <leaf name="w"><type name="word"/></leaf>
    <leaf name="i"><type name="identityref"><base name="base"/></type><default value="id1"/>
      <must condition="derived-from(., 'm:base')"/></leaf>
    <leaf name="u"><type name="union"><type name="int8"/><type name="word"/></type></leaf>
    <leaf name="s"><if-feature name="f"/><type name="string"/></leaf>
    <list name="li"><key value="k"/><leaf name="k"><type name="leafref"><path value="../../n"/></type></leaf>
      <leaf name="v"><when condition="../../n &gt; 7"/><type name="string"/><default value="1"/></leaf>
    </list></input></rpc>
  <notification name="no"><leaf name="a"><when condition="../b = '1'"/><type name="string"/></leaf>
    <leaf name="b"><type name="string"/></leaf></notification>)yin";

std::string Request(int n) {
  std::string text =
      "<r xmlns='urn:m'><n>" + std::to_string(n) + "</n><u>a" + std::to_string(n) + "</u>";
  for (int k = 0; k < 10; ++k) text += "<li><k>" + std::to_string(k) + "</k></li>";
  return text + "</r>";
}

std::string Expected(int n) {
  return n == 13 ? "18|/m:r/n|n is not satisfied must condition.|n|must-violation" : "valid";
}

void ValidateMessages(QmCtx* ctx, int number) {
  for (int round = 0; round < kRounds; ++round) {
    EXPECT_EQ(Expected(number), message_fixture::ValidateRpc(ctx, Request(number)));
    EXPECT_EQ("<no xmlns=\"urn:m\"><b>" + std::to_string(number) + "</b></no>",
              message_fixture::ValidateNotif(
                  ctx, "<no xmlns='urn:m'><a/><b>" + std::to_string(number) + "</b></no>"));
  }
}

uint32_t CountFailure(const char*, const char*, const char*, void* arg) {
  ++*static_cast<int*>(arg);
  return 0;
}

void ScanFailures(QmCtx* ctx, const std::atomic<bool>* stop) {
  while (!stop->load()) {
    int failures = 0;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx, CountFailure, &failures));
    EXPECT_GT(failures, 0);
  }
}

TEST(Threads, ValidateSideBySideWhileLoadErrorsAreScanned) {
  Schema schema;
  schema.Load("m", kModel);
  ASSERT_NE(QM_OK,
            QM_CTX_LoadMemory(schema.ctx(), yin_text::Module("bad", "<leaf name=\"x\"/>").c_str()));
  std::atomic<bool> stop{false};
  std::thread scanner(ScanFailures, schema.ctx(), &stop);
  std::vector<std::thread> validators;
  // Numbers from 2: the notification's leaf a goes for all but 1.
  for (int i = 0; i < kThreads; ++i) validators.emplace_back(ValidateMessages, schema.ctx(), i + 2);
  for (std::thread& validator : validators) validator.join();
  stop = true;
  scanner.join();
}

}  // namespace
