#include "support/xml_alloc.h"

#include <libxml/globals.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>

namespace zrtest {

namespace {

struct {
    uint64_t count = 0;
    uint64_t failAt = UINT64_MAX;
    bool all = false;
} g_state;

bool Fails()
{
    uint64_t number = g_state.count++;
    return number == g_state.failAt || (g_state.all && number > g_state.failAt);
}

void *Malloc(size_t size)
{
    return Fails() ? nullptr : std::malloc(size);
}

void *Realloc(void *block, size_t size)
{
    return Fails() ? nullptr : std::realloc(block, size);
}

char *Strdup(const char *text)
{
    return Fails() ? nullptr : strdup(text);
}

uint64_t g_messages = 0;

void CountMessage(void *, const char *, ...)
{
    ++g_messages;
}

} // namespace

XmlAllocGuard::XmlAllocGuard()
{
    g_state = {};
    xmlMemSetup(std::free, Malloc, Realloc, Strdup);
    g_messages = 0;
    xmlSetGenericErrorFunc(nullptr, CountMessage);
}

XmlAllocGuard::~XmlAllocGuard()
{
    xmlSetGenericErrorFunc(nullptr, nullptr);
    xmlMemSetup(std::free, std::malloc, std::realloc, strdup);
}

void XmlAllocGuard::FailAt(uint64_t n, bool all)
{
    g_state = {0, n, all};
}

bool XmlAllocGuard::Stop()
{
    bool failed = g_state.count > g_state.failAt;
    g_state.failAt = UINT64_MAX;
    return failed;
}

uint64_t XmlAllocGuard::Count() const
{
    return g_state.count;
}

uint64_t XmlAllocGuard::Messages() const
{
    return g_messages;
}

} // namespace zrtest
