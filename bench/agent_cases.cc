// SPDX-License-Identifier: BSD-3-Clause
// The way of a request through the kit for agents: parsed within its limits, validated, and
// answered with the record of what is wrong with it.
#include <qmodel/agent.h>

#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

// An edit of the kind of RFC 6241 section 7.2: what lies below `config` is not looked at.
static std::string EditModel() {
  const std::string target =
      "<container name='target'><choice name='store'>"
      "<mandatory value='true'/>" +
      Leaf("candidate", Type("empty")) + Leaf("running", Type("empty")) + "</choice></container>";
  const std::string operation =
      Leaf("default-operation", Type("enumeration",
                                     "<enum name='merge'/><enum name='replace'/>"
                                     "<enum name='none'/>") +
                                    "<default value='merge'/>");
  return Module("nc", "nc",
                "<rpc name='edit'><input>" + target + operation +
                    "<choice name='content'><mandatory value='true'/>"
                    "<anyxml name='config'/></choice></input></rpc>");
}

static std::string Edit(const std::string& operation) {
  return "<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0' message-id='101'>"
         "<edit xmlns='urn:nc'><target><running/></target><default-operation>" +
         operation +
         "</default-operation><config><interface xmlns='urn:example'><name>eth0</name>"
         "<enabled>true</enabled><mtu>1500</mtu></interface></config></edit></rpc>";
}

static uint32_t IgnoreText(const char* /*text*/, size_t /*length*/, void* /*arg*/) {
  return 0;
}

static void Answer(QmCtx* ctx, const std::string& text, uint32_t expected) {
  uint32_t reason = QM_AGENT_REASON_NONE;
  xmlDoc* doc = QM_AGENT_ParseMessage(text.data(), text.size(), nullptr, &reason);
  Require(doc != nullptr, "an edit is not parsed");
  QmErrNode* error = nullptr;
  const uint32_t verdict =
      QM_AGENT_ValidateRequest(ctx, xmlDocGetRootElement(doc), nullptr, nullptr, &error);
  Require(verdict == expected, "an edit has another verdict");
  if (error != nullptr)
    Require(QM_AGENT_WriteRecord(error, ctx, 0, IgnoreText, nullptr) == 0, "no record is written");
  QM_FreeErrNode(error);
  xmlFreeDoc(doc);
}

static std::function<Work(int64_t)> Edits(const std::string& operation, uint32_t expected) {
  return [=](int64_t requests) {
    const std::string text = Edit(operation);
    Work work;
    work.units = requests;
    work.bytes = requests * static_cast<int64_t>(text.size());
    work.parse = ParseOf(std::vector<std::string>(static_cast<size_t>(requests), text));
    work.run = [=, ctx = LoadedContext({EditModel()})] {
      for (int64_t i = 0; i < requests; ++i) Answer(ctx.get(), text, expected);
    };
    return work;
  };
}

std::vector<Case> AgentCases() {
  return {
      {"edit by the kit for agents", "request", 100, 100, 10, Edits("merge", QM_AGENT_VALID)},
      {"wrong edit and its record by the kit", "request", 100, 100, 10,
       Edits("mend", QM_AGENT_INVALID)},
  };
}
