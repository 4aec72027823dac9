// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/deviation_case.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/support/yin_text.h"

namespace deviation_case {
namespace {

const char kImports[] =
    "<import module='ext'><prefix value='ext'/></import>"
    "<import module='ietf-netconf-acm'><prefix value='nacm'/></import>";
const char kNamespaces[] = "xmlns:ext='urn:ext' xmlns:nacm='urn:ietf-netconf-acm'";

void Load(QmCtx* ctx, const std::string& name, const std::string& body,
          const char* attributes = "") {
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module(name, body, attributes).c_str())) << name;
}

std::string JoinDefaults(const char* const* texts, uint32_t count) {
  std::string text;
  if (texts == nullptr) return count == 0 ? "" : "(no array for " + std::to_string(count) + ")";
  for (uint32_t i = 0; i < count; ++i)
    text += (i == 0 ? "" : ",") + std::string(texts[i] == nullptr ? "(null)" : texts[i]);
  return text;
}

std::string Defaults(const QmsNode* node) {
  if (node->kind == QMS_NODE_LEAF) {
    const char* value = static_cast<const QmsLeaf*>(node->payload)->defaultValue;
    return value == nullptr ? "" : value;
  }
  if (node->kind == QMS_NODE_LEAF_LIST) {
    const auto* payload = static_cast<const QmsLeafList*>(node->payload);
    return JoinDefaults(payload->defaults, payload->defaultCount);
  }
  if (node->kind == QMS_NODE_CHOICE) {
    const char* value = static_cast<const QmsChoice*>(node->payload)->defaultCase;
    return value == nullptr ? "" : value;
  }
  return "";
}

std::string UnitsOf(const QmsNode* node) {
  const char* units = nullptr;
  if (node->kind == QMS_NODE_LEAF) units = static_cast<const QmsLeaf*>(node->payload)->units;
  if (node->kind == QMS_NODE_LEAF_LIST)
    units = static_cast<const QmsLeafList*>(node->payload)->units;
  return units == nullptr ? "" : units;
}

std::string Musts(const QmsNode* node) {
  std::string text;
  for (uint32_t i = 0; i < node->mustCount; ++i) {
    const char* condition = node->musts[i].condition;
    text += (i == 0 ? "" : ",") + std::string(condition == nullptr ? "(null)" : condition);
  }
  return text;
}

std::string ExtInsts(const QmsNode* node) {
  std::string text;
  for (uint32_t i = 0; i < node->extInstCount; ++i) {
    const QmsExtInst& inst = node->extInsts[i];
    text += (i == 0 ? "" : ",") + std::string(inst.module) + ":" + inst.name;
    if (inst.argument != nullptr) text += std::string("(") + inst.argument + ")";
  }
  return text;
}

std::string Kind(uint32_t kind) {
  static const char* const kNames[] = {"none", "container", "leaf", "leaf-list", "list", "choice"};
  return kind < std::size(kNames) ? kNames[kind] : std::to_string(kind);
}

void AppendPart(std::string* text, const char* name, const std::string& value) {
  if (!value.empty()) *text += " " + std::string(name) + ":" + value;
}

std::string ConfigText(uint32_t flags) {
  std::string text;
  if ((flags & QMS_NODE_CONFIG_TRUE) != 0) text += "true";
  if ((flags & QMS_NODE_CONFIG_FALSE) != 0) text += "false";
  if ((flags & QMS_NODE_CONFIG_OWN) != 0) text += "!";
  return text;
}

std::string MandatoryText(uint32_t flags) {
  std::string text;
  if ((flags & QMS_NODE_MANDATORY_TRUE) != 0) text += "true";
  if ((flags & QMS_NODE_MANDATORY_FALSE) != 0) text += "false";
  return text;
}

std::string NacmText(uint32_t flags) {
  std::string text;
  if ((flags & QMS_NODE_DENY_ALL) != 0) text += "all";
  if ((flags & QMS_NODE_DENY_WRITE) != 0) text += "write";
  return text;
}

