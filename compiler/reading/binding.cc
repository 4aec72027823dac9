// SPDX-License-Identifier: BSD-3-Clause
// What an instance of an extension looks like in YIN stands in another file: the
// namespace in the module that its prefix means, the name of the argument and its form
// in the definition there. In YANG text the prefix tells the module, in YIN the
// namespace does, and the argument is already what it is.
#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "compiler/reading/build.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/path.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

// What the definition of an extension says of its instances.
struct ExtensionForm {
  bool found = false;
  bool argumentIsElement = false;
  const char* argument = nullptr;  // NULL: it takes none
};

using FormsByName = std::unordered_map<std::string_view, ExtensionForm>;

struct Binder {
  Session* session = nullptr;
  Module* module = nullptr;
  Report* report = nullptr;
  std::unordered_map<const Module*, FormsByName> forms;  // of modules that were asked for
  uint64_t namesToCompare = kMostComparedNames;          // for "did you mean"
};

std::string_view View(const xmlChar* text) noexcept {
  return reinterpret_cast<const char*>(text);
}

// The declarations of a root, as far as they were made.
struct Declarations {
  xmlNode* root = nullptr;
  xmlNs* last = nullptr;
  std::unordered_set<std::string_view> prefixes;
};

void Declare(Declarations* all, const std::string& prefix, const std::string& uri) {
  if (prefix.empty() || uri.empty() || !all->prefixes.insert(prefix).second) return;
  all->last = AppendNamespace(all->root, all->last, prefix, uri);
}

void DeclareNamespaces(Module* module) {
  Declarations all{module->root, nullptr, {}};
  for (const xmlNs* ns = module->root->nsDef; ns != nullptr; ns = ns->next)
    if (ns->prefix != nullptr) all.prefixes.insert(View(ns->prefix));
  const Module* main = MainModuleOf(module);
  if (main != nullptr) Declare(&all, module->prefix, main->nameSpace);
  for (const Import& import : module->imports)
    if (import.target != nullptr) Declare(&all, import.prefix, import.target->nameSpace);
}

ExtensionForm ReadForm(const xmlNode* definition) {
  ExtensionForm form;
  form.found = true;
  const xmlNode* argument = FirstChild(definition, Keyword::kArgument);
  if (argument == nullptr) return form;
  form.argument = ArgumentOf(argument);
  form.argumentIsElement = IsChildTrue(argument, Keyword::kYinElement);
  return form;
}

void ReadForms(Module* file, void* arg) {
  auto* forms = static_cast<FormsByName*>(arg);
  for (const xmlNode* s = FirstChild(file->root, Keyword::kExtension); s != nullptr;
       s = NextSibling(s, Keyword::kExtension)) {
    if (ArgumentOf(s) != nullptr) forms->emplace(ArgumentOf(s), ReadForm(s));
  }
}

ExtensionForm FormOf(Binder* b, Module* module, std::string_view name) {
  const auto [place, isNew] = b->forms.try_emplace(module);
  if (isNew) ForEachFile(module, ReadForms, &place->second);
  const auto form = place->second.find(name);
  return form == place->second.end() ? ExtensionForm() : form->second;
}

// Empty: none is near.
std::string NearestExtension(Binder* b, Module* module, const char* wanted) {
  if (b->namesToCompare == 0) return {};
  // In an order of their own, since that of the table is none.
  std::vector<std::string_view> names;
  for (const auto& form : b->forms[module]) names.push_back(form.first);
  std::sort(names.begin(), names.end());
  Suggestion near(wanted, &b->namesToCompare);
  for (const std::string_view name : names)
    if (!near.Consider(name)) break;
  return near.Advice({});
}

void TurnIntoElement(xmlNode* element, const xmlChar* name) {
  xmlAttr* attribute = element->properties;
  const std::string argument(View(attribute->children->content));
  LooseStatement holder(NewElement(element->doc, element->ns, name));
  AppendText(holder.get(), argument);
  xmlRemoveProp(attribute);
  if (element->children == nullptr) {
    AppendChild(element, holder.release());
  } else {
    InsertBefore(element->children, holder.release());
  }
}

// Gives the argument of an instance in YANG text its name and form.
void FormArgument(Binder* b, xmlNode* element, const ExtensionForm& form) {
  if (element->properties == nullptr || form.argument == nullptr) return;
  const auto* name = reinterpret_cast<const xmlChar*>(Intern(b->session, form.argument));
  if (form.argumentIsElement) {
    TurnIntoElement(element, name);
  } else {
    element->properties->name = name;
  }
}

