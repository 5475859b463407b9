// SPDX-License-Identifier: Apache-2.0
#include "data/tree_guard.h"

#include <cstring>

#include "data/element.h"
#include "data/tree_changes.h"

namespace {

bool IsText(const xmlNode *node)
{
    return node != nullptr && node->type == XML_TEXT_NODE;
}

size_t LengthOf(const xmlNode *text)
{
    return text->content != nullptr ? std::strlen(reinterpret_cast<const char *>(text->content))
                                    : 0;
}

// The text of `first` and of the text nodes behind it, not yet in the tree; null without memory.
zr::JoinedText *Join(xmlNode *first)
{
    size_t length = 0;
    xmlNode *last = nullptr;
    for (xmlNode *text = first; IsText(text); text = text->next) {
        length += LengthOf(text);
        last = text;
    }
    auto *joined =
        reinterpret_cast<zr::JoinedText *>(zr::New<char>(sizeof(zr::JoinedText) + length + 1));
    if (joined == nullptr)
        return nullptr;
    auto *out = reinterpret_cast<xmlChar *>(joined + 1);
    joined->node.content = out;
    for (const xmlNode *text = first; text != last->next; text = text->next) {
        size_t size = LengthOf(text);
        if (size != 0)
            std::memcpy(out, text->content, size);
        out += size;
    }
    joined->node.type = XML_TEXT_NODE;
    joined->node.name = first->name;
    joined->node.doc = first->doc;
    joined->first = first;
    joined->last = last;
    return joined;
}

// Puts the nodes from `first` to `last` in the place of the first children, up to `oldLast`, of the
// element.
void Replace(xmlNode *element, const xmlNode *oldLast, xmlNode *first, xmlNode *last)
{
    xmlNode *behind = oldLast->next;
    element->children = first;
    last->next = behind;
    if (behind != nullptr)
        behind->prev = last;
    else
        element->last = last;
}

} // namespace

namespace zr {

TreeGuard::TreeGuard(xmlNode *top) : top_(top)
{
    size_t marked = 0;
    for (xmlNode *node = top; node != nullptr; node = NextElement(top, node)) {
        if (node->_private != nullptr) // most trees have none: they are only read here
            node->_private = nullptr;
        marked += ZRD_PAS_IsDefaultAddNode(node);
        if (IsText(node->children) && IsText(node->children->next))
            JoinTexts(node);
    }
    if (marked != 0)
        HideLines(marked);
}

TreeGuard::~TreeGuard()
{
    ZRD_PAS_ClearXmlTreePrivate(top_);
    for (size_t i = 0; i < lineCount_; ++i)
        MarkAsDefault(lines_[i]);
    while (JoinedText *joined = texts_) {
        texts_ = joined->next;
        Replace(joined->node.parent, &joined->node, joined->first, joined->last);
        Free(joined);
    }
}

void TreeGuard::HideLines(size_t marked)
{
    lines_.reset(New<xmlNode *>(marked));
    failed_ = failed_ || !lines_;
    for (xmlNode *node = top_; lineCount_ < marked && lines_; node = NextElement(top_, node)) {
        if (!ZRD_PAS_IsDefaultAddNode(node))
            continue;
        node->line = 0;
        lines_[lineCount_++] = node;
    }
}

void TreeGuard::JoinTexts(xmlNode *element)
{
    JoinedText *joined = Join(element->children);
    if (joined == nullptr) {
        failed_ = true;
        return;
    }
    joined->node.parent = element;
    joined->next = texts_;
    texts_ = joined;
    Replace(element, joined->last, &joined->node, &joined->node);
}

} // namespace zr
