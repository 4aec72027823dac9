// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/session.h"

namespace compiler {

static const xmlChar* InternName(xmlDict* dictionary, std::string_view text) {
  const char* start = text.empty() ? "" : text.data();  // never NULL
  return Need(const_cast<xmlChar*>(xmlDictLookup(
      dictionary, reinterpret_cast<const xmlChar*>(start), static_cast<int>(text.size()))));
}

std::unique_ptr<Session> OpenSession() {
  auto session = std::make_unique<Session>();
  session->dictionary.reset(Need(xmlDictCreate()));
  xmlDict* dictionary = session->dictionary.get();
  for (size_t i = 1; i < kKeywordCount; ++i) {
    const KeywordRow& row = RowOf(static_cast<Keyword>(i));
    session->names[i] = InternName(dictionary, row.name);
    if (!row.argument.empty()) session->arguments[i] = InternName(dictionary, row.argument);
  }
  session->yin = NamespaceOf(session.get(), kYinNamespace);
  return session;
}

xmlNs* NamespaceOf(Session* session, std::string_view uri) {
  const xmlChar* name = InternName(session->dictionary.get(), uri);
  xmlNs& ns = session->namespaces[name];
  ns.type = XML_NAMESPACE_DECL;
  ns.href = name;
  return &ns;
}

const char* Intern(Session* session, std::string_view text) {
  return reinterpret_cast<const char*>(InternName(session->dictionary.get(), text));
}

}  // namespace compiler
