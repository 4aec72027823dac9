// SPDX-License-Identifier: BSD-3-Clause
// What NETCONF puts around a message: the rpc of RFC 6241 (section 4.1), the action of
// RFC 7950 (section 7.15.2) and the notification of RFC 5277 (section 4). None of them is
// of a module, so they are checked here and not against a schema. Each holds one element
// more; their attributes are nobody's business but the agent's, message-id excepted.
#include "agent/envelope.h"

#include <qmodel/agent.h>

#include "agent/record.h"
#include "context/memory.h"
#include "context/xml_tree.h"
#include "platform/string.h"

bool IsNamed(const xmlNode* node, const char* name, const char* ns) {
  if (!IsElement(node) || RTK_StrCmp(ElementName(node), name) != 0) return false;
  const char* own = QM_XML_GetXmlNodeDefaultNs(node);
  return own != nullptr && RTK_StrCmp(own, ns) == 0;
}

static bool HasMessageId(const xmlNode* rpc) {
  const xmlAttr* attribute = rpc->properties;
  for (; attribute != nullptr; attribute = attribute->next) {
    if (attribute->ns == nullptr && attribute->name != nullptr &&
        RTK_StrCmp(XmlText(attribute->name), "message-id") == 0) {
      return true;
    }
  }
  return false;
}

// Makes the record, or leaves NULL when there is no memory for all of it.
static uint32_t Report(QmErrNode** error, uint32_t tag, const char* badElement,
                       const char* badAttribute, const char* message) {
  const uint32_t type = badAttribute != nullptr ? QM_ERR_TYPE_RPC : QM_ERR_TYPE_PROTOCOL;
  QmErrNode* err = NewMessageRecord(type, tag, message);
  if (QM_AGENT_SetRecordText(err, QM_AGENT_FIELD_BAD_ELEMENT, badElement) != QM_OK ||
      QM_AGENT_SetRecordText(err, QM_AGENT_FIELD_BAD_ATTRIBUTE, badAttribute) != QM_OK) {
    QM_FreeErrNode(err);
    err = nullptr;
  }
  *error = err;
  return QM_INVALID;
}

// The element is the only one, or the last, of its parent.
static uint32_t RefuseFurther(const xmlNode* element, QmErrNode** error) {
  const xmlNode* further = FirstElement(element->next);
  if (further == nullptr) return QM_OK;
  return Report(error, QM_ERR_TAG_UNKNOWN_ELEMENT, ElementName(further), nullptr,
                "There is more than one element where one is expected.");
}

static uint32_t TakeOnlyElement(const xmlNode* around, xmlNode** element, QmErrNode** error) {
  *element = FirstElement(around->children);
  if (*element != nullptr) return RefuseFurther(*element, error);
  return Report(error, QM_ERR_TAG_MISSING_ELEMENT, ElementName(around), nullptr,
                "There is no element where one is expected.");
}

uint32_t OpenRequest(xmlNode* request, Envelope* envelope, QmErrNode** error) {
  *envelope = {false, false, request};
  if (IsNamed(request, "rpc", kNetconfNamespace)) {
    envelope->rpc = true;
    if (!HasMessageId(request)) {
      return Report(error, QM_ERR_TAG_MISSING_ATTRIBUTE, "rpc", "message-id",
                    "The attribute message-id is missing.");
    }
    const uint32_t ret = TakeOnlyElement(request, &envelope->content, error);
    if (ret != QM_OK) return ret;
  }
  if (!IsNamed(envelope->content, "action", kYangNamespace)) return QM_OK;
  envelope->action = true;
  return TakeOnlyElement(envelope->content, &envelope->content, error);
}

uint32_t OpenNotification(xmlNode* notification, Envelope* envelope, QmErrNode** error) {
  *envelope = {false, false, notification};
  if (!IsNamed(notification, "notification", kEventNamespace)) return QM_OK;
  xmlNode* time = FirstElement(notification->children);
  if (!IsNamed(time, "eventTime", kEventNamespace)) {
    return Report(error, QM_ERR_TAG_MISSING_ELEMENT, "eventTime", nullptr,
                  "The element eventTime is missing.");
  }
  envelope->content = FirstElement(time->next);
  if (envelope->content != nullptr) return RefuseFurther(envelope->content, error);
  return Report(error, QM_ERR_TAG_MISSING_ELEMENT, "notification", nullptr,
                "There is no element where one is expected.");
}

xmlNode* QM_AGENT_GetOperation(xmlNode* request) noexcept {
  if (!IsElement(request)) return nullptr;
  xmlNode* content = request;
  if (IsNamed(content, "rpc", kNetconfNamespace)) content = FirstElement(content->children);
  if (!IsNamed(content, "action", kYangNamespace)) return content;
  return FirstElement(content->children);
}
