// SPDX-License-Identifier: Apache-2.0
// A schema from YANG sources, data that is checked against it, and what is found.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrdata/write.h>
#include <zrschema/zrschema.h>

#include <string>
#include <vector>

namespace datatest {

using Texts = std::vector<std::string>;

// The defaults for a kind.
ZrDataOptions Options(uint32_t kind);

class Schema {
public:
    // A YANG 1.1 module "m" with that body: namespace urn:m, prefix m.
    explicit Schema(const std::string &body = "", uint32_t flags = ZR_CTX_STANDARD);
    // Prepared modules of a folder, with what they import.
    Schema(const std::string &folder, const Texts &modules);
    ~Schema();
    Schema(const Schema &) = delete;
    Schema &operator=(const Schema &) = delete;

    // Whether a feature is on in the expressions of the modules that are added next.
    void Decide(const std::string &module, const std::string &feature, bool isOn);
    // A further module, with the namespace urn:NAME and the prefix NAME.
    void Add(const std::string &name, const std::string &body);
    // The same from the whole source of a module.
    void AddSource(const std::string &name, const std::string &source);
    ZrCtx *ctx() const { return ctx_; }

    // Plans are made when data is first checked, and again when the context has changed.
    const ZrDataPlan *plan();

    // What is wrong with the data, as "TAG[APP-TAG] PATH: MESSAGE", paths with "m:" left out. The
    // text is what stands in a wrapper whose default namespace is urn:m.
    Texts Check(const std::string &data, uint32_t kind = ZR_DATA_CONFIG);
    // The same of a whole document.
    Texts CheckDocument(const std::string &document, uint32_t kind = ZR_DATA_CONFIG);
    // The same of a message that is held against a datastore, "" for none; `operation` is that of a
    // reply. Both texts are whole documents.
    Texts CheckMessage(const std::string &document, uint32_t kind,
                       const std::string &datastore = "", const char *operation = nullptr);
    // The faults of the last check as XML.
    const Texts &xml() const { return xml_; }
    // The same of a document in JSON.
    Texts CheckJson(const std::string &document, uint32_t kind = ZR_DATA_CONFIG);
    // A valid document, XML or JSON, as it is written with the options.
    std::string Write(const std::string &document, const ZrDataWriteOptions &how,
                      uint32_t kind = ZR_DATA_CONFIG);
    // The lines and warnings of the last check.
    const std::vector<uint32_t> &lines() const { return lines_; }
    const Texts &warnings() const { return warnings_; }

private:
    using CheckFunc = decltype(ZR_DATA_CheckText);
    Texts Run(CheckFunc *check, const ZrDataOptions &options, const std::string &document);

    ZrCtx *ctx_;
    ZrDataPlan *plan_ = nullptr;
    std::vector<std::pair<std::string, std::string>> sources_;
    struct Decision {
        std::string module, feature;
        bool isOn;
    };
    std::vector<Decision> decisions_;
    std::vector<uint32_t> lines_;
    Texts warnings_, xml_;
};

// "TAG[APP-TAG] PATH: MESSAGE", paths with "m:" left out.
std::string Describe(const ZrDataError &error);

// A callback that appends to a std::string.
int AppendTo(const char *text, size_t length, void *string);

// The wrapper of Check() around a text.
std::string Wrap(const std::string &data);

} // namespace datatest
