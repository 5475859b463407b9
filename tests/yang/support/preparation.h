// SPDX-License-Identifier: Apache-2.0
// Modules from texts, what preparing them gives, and what is reported.
#pragma once

#include <zryang/zryang.h>

#include <cstddef>
#include <string>
#include <vector>

namespace yangtest {

class Preparation {
public:
    explicit Preparation(const ZrYangMemory *memory = nullptr);
    ~Preparation();
    Preparation(const Preparation &) = delete;
    Preparation &operator=(const Preparation &) = delete;

    ZrYang *get() const { return yang_; }
    // A source under the name of a file.
    void Add(const std::string &name, const std::string &text);
    // A YANG 1.1 module with that body: its namespace is urn:NAME and its prefix NAME; the body
    // begins in the first line.
    void AddModule(const std::string &name, const std::string &body);

    // The status of preparing a module, whose text is kept.
    uint32_t Prepare(const std::string &name);
    const std::string &text() const { return text_; }
    // What was reported, as FILE:LINE:COLUMN: SEVERITY: MESSAGE.
    const std::vector<std::string> &reports() const { return reports_; }
    const std::vector<uint32_t> &codes() const { return codes_; }

private:
    static void Keep(const ZrYangReport *report, void *user);

    ZrYang *yang_;
    std::string text_;
    std::vector<std::string> reports_;
    std::vector<uint32_t> codes_;
};

// The source of a YANG 1.1 module as AddModule() makes it, and one of YANG 1.
std::string ModuleText(const std::string &name, const std::string &body);
std::string Module1Text(const std::string &name, const std::string &body);

// What is reported of a module "m" with that body, without its file's name.
std::vector<std::string> ReportsOf(const std::string &body);
// The same of a module of YANG 1.
std::vector<std::string> ReportsOf1(const std::string &body);

// The prepared text of a module "m" with that body from its first definition to its end; the
// reports when it is not prepared.
std::string BodyOf(const std::string &body);
// The same of what `preparation` holds as "m".
std::string BodyOf(Preparation &preparation, const std::string &name = "m");

// A folder that is there as long as the object.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    const std::string &path() const { return path_; }
    std::string Add(const std::string &name, const std::string &text) const;
    std::string Read(const std::string &name) const;

private:
    std::string path_;
};

} // namespace yangtest
