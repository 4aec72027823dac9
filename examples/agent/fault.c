/* SPDX-License-Identifier: BSD-3-Clause */
#include "fault.h"

#include <stdio.h>
#include <stdlib.h>

#include "schema.h"
#include "text.h"

QmErrNode *With(QmErrNode *fault, uint32_t field, const char *text) {
  if (QM_AGENT_SetRecordText(fault, field, text) != 0) (void)Need(NULL);
  return fault;
}

QmErrNode *ProtocolFault(uint32_t tag, const char *message) {
  return With(Need(QM_AGENT_NewRecord(QM_ERR_TYPE_PROTOCOL, tag)), QM_AGENT_FIELD_MESSAGE, message);
}

QmErrNode *Fault(uint32_t tag, const char *message) {
  return With(Need(QM_AGENT_NewRecord(QM_ERR_TYPE_APPLICATION, tag)), QM_AGENT_FIELD_MESSAGE,
              message);
}

/* Replaces the one %s of the format. */
static char *Compose(const char *format, const char *name) {
  Text text = {NULL, 0, 0};
  for (const char *at = format; *at != '\0'; at++) {
    if (at[0] == '%' && at[1] == 's') {
      TextAdd(&text, name);
      at++;
    } else {
      TextAddBytes(&text, at, 1);
    }
  }
  return text.data;
}

QmErrNode *FaultAt(uint32_t tag, xmlNode *element, const char *format, const char *name) {
  const char *bad = name == NULL ? C(element->name) : name;
  char *message = Compose(format, bad);
  char *path = SchemaPath(element);
  QmErrNode *fault = Fault(tag, message);
  With(fault, QM_AGENT_FIELD_PATH, path);
  /* The other tags have no error-info, RFC 6241 appendix A. */
  if (tag >= QM_ERR_TAG_MISSING_ATTRIBUTE && tag <= QM_ERR_TAG_UNKNOWN_NAMESPACE)
    With(fault, QM_AGENT_FIELD_BAD_ELEMENT, bad);
  free(path);
  free(message);
  return fault;
}
