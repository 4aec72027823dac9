// SPDX-License-Identifier: BSD-3-Clause
// Models of one operation each, and messages whose values are drawn from a seed. Each
// entry has one thing in plenty, so that its cost shows; the mixed ones have all of them.
#include "bench/generate_messages.h"

#include "bench/random.h"
#include "bench/yin_parts.h"

namespace {

const std::string kAddress =
    "<pattern value='(([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])\\.){3}"
    "([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])'/>";
const std::string kMac = "<pattern value='[0-9a-fA-F]{2}(:[0-9a-fA-F]{2}){5}'/>";
const std::string kName = "<pattern value='[a-zA-Z_][a-zA-Z0-9\\-_.]*'/>";

// Types with patterns, and a value of each.
struct PatternType {
  const char* pattern;
  const char* value;
};

constexpr PatternType kPatternTypes[] = {
    {"[a-zA-Z_][a-zA-Z0-9\\-_.]*", "ge-0_0.17"},
    {"(([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])\\.){3}"
     "([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])",
     "192.0.2.117"},
    {"[0-9a-fA-F]{2}(:[0-9a-fA-F]{2}){5}", "00:1b:21:3c:4d:5e"},
    {"[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]+)?(Z|[+\\-][0-9]{2}:[0-9]{2})",
     "2026-05-04T12:30:45Z"},
    {"[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}",
     "f81d4fae-7dec-11d0-a765-00a0c91e6bf6"},
    {"((:|[0-9a-fA-F]{0,4}):)([0-9a-fA-F]{0,4}:){0,5}"
     "((([0-9a-fA-F]{0,4}:)?(:|[0-9a-fA-F]{0,4}))|"
     "(((25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])\\.){3}(25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])))",
     "2001:db8::a00:20ff"},
    {"[a-z0-9]([a-z0-9\\-]{0,61}[a-z0-9])?(\\.[a-z0-9]([a-z0-9\\-]{0,61}[a-z0-9])?)*",
     "edge1.example.net"},
    {"(([0-1](\\.[1-3]?[0-9]))|(2\\.(0|([1-9]\\d*))))(\\.(0|([1-9]\\d*)))*", "1.3.6.1.2.1.31"},
    {"([0-9a-fA-F]{2}(:[0-9a-fA-F]{2})*)?", "0a:0b:0c:0d"},
    {"\\d+(\\.\\d+)?(kbps|Mbps|Gbps)", "100Gbps"},
};

std::string ListOf(const std::string& leaves) {
  return "<list name='entry'><key value='id'/>" + leaves + "</list>";
}

std::string Default(const std::string& name, const std::string& type, const std::string& value) {
  return Leaf(name, type + "<default value='" + value + "'/>");
}

std::string When(const std::string& condition) {
  return "<when condition=\"" + condition + "\"/>";
}

std::string Must(const std::string& condition) {
  return "<must condition=\"" + condition + "\"/>";
}

// A value of "label-0" to "label-999".
std::string Word(Random* random) {
  return Numbered("label-", random->Below(1000));
}

std::string Number(Random* random, uint32_t from, uint32_t to) {
  return std::to_string(from + random->Below(to - from + 1));
}

std::string Enum(Random* random, uint32_t enums) {
  return Numbered("e", random->Below(enums));
}

std::string Address(Random* random) {
  return "192.0." + Number(random, 0, 255) + "." + Number(random, 1, 254);
}

}  // namespace

Exchange GeneratePlain(uint64_t seed, int64_t entries) {
  const std::string types = "<typedef name='level'>" + Type("int8", "<range value='-100..100'/>") +
                            "</typedef><typedef name='small-level'>" +
                            Type("m:level", "<range value='0..7'/>") + "</typedef>";
  const std::string leaves =
      Leaf("id", Type("uint32")) + Leaf("name", Type("string", "<length value='1..64'/>")) +
      Leaf("enabled", Type("boolean")) + Leaf("mtu", Type("uint16", "<range value='68..9216'/>")) +
      Leaf("mode", Enumeration(4)) +
      Leaf("load", Type("decimal64", "<fraction-digits value='2'/>")) +
      Leaf("text", Type("string")) + Leaf("host", Type("string", "<length value='1..253'/>")) +
      Leaf("priority", Type("m:small-level")) +
      Leaf("vlan", Type("uint16", "<range value='1..99 | 100..4094'/>")) +
      Leaf("octets", Type("uint64")) + Default("retries", Type("uint8"), "3") +
      Default("timeout", Type("uint32", "<range value='1..3600'/>"), "30") +
      Default("state", Enumeration(3), "e1") + Default("logging", Type("boolean"), "true");
  Random random(seed);
  std::string content;
  for (int64_t i = 0; i < entries; ++i) {
    content += "<entry>" + Element("id", std::to_string(i)) + Element("name", Word(&random)) +
               Element("enabled", random.Below(2) == 0 ? "true" : "false") +
               Element("mtu", Number(&random, 68, 9216)) + Element("mode", Enum(&random, 4)) +
               Element("load", Number(&random, 0, 99) + ".25") +
               Element("text", "to " + Word(&random) + " by " + Word(&random)) +
               Element("host", Word(&random) + ".example.net") +
               Element("priority", Number(&random, 0, 7)) +
               Element("vlan", Number(&random, 1, 4094)) +
               Element("octets", Number(&random, 0, 1000000000)) + "</entry>";
  }
  return {RpcModule(types, ListOf(leaves)), Request(content)};
}

