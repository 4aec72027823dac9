// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/qmodel.h>

#include <string>

// A context with a module "m" (namespace "urn:m", prefix "m") made from the text of its
// body, for tests that want types as the loader makes them.
class LeafModule {
 public:
  explicit LeafModule(const std::string& body, uint32_t loadFlags = 0);
  ~LeafModule();
  LeafModule(const LeafModule&) = delete;
  LeafModule& operator=(const LeafModule&) = delete;

  // Loads one more module; namespace and prefix follow from the name. `head` stands for
  // its imports.
  void Add(const std::string& name, const std::string& head, const std::string& body);

  QmCtx* ctx() { return ctx_; }
  // A top-level node of "m", and the type of a top-level leaf.
  QmsNode* NodeOf(const char* name);
  QmtType* TypeOf(const char* name);

  // Checks a value of a top-level leaf, given as text or as an element.
  uint32_t CheckText(const char* leaf, const char* value);
  uint32_t CheckElement(const char* leaf, const std::string& xml);

 private:
  QmCtx* ctx_;
};

// Typedefs t0 to t<count-1>: t0 has the given type, each other one is the one before it.
std::string TypedefChain(unsigned count, const std::string& bottom);
