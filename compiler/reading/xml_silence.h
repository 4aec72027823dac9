// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/xmlerror.h>

namespace compiler {

// While one lives, libxml2 writes nothing to standard error, which it does when memory is
// refused outside of a parse; and nothing of its last error is kept beyond.
class XmlSilence {
 public:
  XmlSilence();
  ~XmlSilence();
  XmlSilence(const XmlSilence&) = delete;
  XmlSilence& operator=(const XmlSilence&) = delete;

 private:
  void* context_;
  xmlStructuredErrorFunc function_;
};

}  // namespace compiler