Exchange GenerateConditions(uint64_t seed, int64_t entries) {
  const auto conditional = [](const std::string& name, const std::string& condition) {
    return Leaf(name, condition + Type("uint16"));
  };
  const std::string leaves =
      Leaf("id", Type("uint32")) + Leaf("kind", Enumeration(3)) + Leaf("rate", Type("uint16")) +
      Leaf("limit", Type("uint16")) + conditional("w1", When("../kind = 'e0' or ../rate")) +
      conditional("w2", When("../rate >= 10")) +
      conditional("w3", When("../m:kind != 'e3' and ../m:limit")) +
      conditional("w4", When("not(../missing)")) + conditional("m1", Must(". &lt;= ../limit")) +
      conditional("m2", Must("../rate > 0 and ../limit > 0")) +
      conditional("m3", Must("../w1 and ../w2")) +
      conditional("m4", Must("../kind = 'e0' or ../kind = 'e1' or ../kind = 'e2'"));
  Random random(seed);
  std::string content;
  for (int64_t i = 0; i < entries; ++i) {
    content += "<entry>" + Element("id", std::to_string(i)) + Element("kind", Enum(&random, 3)) +
               Element("rate", Number(&random, 10, 1000)) +
               Element("limit", Number(&random, 1000, 9999));
    for (const char* name : {"w1", "w2", "w3", "w4", "m1", "m2", "m3", "m4"})
      content += Element(name, Number(&random, 1, 999));
    content += "</entry>";
  }
  return {RpcModule("<leaf name='missing'>" + Type("string") + "</leaf>", ListOf(leaves)),
          Request(content)};
}

Exchange GenerateWide(int64_t leaves, int64_t entries) {
  std::string nodes = StringLeaf("id");
  std::string values = Element("id", "v");
  for (int64_t i = 1; i < leaves; ++i) {
    nodes += StringLeaf(Numbered("leaf", i));
    values += Element(Numbered("leaf", i), "v");
  }
  std::string content;
  for (int64_t i = 0; i < entries; ++i) content += Element("entry", values);
  return {RpcModule("", ListOf(nodes)), Request(content)};
}

Exchange GenerateLeafrefs(uint64_t seed, int64_t entries) {
  const auto reference = [](const std::string& name, const std::string& target) {
    return Leaf(name, Type("leafref", "<path value='../" + target + "'/>"));
  };
  const std::string leaves =
      Leaf("id", Type("uint32")) + Leaf("name", Type("string", "<length value='1..64'/>")) +
      Leaf("mtu", Type("uint16", "<range value='68..9216'/>")) + Leaf("mode", Enumeration(4)) +
      reference("to-id", "id") + reference("to-name", "name") + reference("to-mtu", "m:mtu") +
      reference("to-mode", "mode");
  Random random(seed);
  std::string content;
  for (int64_t i = 0; i < entries; ++i) {
    const std::string id = std::to_string(i);
    const std::string name = Word(&random);
    const std::string mtu = Number(&random, 68, 9216);
    const std::string mode = Enum(&random, 4);
    content += "<entry>" + Element("id", id) + Element("name", name) + Element("mtu", mtu) +
               Element("mode", mode) + Element("to-id", id) + Element("to-name", name) +
               Element("to-mtu", mtu) + Element("to-mode", mode) + "</entry>";
  }
  return {RpcModule("", ListOf(leaves)), Request(content)};
}

