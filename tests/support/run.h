// SPDX-License-Identifier: Apache-2.0
// Runs of the validator for tests: every request goes through as text and as a caller's tree, and
// the caller's tree is looked at before and after.
#pragma once

#include <libxml/tree.h>
#include <zrschema/zrschema.h>

#include <ostream>
#include <string>
#include <vector>

#include "data/check_records.h"
#include "support/context.h"

namespace zrtest {

// A record's fields as text; "-" stands for null.
struct Record {
    uint32_t type = 0;
    uint32_t severity = 0;
    uint32_t tag = 0;
    std::string appTag = "-";
    std::string path = "-";
    std::string message = "-";
    std::string badElement = "-";
    std::string badAttribute = "-";
    bool operator==(const Record &other) const = default;
};
void PrintTo(const Record &record, std::ostream *out);

// No fault; and a fault as the library records it: type application, severity error.
Record Valid();
Record Fault(uint32_t tag, const std::string &appTag, const std::string &path,
             const std::string &message, const std::string &badElement);
// The general record: tag operation-failed, path "/", nothing else.
Record General();
// Reads and frees a record; null gives Valid().
Record TakeRecord(ZrdErrNode *error);

// A document that is freed at the end of the scope. Blank text nodes are kept.
class Document {
public:
    explicit Document(const std::string &text);
    explicit Document(xmlDoc *doc) : doc_(doc) {}
    ~Document() { xmlFreeDoc(doc_); }
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;
    xmlDoc *get() const { return doc_; }
    xmlNode *top() const { return xmlDocGetRootElement(doc_); }
    // The whole document as text.
    std::string Dump() const;
    // The first element with that local name, or null.
    xmlNode *Find(const char *name) const;

private:
    xmlDoc *doc_;
};

struct Outcome {
    Record record;
    std::string document;              // the tree after the run
    std::vector<std::string> defaults; // "name" or "name=value" of each callback element, in order
};

// Validates a request as text and as a tree. Fails the test when the two differ, when a private
// pointer or a mark is left, or when a failed run left the tree changed.
Outcome ValidateRpc(ZrCtx *ctx, const std::string &text);
// The record of such a run alone.
Record RpcRecord(ZrCtx *ctx, const std::string &text);

struct NotifOutcome {
    uint32_t status = 0;
    std::string document; // "" without a callback call
};
NotifOutcome ValidateNotif(ZrCtx *ctx, const std::string &text);

// A run to call the phases with, ended without a leak.
class CheckRun {
public:
    CheckRun(ZrCtx *ctx, uint32_t mode);
    ~CheckRun();
    CheckRun(const CheckRun &) = delete;
    CheckRun &operator=(const CheckRun &) = delete;
    ZrdCheckAux *get() { return &check_; }
    ZrdCheckAux *operator->() { return &check_; }
    operator ZrdCheckAux *() { return &check_; }
    // The record as it stands now, which stays in the run.
    Record record() const;

private:
    ZrdCheckAux check_;
};

} // namespace zrtest
