// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The start of a Session, and the names that all of its trees share.
#include <string_view>

#include "compiler/reading/records.h"

namespace compiler {

inline constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";

// A session without modules.
std::unique_ptr<Session> OpenSession();

// `text` in the session's dictionary: equal texts have the same address there.
const char* Intern(Session* session, std::string_view text);

// What `ns` of elements in this namespace is.
xmlNs* NamespaceOf(Session* session, std::string_view uri);

}  // namespace compiler
