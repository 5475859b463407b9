// SPDX-License-Identifier: Apache-2.0
// Where libxml2 2.9.14 itself crashes when it is short of memory: these functions, in the place of
// its own, let no allocation of theirs fail.
//
// xmlRegexpCompile() goes on with a state that it had no memory for. With its second allocation
// failing, this program crashes in it:
//
//     #include <libxml/xmlmemory.h>
//     #include <libxml/xmlregexp.h>
//     #include <stdlib.h>
//     #include <string.h>
//
//     static int left = 1;
//     static void *Malloc(size_t size) { return left-- > 0 ? malloc(size) : NULL; }
//
//     int main(void)
//     {
//         xmlMemSetup(free, Malloc, realloc, strdup);
//         xmlRegFreeRegexp(xmlRegexpCompile((const xmlChar *)"a"));
//     }
//
// xmlXPathCompiledEvalToBoolean() goes on without the context that it evaluates in, and with values
// that it could not make. It crashes here, as it does with later allocations of most expressions:
//
//     xmlXPathContext *context = xmlXPathNewContext(NULL);
//     xmlXPathCompExpr *expression = xmlXPathCompile((const xmlChar *)"1");
//     left = 0; /* of Malloc() above */
//     xmlXPathCompiledEvalToBoolean(expression, context);
#include <dlfcn.h>
#include <libxml/xmlregexp.h>
#include <libxml/xpath.h>

#include "support/alloc.h"

extern "C" xmlRegexp *xmlRegexpCompile(const xmlChar *regexp)
{
    static const auto compile =
        reinterpret_cast<xmlRegexp *(*)(const xmlChar *)>(dlsym(RTLD_NEXT, "xmlRegexpCompile"));
    zrtest::XmlAllocGuard::Pause pause;
    return compile(regexp);
}

extern "C" int xmlXPathCompiledEvalToBoolean(xmlXPathCompExpr *expression, xmlXPathContext *context)
{
    static const auto evaluate = reinterpret_cast<int (*)(xmlXPathCompExpr *, xmlXPathContext *)>(
        dlsym(RTLD_NEXT, "xmlXPathCompiledEvalToBoolean"));
    zrtest::XmlAllocGuard::Pause pause;
    return evaluate(expression, context);
}
