// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/records.h"

constexpr char kNetconfNamespace[] = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr char kYangNamespace[] = "urn:ietf:params:xml:ns:yang:1";
constexpr char kEventNamespace[] = "urn:ietf:params:xml:ns:netconf:notification:1.0";

// What stands around a message, and the message itself.
struct Envelope {
  bool rpc;          // an <rpc> is around it
  bool action;       // an <action> is around it
  xmlNode* content;  // the operation, data tree or notification
};

// Whether the node is an element of that name and namespace.
bool IsNamed(const xmlNode* node, const char* name, const char* ns);

// Find the content. 0, or 22 with a new record in *error (NULL without memory) for an
// envelope that is not as it should be.
uint32_t OpenRequest(xmlNode* request, Envelope* envelope, QmErrNode** error);
uint32_t OpenNotification(xmlNode* notification, Envelope* envelope, QmErrNode** error);
