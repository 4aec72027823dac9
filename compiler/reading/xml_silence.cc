// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/xml_silence.h"

#include <libxml/globals.h>

namespace compiler {

static void DropError(void* /*context*/, xmlErrorPtr /*error*/) {}

XmlSilence::XmlSilence() : context_(xmlStructuredErrorContext), function_(xmlStructuredError) {
  xmlSetStructuredErrorFunc(nullptr, DropError);
}

XmlSilence::~XmlSilence() {
  xmlSetStructuredErrorFunc(context_, function_);
  xmlResetLastError();
}

}  // namespace compiler
