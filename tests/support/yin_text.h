// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// The text of a module in YIN, with `body` after its header. Its namespace is
// "urn:" and its name, its prefix its name.
inline std::string YinModule(const std::string& name, const std::string& body = "") {
  return "<module name='" + name + "' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:" + name +
         "='urn:" + name + "'><namespace uri='urn:" + name + "'/><prefix value='" + name + "'/>" +
         body + "</module>";
}
