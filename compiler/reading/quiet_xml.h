// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// libxml2 prints what goes wrong, refused memory among it, unless it is told not to, and
// keeps the last error. While an object of this lives it does neither; what was set
// before is set again.
#include <libxml/globals.h>
#include <libxml/xmlerror.h>

namespace compiler {

class QuietXml {
 public:
  QuietXml() noexcept : handler_(xmlStructuredError), context_(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, Ignore);
  }
  ~QuietXml() {
    xmlResetLastError();
    xmlSetStructuredErrorFunc(context_, handler_);
  }
  QuietXml(const QuietXml&) = delete;
  QuietXml& operator=(const QuietXml&) = delete;

 private:
  static void Ignore(void* /*context*/, xmlErrorPtr /*error*/) {}

  xmlStructuredErrorFunc handler_;
  void* context_;
};

}  // namespace compiler
