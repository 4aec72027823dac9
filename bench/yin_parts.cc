// SPDX-License-Identifier: BSD-3-Clause
#include "bench/yin_parts.h"

std::string Numbered(const std::string& name, int64_t number) {
  return name + std::to_string(number);
}

std::string Module(const std::string& name, const std::string& prefix, const std::string& body) {
  return "<module name='" + name + "' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:" + prefix +
         "='urn:" + name + "'><yang-version value='1.1'/><namespace uri='urn:" + name +
         "'/><prefix value='" + prefix + "'/>" + body + "</module>";
}

std::string Type(const std::string& name, const std::string& restrictions) {
  return "<type name='" + name + "'>" + restrictions + "</type>";
}

std::string Enumeration(int enums) {
  std::string names;
  for (int i = 0; i < enums; ++i) names += "<enum name='" + Numbered("e", i) + "'/>";
  return Type("enumeration", names);
}

std::string Leaf(const std::string& name, const std::string& content) {
  return "<leaf name='" + name + "'>" + content + "</leaf>";
}

std::string StringLeaf(const std::string& name) {
  return Leaf(name, Type("string"));
}

std::string RpcModule(const std::string& before, const std::string& input) {
  return Module("m", "m", before + "<rpc name='op'><input>" + input + "</input></rpc>");
}

std::string Element(const std::string& name, const std::string& value) {
  return "<" + name + ">" + value + "</" + name + ">";
}

std::string Request(const std::string& content) {
  return "<op xmlns='urn:m'>" + content + "</op>";
}
