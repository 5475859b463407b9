// SPDX-License-Identifier: Apache-2.0
// Prepared YIN (RFC 7950, section 13): a module with its submodules, its groupings expanded.
#pragma once

#include "yang/expand/node.h"
#include "yang/names/features.h"
#include "yang/types/type.h"
#include "yang/yin/prefixes.h"
#include "yang/yin/xml.h"

namespace zr::yang {

class YinWriter {
public:
    YinWriter(Module &module, const FeatureStates &features, bool strip, Arena &arena,
              std::pmr::memory_resource *memory)
        : module_(module), features_(features), strip_(strip), memory_(memory),
          prefixes_(module, arena, memory), body_(memory), buffer_(memory)
    {
    }

    // The whole document.
    std::pmr::string Write();

private:
    void WriteHead(XmlText &head);
    void WriteBody();
    void WriteDefinitions(Keyword keyword);
    void WriteTypedefs();
    void WriteInstances();
    void WriteInstance(const Statement &statement, const Node *node);

    // Statements (statements.cpp).
    void WriteStatement(const Statement &statement);
    void WriteElement(const Statement &statement);
    void WriteSubStatements(const Statement &statement);
    bool OpenExtension(const Statement &statement);
    void CloseExtension(const Statement &statement);
    void WriteFeatureConditions(const Statement &statement);
    bool IsLeftOut(const Statement &statement) const;
    std::string_view ArgumentOf(const Statement &statement);
    std::string_view WriteReference(std::string_view reference, const Definition *definition);
    std::string_view WriteNodePath(const Statement &statement);
    std::string_view WriteDefault(const Statement &statement);

    // Nodes.
    void WriteNode(const Node &node);
    void WriteProperties(const Node &node);
    void WriteWhen(const Node &node);
    void WriteChildren(const Node &holder);
    void WriteAugments();

    Module &module_;
    const FeatureStates &features_;
    bool strip_;
    std::pmr::memory_resource *memory_;
    Prefixes prefixes_;
    XmlText body_;
    std::pmr::string buffer_;    // of the argument that is being written
    const Node *node_ = nullptr; // whose properties are being written
};

} // namespace zr::yang