Exchange GeneratePatterns(uint64_t seed, int64_t entries) {
  std::string types;
  std::string leaves = Leaf("id", Type("uint32"));
  std::string values;
  for (const PatternType& type : kPatternTypes) {
    const std::string name = Numbered("pattern", &type - kPatternTypes);
    types += "<typedef name='" + name + "'>" +
             Type("string", std::string("<pattern value='") + type.pattern + "'/>") + "</typedef>";
    leaves += Leaf(name, Type("m:" + name));
    values += Element(name, type.value);
  }
  Random random(seed);
  std::string content;
  for (int64_t i = 0; i < entries; ++i)
    content += "<entry>" + Element("id", Number(&random, 0, 100000)) + values + "</entry>";
  return {RpcModule(types, ListOf(leaves)), Request(content)};
}

static std::string MixedModel(const std::string& before, const std::string& after) {
  const std::string types =
      "<identity name='kind'/><identity name='wired'><base name='m:kind'/></identity>"
      "<identity name='ethernet'><base name='m:wired'/></identity>"
      "<identity name='optical'><base name='m:wired'/></identity>"
      "<typedef name='address'>" +
      Type("string", kAddress) + "</typedef><typedef name='mac'>" + Type("string", kMac) +
      "</typedef><typedef name='name'>" + Type("string", "<length value='1..64'/>" + kName) +
      "</typedef>";
  const std::string leaves =
      Leaf("id", Type("m:name")) + Leaf("kind", Type("identityref", "<base name='m:kind'/>")) +
      Default("enabled", Type("boolean"), "true") +
      Leaf("mtu", Type("uint16", "<range value='68..9216'/>")) +
      Leaf("address", Type("m:address")) +
      Leaf("prefix-length", Type("uint8", "<range value='0..32'/>") + Must(". > 0")) +
      Leaf("mac", When("../kind") + Type("m:mac")) + Leaf("speed", Enumeration(6)) +
      Leaf("text", Type("string", "<length value='1..255'/>")) + "<container name='counters'>" +
      Leaf("in", Type("uint64")) + Leaf("out", Type("uint64")) +
      Default("errors", Type("uint64"), "0") + "</container><choice name='transport'>" +
      "<case name='tcp'>" + Leaf("port", Type("uint16")) + "</case><case name='local'>" +
      StringLeaf("path") + "</case></choice>" +
      Leaf("same-as", Type("leafref", "<path value='../id'/>")) +
      Leaf("alias", Type("union", Type("uint8") + Type("m:name"))) +
      Leaf("load", Type("decimal64", "<fraction-digits value='2'/>") + Must("../mtu >= 68")) +
      Default("hold-time", Type("uint32", "<range value='0..3600'/>"), "10") +
      Default("duplex", Enumeration(3), "e0") + "<leaf-list name='tag'>" +
      Type("string", "<length value='1..32'/>") + "</leaf-list>";
  return Module("m", "m", types + before + ListOf(leaves) + after);
}

static std::string MixedEntry(Random* random, int64_t number) {
  const std::string id = Numbered("port-", number);
  std::string text = "<entry>" + Element("id", id) +
                     Element("kind", random->Below(2) == 0 ? "m:ethernet" : "m:optical");
  if (random->Below(2) == 0) text += Element("enabled", "false");
  text += Element("mtu", Number(random, 68, 9216)) + Element("address", Address(random)) +
          Element("prefix-length", Number(random, 1, 32)) +
          Element("mac", "00:1b:21:3c:4d:" + Number(random, 10, 99)) +
          Element("speed", Enum(random, 6));
  if (random->Below(2) == 0) text += Element("text", "to " + Word(random));
  text += "<counters>" + Element("in", Number(random, 0, 1000000)) +
          Element("out", Number(random, 0, 1000000)) + "</counters>";
  text += random->Below(2) == 0 ? Element("port", Number(random, 1, 65535))
                                : Element("path", "/run/" + Word(random));
  text += Element("same-as", id) + Element("alias", Word(random));
  if (random->Below(2) == 0) text += Element("load", Number(random, 0, 99) + ".5");
  return text + Element("tag", Word(random)) + "</entry>";
}

static std::string MixedMessage(const std::string& name, uint64_t seed, int64_t entries) {
  Random random(seed);
  std::string text = "<" + name + " xmlns='urn:m' xmlns:m='urn:m'>";
  for (int64_t i = 0; i < entries; ++i) text += MixedEntry(&random, i);
  return text + "</" + name + ">";
}

Exchange GenerateMixed(uint64_t seed, int64_t entries) {
  return {MixedModel("<rpc name='op'><input>", "</input></rpc>"),
          MixedMessage("op", seed, entries)};
}

Exchange GenerateMixedNotification(uint64_t seed, int64_t entries) {
  return {MixedModel("<notification name='event'>", "</notification>"),
          MixedMessage("event", seed, entries)};
}
