// SPDX-License-Identifier: Apache-2.0
// What a tree needs before a run, and what is taken back from it afterwards.
#pragma once

#include <libxml/tree.h>

#include <cstddef>

#include "platform/memory.h"

namespace zr {

// A text that stands in a tree for text nodes which follow one another.
struct JoinedText {
    JoinedText *next;
    xmlNode *first; // what it stands for
    xmlNode *last;
    xmlNode node; // its content is behind the record, in the same block
};

// Makes a tree ready for a run and puts it back at the end of the scope:
// - no private pointer may stand in it;
// - the mark of an added default is a line number, so elements that happen to stand on that line of
//   their document are without a line number meanwhile;
// - text nodes side by side, as an application's tree may have them, are one text, so that every
//   reader of a value sees the whole of it.
// Elements that stand in the tree at the beginning must be there at the end.
class TreeGuard {
public:
    explicit TreeGuard(xmlNode *top);
    ~TreeGuard();
    TreeGuard(const TreeGuard &) = delete;
    TreeGuard &operator=(const TreeGuard &) = delete;
    // Memory ran out: the tree is not ready.
    bool failed() const { return failed_; }

private:
    void HideLines(size_t marked);
    void JoinTexts(xmlNode *element);

    xmlNode *top_;
    Owned<xmlNode *[]> lines_; // the elements without their line number
    size_t lineCount_ = 0;
    JoinedText *texts_ = nullptr;
    bool failed_ = false;
};

} // namespace zr
