// What libxml2 reports while it works for the library: nothing of it is printed or reaches the
// application's handler, and a shortage of memory is noticed.
#pragma once

#include <libxml/xmlerror.h>

namespace zr {

// Takes libxml2's reports for the length of a scope. Its error handlers belong to the thread, so
// that other threads keep theirs.
class XmlErrors {
public:
    XmlErrors() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, Take);
    }
    ~XmlErrors() { xmlSetStructuredErrorFunc(context_, handler_); }
    XmlErrors(const XmlErrors &) = delete;
    XmlErrors &operator=(const XmlErrors &) = delete;

    // Whether libxml2 was short of memory. What it made meanwhile may lack a part.
    bool outOfMemory() const { return outOfMemory_; }

private:
    // A template, because libxml2's releases differ in whether the error is const.
    template <typename Error> static void Take(void *self, Error error)
    {
        if (error != nullptr && error->code == XML_ERR_NO_MEMORY)
            static_cast<XmlErrors *>(self)->outOfMemory_ = true;
    }

    xmlStructuredErrorFunc handler_;
    void *context_;
    bool outOfMemory_ = false;
};

} // namespace zr
