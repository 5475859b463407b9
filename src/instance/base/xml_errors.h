// What libxml2 reports while it works for the library: nothing of it is printed or reaches the
// application's handler, and a shortage of memory is noticed, which many of libxml2's functions
// tell in no other way.
#pragma once

#include <libxml/globals.h>
#include <libxml/xmlerror.h>
#include <libxml/xpath.h>

namespace zr::data {

// Takes the reports of its thread for the length of a scope.
class XmlErrors {
public:
    XmlErrors() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, Take);
    }
    ~XmlErrors() { xmlSetStructuredErrorFunc(context_, handler_); }
    XmlErrors(const XmlErrors &) = delete;
    XmlErrors &operator=(const XmlErrors &) = delete;

    // Whether libxml2 was short of memory: what it found or made meanwhile may lack a part.
    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    // libxml2's releases differ in whether the error is const.
    static void Take(void *self, auto *error)
    {
        if (error != nullptr && error->code == XML_ERR_NO_MEMORY)
            static_cast<XmlErrors *>(self)->isOutOfMemory_ = true;
    }

    xmlStructuredErrorFunc handler_;
    void *context_;
    bool isOutOfMemory_ = false;
};

// The same for an XPath context, which keeps its errors for itself.
inline bool IsShortOfMemory(const xmlError &ofContext)
{
    constexpr int kOffset = static_cast<int>(XML_XPATH_EXPRESSION_OK) - XPATH_EXPRESSION_OK;
    return ofContext.code == XML_ERR_NO_MEMORY || ofContext.code == XPATH_MEMORY_ERROR + kOffset;
}

} // namespace zr::data
