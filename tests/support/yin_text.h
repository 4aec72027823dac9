// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// The texts of models in YIN. Every test that writes one takes its frame from here; only
// tests of the frame itself spell it out.
namespace yin_text {

// The default namespace of YIN, for a start tag.
inline constexpr char kNamespace[] = " xmlns='urn:ietf:params:xml:ns:yang:yin:1'";
inline constexpr char kVersion11[] = "<yang-version value='1.1'/>";

// A start tag of YIN's namespace that declares the XML prefix "m" of "urn:m" as well, and
// its end: what a statement alone is parsed in.
inline std::string Root(const std::string& statements) {
  return std::string("<r") + kNamespace + " xmlns:m='urn:m'>" + statements + "</r>";
}

// A module with its name as prefix, which is also declared as XML prefix. `head` stands
// before the namespace, `attributes` in the start tag.
inline std::string ModuleOf(const std::string& uri, const std::string& name,
                            const std::string& body = "", const std::string& head = "",
                            const std::string& attributes = "") {
  return "<module name='" + name + "'" + kNamespace + " xmlns:" + name + "='" + uri + "' " +
         attributes + ">" + head + "<namespace uri='" + uri + "'/><prefix value='" + name + "'/>" +
         body + "</module>";
}

// The same with namespace "urn:<name>".
inline std::string Module(const std::string& name, const std::string& body = "",
                          const std::string& head = "", const std::string& attributes = "") {
  return ModuleOf("urn:" + name, name, body, head, attributes);
}

inline std::string Submodule(const std::string& name, const std::string& body,
                             const std::string& attributes = " xmlns:m='urn:m'") {
  return "<submodule name='" + name + "'" + kNamespace + attributes + ">" + body + "</submodule>";
}

inline std::string BelongsTo(const std::string& module) {
  return "<belongs-to module='" + module + "'><prefix value='" + module + "'/></belongs-to>";
}

// A leaf of type string; `inside` stands behind its type, `before` ahead of it.
inline std::string Leaf(const std::string& name, const std::string& inside = "",
                        const std::string& before = "") {
  return "<leaf name='" + name + "'>" + before + "<type name='string'/>" + inside + "</leaf>";
}

inline std::string Rpc(const std::string& input, const std::string& name = "r") {
  return "<rpc name='" + name + "'><input>" + input + "</input></rpc>";
}

}  // namespace yin_text
