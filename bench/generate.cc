// SPDX-License-Identifier: BSD-3-Clause
#include "bench/generate.h"

namespace {

const std::string kHead =
    "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
    "<namespace uri='urn:m'/><prefix value='m'/>"
    "<typedef name='small'><type name='int16'><range value='-500..500'/></type></typedef>";

std::string Leaf(int number) {
  static const char* const kTypes[] = {
      "<type name='string'><length value='1..64'/></type>", "<type name='m:small'/>",
      "<type name='boolean'/><default value='true'/>",
      "<type name='enumeration'><enum name='a'/><enum name='b'/><enum name='c'/></type>",
      "<type name='decimal64'><fraction-digits value='2'/></type>"};
  return "<leaf name='l" + std::to_string(number) + "'>" + kTypes[number % 5] + "</leaf>";
}

}  // namespace

std::string GenerateModule(int leaves) {
  std::string text = kHead;
  for (int i = 0; i < leaves; ++i) {
    if (i % 50 == 0) text += "<container name='c" + std::to_string(i / 50) + "'>";
    text += Leaf(i);
    if (i % 50 == 49 || i == leaves - 1) text += "</container>";
  }
  return text + "</module>";
}

std::string GenerateRpcModule() {
  return kHead +
         "<rpc name='op'><input><list name='e'><key value='id'/>"
         "<leaf name='id'><type name='uint32'/></leaf><leaf name='v'><type name='m:small'/></leaf>"
         "<leaf name='d'><type name='boolean'/><default value='true'/></leaf></list>"
         "<choice name='ch'><case name='a'><leaf-list name='x'><type "
         "name='uint32'/></leaf-list></case>"
         "<case name='b'><leaf name='y'><type name='empty'/></leaf></case></choice>"
         "</input></rpc></module>";
}

std::string GenerateRequest(int entries, bool belowCase) {
  std::string text = "<op xmlns='urn:m'>";
  for (int i = 0; i < entries; ++i) {
    const std::string number = std::to_string(i);
    text += belowCase ? "<x>" + number + "</x>" : "<e><id>" + number + "</id><v>7</v></e>";
  }
  return text + "</op>";
}

static std::string StringLeaf(const std::string& name) {
  return "<leaf name='" + name + "'><type name='string'/></leaf>";
}

static std::string RpcModule(const std::string& input) {
  return kHead + "<rpc name='op'><input>" + input + "</input></rpc></module>";
}

static std::string LeavesOfRequest(int leaves) {
  std::string text;
  for (int i = 0; i < leaves; ++i)
    text += "<s" + std::to_string(i) + ">v</s" + std::to_string(i) + ">";
  return text;
}

std::string GenerateNamingModule(int names) {
  std::string leaves;
  std::string condition = "../s0 = 'v'";
  for (int i = 0; i < names; ++i) {
    leaves += StringLeaf("s" + std::to_string(i));
    condition += " and ../s" + std::to_string(i) + " = 'v'";
  }
  return RpcModule(leaves + "<list name='e'><key value='id'/><must condition=\"" + condition +
                   "\"/>" + StringLeaf("id") + "</list>");
}

std::string GenerateNamingRequest(int names, int entries) {
  std::string text = "<op xmlns='urn:m'>" + LeavesOfRequest(names);
  for (int i = 0; i < entries; ++i) text += "<e><id>" + std::to_string(i) + "</id></e>";
  return text + "</op>";
}

std::string GenerateSiblingModule(Sibling kind, int siblings) {
  std::string text;
  for (int i = 0; i < siblings; ++i) {
    const std::string name = "s" + std::to_string(i);
    if (kind == Sibling::kLeaf) text += StringLeaf(name);
    if (kind == Sibling::kChoice)
      text += "<choice name='c" + name + "'>" + StringLeaf(name) + "</choice>";
    if (kind == Sibling::kList)
      text += "<list name='" + name + "'><key value='id'/>" + StringLeaf("id") + "</list>";
  }
  return RpcModule(text);
}

std::string GenerateSiblingRequest(Sibling kind, int siblings) {
  if (kind != Sibling::kList) return "<op xmlns='urn:m'>" + LeavesOfRequest(siblings) + "</op>";
  std::string text = "<op xmlns='urn:m'>";
  for (int i = 0; i < siblings; ++i) {
    const std::string name = "s" + std::to_string(i);
    text += "<" + name + "><id>v</id></" + name + ">";
  }
  return text + "</op>";
}
