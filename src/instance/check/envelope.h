// SPDX-License-Identifier: Apache-2.0
// The elements that carry data and messages (RFC 6241, RFC 5277 and RFC 7950, section 7.15.2).
#pragma once

#include <libxml/tree.h>

#include <string_view>

#include "instance/check/run.h"

namespace zr::data {

constexpr const char *kYangNamespace = "urn:ietf:params:xml:ns:yang:1";
constexpr const char *kNmdaNamespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-nmda";

bool IsNamed(const xmlNode &element, std::string_view name, std::string_view ns);
// The first child element of that name; null when there is none.
const xmlNode *FindInner(const xmlNode &element, std::string_view name, std::string_view ns);

// A fault of an element of an envelope, which is in no schema.
Fault FaultOfEnvelope(Run &run, const xmlNode &element, uint32_t tag);

// The one element that an envelope holds, but for one to pass over; null, with a fault, when there
// is none or more than one. `what` names it in messages.
const xmlNode *TakeOnly(Run &run, const xmlNode &envelope, const xmlNode *passedOver,
                        const char *what);

// What an "rpc" holds, where the element is one, else the element; null after a fault.
const xmlNode *OpenRpc(Run &run, const xmlNode &root);
// The data of an edit: what "edit-config" and "edit-data" hold in their "config", where the element
// is one of these, else the element. `defaultOperation` receives what they say of it.
const xmlNode *OpenEdit(Run &run, const xmlNode &root, Operation &defaultOperation);
// What a "notification" holds, where the element is one, else the element; null after a fault.
const xmlNode *OpenNotification(Run &run, const xmlNode &root);

} // namespace zr::data
