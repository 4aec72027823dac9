// SPDX-License-Identifier: BSD-3-Clause
// A module is a row of containers with the names box0, box1, ...; each holds leaves of
// mixed kinds, a list and a choice. What a statement looks like is drawn from a seed, so
// that no two modules are alike and every run has the same ones.
#include "bench/generate_models.h"

#include "bench/random.h"
#include "bench/yin_parts.h"

namespace {

constexpr int kGroup = 5;  // modules that belong together

// Writes one module and counts what it has written.
class Writer {
 public:
  Writer(uint64_t seed, int64_t number, int64_t nodes)
      : random_(seed + static_cast<uint64_t>(number)), number_(number), wanted_(nodes) {}

  GeneratedModule Write();

 private:
  [[nodiscard]] bool IsFirstOfGroup() const { return number_ % kGroup == 0; }
  [[nodiscard]] int64_t Left() const { return wanted_ - schemaNodes_; }
  std::string Head() const;
  std::string LeafType();
  std::string LeafNode(int64_t index);
  std::string BoxContent();
  std::string ListNode();
  std::string ChoiceNode();
  std::string Augment();
  std::string Deviation();

  Random random_;
  int64_t number_;
  int64_t wanted_;
  int64_t schemaNodes_ = 0;
  int64_t dataNodes_ = 0;
};

std::string Writer::Head() const {
  std::string text;
  if (!IsFirstOfGroup()) {
    const std::string first = Numbered("gen-", number_ - number_ % kGroup);
    text += "<import module='" + first + "'><prefix value='first'/></import>";
  }
  text +=
      "<organization><text>Generated</text></organization>"
      "<description><text>One of many generated modules, with as much prose as the head of a "
      "module has.</text></description><revision date='2026-01-01'/>"
      "<feature name='fast'/><feature name='slow'/>"
      "<identity name='medium'/><identity name='copper'><base name='medium'/></identity>"
      "<identity name='fibre'><base name='medium'/></identity>"
      "<typedef name='word'>" +
      Type("string", "<length value='1..255'/>") + "</typedef><typedef name='label'>" +
      Type("g:word", "<length value='1..64'/><pattern value='[a-zA-Z0-9_.\\-]*'/>") +
      "</typedef><typedef name='short-label'>" + Type("g:label", "<length value='1..16'/>") +
      "</typedef><typedef name='number'>" + Type("int32", "<range value='-100000..100000'/>") +
      "</typedef><typedef name='small-number'>" +
      Type("g:number", "<range value='-500..-1 | 1..500'/>") + "</typedef>";
  return text;
}

std::string Writer::LeafType() {
  switch (random_.Below(12)) {
    case 0:
      return Type("string", "<length value='1..64'/>");
    case 1:
      return Type("g:short-label");
    case 2:
      return Type("g:small-number");
    case 3:
      return Type("boolean") + "<default value='true'/>";
    case 4:
      return Enumeration(2 + static_cast<int>(random_.Below(6)));
    case 5:
      return Type("decimal64", "<fraction-digits value='2'/>");
    case 6:
      return Type("identityref", "<base name='g:medium'/>");
    case 7:
      return Type("union", Type("uint8") + Type("g:label"));
    case 8:
      return Type("leafref", "<path value='../name'/>");
    case 9:
      return Type("string", "<pattern value='[0-9a-f]{2}(:[0-9a-f]{2}){5}'/>");
    case 10:
      return IsFirstOfGroup() ? Type("g:label") : Type("first:label");
    default:
      return Type("uint16", "<range value='1..4094'/>") + "<default value='1'/>";
  }
}

std::string Writer::LeafNode(int64_t index) {
  ++schemaNodes_;
  ++dataNodes_;
  std::string text;
  if (random_.Below(12) == 0) text += "<when condition=\"../name = 'a' or ../g:name = 'b'\"/>";
  if (random_.Below(12) == 0) text += "<if-feature name='g:fast'/>";
  text += LeafType();
  if (random_.Below(12) == 0) text += "<must condition=\"../g:name != 'c' and not(../missing)\"/>";
  text += "<description><text>What this leaf is for, in a sentence.</text></description>";
  return Leaf(Numbered("leaf", index), text);
}

std::string Writer::ListNode() {
  schemaNodes_ += 2;
  dataNodes_ += 2;
  std::string text = "<list name='row'><key value='name'/>" + Leaf("name", Type("g:label"));
  for (int64_t i = 0; i < 4 && Left() > 0; ++i) text += LeafNode(i);
  return text + "</list>";
}

std::string Writer::ChoiceNode() {
  schemaNodes_ += 5;
  dataNodes_ += 2;
  return "<choice name='way'><case name='one'>" + Leaf("by-name", Type("g:word")) +
         "</case><case name='other'>" + Leaf("by-number", Type("g:number")) + "</case></choice>";
}

std::string Writer::BoxContent() {
  schemaNodes_ += 2;
  dataNodes_ += 2;
  std::string text = Leaf("name", Type("g:label"));
  const int64_t leaves = 8 + random_.Below(8);
  for (int64_t i = 0; i < leaves && Left() > 0; ++i) text += LeafNode(i);
  if (Left() > 5) text += ListNode();
  if (Left() > 5) text += ChoiceNode();
  return text;
}

// Four nodes for the first module of the group, below its first container.
std::string Writer::Augment() {
  schemaNodes_ += 4;
  dataNodes_ += 4;
  const std::string name = Numbered("added", number_);
  return "<augment target-node='/first:box0'><container name='" + name + "'>" +
         Leaf("name", Type("g:label")) + Leaf("level", Type("g:number")) +
         Leaf("state", Enumeration(3)) + "</container></augment>";
}

std::string Writer::Deviation() {
  const std::string target = "<deviation target-node='/first:box0/first:name'>";
  if (number_ % kGroup == 1) {
    return target + "<deviate value='add'><must condition=\". != 'none'\"/></deviate></deviation>";
  }
  if (number_ % kGroup == 2) {
    return target + "<deviate value='replace'>" + Type("g:word") + "</deviate></deviation>";
  }
  return "";
}

GeneratedModule Writer::Write() {
  const std::string name = Numbered("gen-", number_);
  std::string body = Head();
  if (!IsFirstOfGroup()) body += Augment();
  for (int64_t box = 0; Left() > 1; ++box)
    body += "<container name='" + Numbered("box", box) + "'>" + BoxContent() + "</container>";
  if (!IsFirstOfGroup()) body += Deviation();
  std::string text = Module(name, "g", body);
  if (!IsFirstOfGroup()) {
    const std::string first = Numbered("gen-", number_ - number_ % kGroup);
    text.insert(text.find('>'), " xmlns:first='urn:" + first + "'");
  }
  return {name, text, dataNodes_};
}

}  // namespace

std::vector<GeneratedModule> GenerateModules(uint64_t seed, int64_t modules, int64_t nodes) {
  std::vector<GeneratedModule> generated;
  for (int64_t i = 0; i < modules; ++i) generated.push_back(Writer(seed, i, nodes).Write());
  return generated;
}
