// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <gtest/gtest.h>
#include <libxml/tree.h>

#include <string>
#include <vector>

#include <qmodel/qmodel.h>

// What the tests of validation share: small models, documents and verdicts.
namespace message_fixture {

// A context of its own; Load() fails the test when the module does not load.
class Schema {
 public:
  Schema();
  ~Schema();
  Schema(const Schema&) = delete;
  Schema& operator=(const Schema&) = delete;

  void Load(const std::string& name, const std::string& body);
  QmCtx* ctx() const { return ctx_; }

 private:
  QmCtx* ctx_;
};

// A parsed document. Blanks between elements are dropped.
class Document {
 public:
  explicit Document(const std::string& text);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  xmlDoc* doc() const { return doc_; }
  xmlNode* root() const { return xmlDocGetRootElement(doc_); }
  // The root element as text, without indentation.
  std::string Dump() const;
  // The first element of that name in document order.
  xmlNode* Find(const std::string& name) const;
  // Elements with a binding.
  size_t BoundElements() const;

 private:
  xmlDoc* doc_;
};

// "valid", or "tag|path|message|bad-element|app-tag" with "-" for what is NULL.
// Frees the record. Every record must have type 4, severity 1 and no bad-attribute.
std::string Describe(QmErrNode* err);

std::string ValidateRpc(QmCtx* ctx, const std::string& text);
std::string ValidateRpc(QmCtx* ctx, const Document& doc);
// Also stores the names of the default elements that the callback was given.
std::string ValidateRpc(QmCtx* ctx, const Document& doc, std::vector<std::string>* added);

// The text handed to the callback, without the XML declaration, its line breaks
// and indentation; or the status as a number.
std::string ValidateNotif(QmCtx* ctx, const std::string& text);

}  // namespace message_fixture
