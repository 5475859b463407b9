// SPDX-License-Identifier: Apache-2.0
// What libxml2 reports while it works for a library: nothing of it is printed or reaches the
// application's handler, and a shortage of memory is noticed, which many of libxml2's functions
// tell in no other way.
#pragma once

#include <libxml/globals.h>
#include <libxml/xmlerror.h>
#include <libxml/xpath.h>

namespace zr {

// Takes the reports of its thread for the length of a scope.
class XmlReports {
public:
    XmlReports() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, Take);
    }
    ~XmlReports() { xmlSetStructuredErrorFunc(context_, handler_); }
    XmlReports(const XmlReports &) = delete;
    XmlReports &operator=(const XmlReports &) = delete;

    // Whether libxml2 was short of memory: what it found or made meanwhile may lack a part.
    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    // libxml2's releases differ in whether the error is const.
    static void Take(void *self, auto *error)
    {
        if (error != nullptr && error->code == XML_ERR_NO_MEMORY)
            static_cast<XmlReports *>(self)->isOutOfMemory_ = true;
    }

    xmlStructuredErrorFunc handler_;
    void *context_;
    bool isOutOfMemory_ = false;
};

// The last error of an XPath context, which keeps its errors for itself: an xmlXPathError.
inline int XPathErrorOf(const xmlError &ofContext)
{
    constexpr int kOffset = static_cast<int>(XML_XPATH_EXPRESSION_OK) - XPATH_EXPRESSION_OK;
    return ofContext.code - kOffset;
}
inline bool IsShortOfMemory(const xmlError &ofContext)
{
    return ofContext.code == XML_ERR_NO_MEMORY || XPathErrorOf(ofContext) == XPATH_MEMORY_ERROR;
}

} // namespace zr
