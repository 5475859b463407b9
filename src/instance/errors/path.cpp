// SPDX-License-Identifier: Apache-2.0
#include "instance/errors/path.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "instance/base/text.h"

namespace zr::data {

namespace {

class PathWriter {
public:
    PathWriter(std::pmr::string &out, std::pmr::vector<ZrDataPrefix> &prefixes)
        : out_(out), prefixes_(prefixes)
    {
    }

    void Write(const Element &element)
    {
        std::pmr::vector<const Element *> steps(out_.get_allocator().resource());
        for (const Element *at = &element; at->parent != nullptr; at = at->parent)
            steps.push_back(at);
        for (auto step = steps.rbegin(); step != steps.rend(); ++step)
            WriteStep(**step);
    }
    void WriteName(const PlanModule *module, std::string_view name)
    {
        if (module != nullptr) {
            (out_ += module->name) += ':';
            auto isKnown = [&](const ZrDataPrefix &known) { return known.prefix == module->name; };
            if (std::none_of(prefixes_.begin(), prefixes_.end(), isKnown))
                prefixes_.push_back(
                    {module->name.data(), reinterpret_cast<const char *>(module->xml.href)});
        }
        out_ += name;
    }

private:
    void WriteStep(const Element &element)
    {
        const PlanNode &plan = *element.plan;
        out_ += '/';
        WriteName(plan.module, plan.name);
        if (plan.kind == ZR_NODE_LEAF_LIST) {
            out_ += "[.=";
            AppendLiteral(out_, element.value);
            out_ += ']';
        } else if (plan.kind == ZR_NODE_LIST) {
            WriteEntry(element);
        }
    }
    // By the keys, or by the position where there are none, or not all are there.
    void WriteEntry(const Element &entry)
    {
        std::span<const PlanNode *> keys = entry.plan->keys;
        bool isWhole = std::all_of(keys.begin(), keys.end(), [&](const PlanNode *key) {
            return entry.firsts[key->slot] != nullptr;
        });
        if (keys.empty() || !isWhole) {
            uint32_t position = 1;
            for (const Element *at = entry.parent->firsts[entry.plan->slot]; at != &entry;
                 at = at->nextSame)
                ++position;
            std::array<char, 12> digits;
            out_ += '[';
            out_.append(digits.data(),
                        std::to_chars(digits.data(), digits.data() + digits.size(), position).ptr);
            out_ += ']';
            return;
        }
        for (const PlanNode *key : keys) {
            out_ += '[';
            WriteName(key->module, key->name);
            out_ += '=';
            AppendLiteral(out_, entry.firsts[key->slot]->value);
            out_ += ']';
        }
    }

    std::pmr::string &out_;
    std::pmr::vector<ZrDataPrefix> &prefixes_;
};

} // namespace

void AppendPath(const Element &element, std::pmr::string &out,
                std::pmr::vector<ZrDataPrefix> &prefixes)
{
    PathWriter(out, prefixes).Write(element);
}

void AppendPath(const Fault &fault, std::pmr::string &out, std::pmr::vector<ZrDataPrefix> &prefixes)
{
    PathWriter writer(out, prefixes);
    if (fault.at != nullptr)
        writer.Write(*fault.at);
    if (!fault.child.empty()) {
        out += '/';
        writer.WriteName(fault.childModule, fault.child);
    }
    if (out.empty())
        out += '/';
}

} // namespace zr::data