uint32_t CollectOfD(const char* modName, const char* yinFile, const char* message, void* arg) {
  EXPECT_EQ(nullptr, yinFile);
  EXPECT_STREQ("d", modName);
  static_cast<std::vector<std::string>*>(arg)->push_back(message);
  return 0;
}

std::string Statement(const std::string& keyword, const std::string& attribute,
                      const std::string& value) {
  return "<" + keyword + " " + attribute + "='" + value + "'/>";
}

std::string Deviate(const std::string& kind, const std::string& body) {
  return "<deviate value='" + kind + "'>" + body + "</deviate>";
}

}  // namespace

std::string Describe(const QmsNode* node) {
  std::string text = Kind(node->kind) + " " + node->name;
  AppendPart(&text, "config", ConfigText(node->flags));
  AppendPart(&text, "mandatory", MandatoryText(node->flags));
  AppendPart(&text, "default", Defaults(node));
  AppendPart(&text, "units", UnitsOf(node));
  AppendPart(&text, "musts", Musts(node));
  AppendPart(&text, "ext", ExtInsts(node));
  AppendPart(&text, "nacm", NacmText(node->flags));
  return text;
}

Case::Case(const std::string& target, const std::string& deviates)
    : ctx_(QM_LOAD_UNITS), target_(nullptr) {
  Load(ctx_, "ext", "<extension name='e1'/><extension name='e2'/>");
  Load(ctx_, "ietf-netconf-acm",
       "<extension name='default-deny-all'/><extension name='default-deny-write'/>");
  Load(ctx_, "t", kImports + target, kNamespaces);
  target_ = QM_CTX_GetModuleByModName(ctx_, "t")->dataNodes;
  Load(ctx_, "d",
       "<import module='t'><prefix value='t'/></import>" + std::string(kImports) +
           "<deviation target-node='/t:" + target_->name + "'>" + deviates + "</deviation>",
       kNamespaces);
}

std::string Case::Node() const {
  return Describe(target_);
}

QmsModule* Case::Deviating() const {
  return QM_CTX_GetModuleByModName(ctx_, "d");
}

std::vector<std::string> Case::Messages() const {
  std::vector<std::string> messages;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, CollectOfD, &messages));
  return messages;
}

std::string Applied(const std::string& target, const std::string& deviates) {
  const Case deviation(target, deviates);
  EXPECT_THAT(deviation.Messages(), testing::IsEmpty());
  EXPECT_TRUE(deviation.IsApplied());
  return deviation.Node();
}

std::vector<std::string> Refused(const std::string& target, const std::string& deviates) {
  const std::string before = Case(target, "").Node();
  const Case deviation(target, deviates);
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_EQ(before, deviation.Node());
  return deviation.Messages();
}

std::string Leaf(const std::string& body) {
  return yin_text::Leaf("n", body);
}

std::string LeafList(const std::string& body) {
  return "<leaf-list name='n'><type name='string'/>" + body + "</leaf-list>";
}

std::string Choice(const std::string& body) {
  return "<choice name='n'>" + body + "<case name='a'/><case name='b'/></choice>";
}

std::string Container(const std::string& body) {
  return "<container name='n'>" + body + "</container>";
}

std::string Default(const std::string& value) {
  return Statement("default", "value", value);
}

std::string Must(const std::string& condition) {
  return Statement("must", "condition", condition);
}

std::string Units(const std::string& name) {
  return Statement("units", "name", name);
}

std::string Config(bool value) {
  return Statement("config", "value", value ? "true" : "false");
}

std::string Mandatory(bool value) {
  return Statement("mandatory", "value", value ? "true" : "false");
}

std::string Add(const std::string& body) {
  return Deviate("add", body);
}

std::string Delete(const std::string& body) {
  return Deviate("delete", body);
}

std::string Replace(const std::string& body) {
  return Deviate("replace", body);
}

}  // namespace deviation_case
