/* SPDX-License-Identifier: BSD-3-Clause */
/* Errors of the agent's own, as records of the kit: what the agent finds and what the
   library finds is answered in one form. A function that can fail gives a record, or NULL
   when all went well; the caller frees the record. */
#ifndef AGENT_FAULT_H
#define AGENT_FAULT_H

#include <libxml/tree.h>

#include <qmodel/agent.h>

/* An error of the protocol, and one of the application. */
QmErrNode *ProtocolFault(uint32_t tag, const char *message);
QmErrNode *Fault(uint32_t tag, const char *message);
/* An error of an element of a bound tree (schema.h), with its path; the message is a format
   with one %s for the element's name. The name is the element's unless another is given. */
QmErrNode *FaultAt(uint32_t tag, xmlNode *element, const char *format, const char *name);
/* Sets one more text of a record and gives the record. */
QmErrNode *With(QmErrNode *fault, uint32_t field, const char *text);

#endif