// In YIN the argument element was taken for a statement.
void MarkArgument(xmlNode* element, const ExtensionForm& form) noexcept {
  xmlNode* first = FirstChild(element);
  if (first == nullptr || !form.argumentIsElement || form.argument == nullptr) return;
  if (View(first->name) == form.argument && first->ns == element->ns) first->_private = nullptr;
}

// In YIN a statement may have been read with text, which only an argument holds. True
// when it was more than blanks.
bool DropText(xmlNode* element) noexcept {
  bool dropped = false;
  xmlNode* next = nullptr;
  for (xmlNode* node = element->children; node != nullptr; node = next) {
    next = node->next;
    if (node->type != XML_TEXT_NODE) continue;
    dropped = dropped || View(node->content).find_first_not_of(" \t\r\n") != std::string::npos;
    RemoveStatement(node);
  }
  return dropped;
}

// An element may have any name that YANG has; an attribute "xmlns" would be a declaration.
bool IsXmlName(const ExtensionForm& form) noexcept {
  return IsIdentifier(form.argument) &&
         (form.argumentIsElement || std::string_view(form.argument) != "xmlns");
}

// What is wrong with the instance's argument, or empty.
std::string ArgumentFault(const xmlNode* element, const ExtensionForm& form) {
  const bool given = ArgumentOf(element) != nullptr;
  if (form.argument != nullptr && !IsXmlName(form))
    return std::string(" has an argument whose name '") + form.argument + "' XML does not take";
  if (form.argument == nullptr) return given ? " takes no argument" : "";
  if (!given) return std::string(" lacks its argument '") + form.argument + "'";
  if (form.argumentIsElement || View(element->properties->name) == form.argument) return {};
  return std::string(" calls its argument '") + form.argument + "'";
}

std::string FullName(const ExtensionInstance& instance) {
  std::string name = instance.prefix;
  if (!name.empty()) name += ":";
  return "'" + name + NameOf(instance.element) + "'";
}

// Binds an instance; false: it cannot be written.
bool BindTo(Binder* b, const ExtensionInstance& instance, Module* target) {
  xmlNode* element = instance.element;
  // In these it would be a statement of YANG.
  if (target->nameSpace.empty() || target->nameSpace == kYinNamespace) {
    AddFinding(b->report, Severity::kError, kExtensionClass, element,
               FullName(instance) + " cannot be written, since module '" + target->name +
                   "' has no namespace of its own");
    return false;
  }
  const ExtensionForm form = FormOf(b, target, View(element->name));
  if (!form.found) {
    AddFinding(b->report, Severity::kError, kExtensionClass, element,
               "module '" + target->name + "' defines no extension '" + NameOf(element) + "'",
               NearestExtension(b, target, NameOf(element)));
    return false;
  }
  if (b->module->file->isText) {
    element->ns = NamespaceOf(b->session, target->nameSpace);
    FormArgument(b, element, form);
  } else {
    MarkArgument(element, form);
    if (DropText(element))
      AddFinding(b->report, Severity::kError, kExtensionClass, element,
                 FullName(instance) + " holds text", "only its argument may");
  }
  StatementOf(element)->argumentIsElement = form.argumentIsElement;
  const std::string fault = ArgumentFault(element, form);
  if (fault.empty()) return true;
  AddFinding(b->report, Severity::kError, kExtensionClass, element, FullName(instance) + fault);
  return false;
}

// Binds an instance to the module that its prefix or namespace means; false: it cannot
// be written. Where an import was not found nothing is known, and nothing said.
bool Bind(Binder* b, const ExtensionInstance& instance) {
  Module* file = b->module;
  const bool isText = file->file->isText;
  Module* target = isText ? ModuleOfPrefix(file, instance.prefix)
                          : ModuleOfNamespace(file, View(instance.element->ns->href));
  if (target != nullptr) return BindTo(b, instance, target);
  if (KnowsPrefix(file, instance.prefix)) return true;
  AddFinding(b->report, Severity::kError, kExtensionClass, instance.element,
             isText ? std::string("no import has the prefix '") + instance.prefix + "'"
                    : "no import has the namespace of " + FullName(instance),
             "import the module that defines the extension");
  return false;
}

}  // namespace

void BindPrefixes(Session* session, Module* module, Report* report) {
  DeclareNamespaces(module);
  Binder binder{session, module, report, {}};
  std::vector<xmlNode*> gone;
  for (const ExtensionInstance& instance : module->extensions) {
    if (!IsStatement(instance.element)) continue;  // an argument in YIN, by now
    if (!Bind(&binder, instance)) gone.push_back(instance.element);
  }
  module->extensions.clear();
  // Backwards: what stands inside goes before that around it.
  for (auto element = gone.rbegin(); element != gone.rend(); ++element) RemoveStatement(*element);
}

}  // namespace compiler
