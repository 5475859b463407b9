// SPDX-License-Identifier: Apache-2.0
#include "support/preparation.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace yangtest {

Preparation::Preparation(const ZrYangMemory *memory) : yang_(ZR_YANG_Create(memory))
{
    ZR_YANG_SetReportFunc(yang_, Keep, this);
}

Preparation::~Preparation()
{
    ZR_YANG_Delete(yang_);
}

void Preparation::Keep(const ZrYangReport *report, void *user)
{
    auto *self = static_cast<Preparation *>(user);
    std::string place = report->file;
    if (report->line != 0)
        place += ":" + std::to_string(report->line) + ":" + std::to_string(report->column);
    const char *severity = report->severity == ZR_YANG_ERROR ? "error" : "warning";
    self->reports_.push_back(place + ": " + severity + ": " + report->message);
    self->codes_.push_back(report->code);
}

void Preparation::Add(const std::string &name, const std::string &text)
{
    ZR_YANG_AddText(yang_, name.c_str(), text.data(), text.size());
}

void Preparation::AddModule(const std::string &name, const std::string &body)
{
    Add(name + ".yang", ModuleText(name, body));
}

uint32_t Preparation::Prepare(const std::string &name)
{
    char *text = nullptr;
    size_t length = 0;
    uint32_t status = ZR_YANG_PrepareToText(yang_, name.c_str(), &text, &length);
    text_.assign(text != nullptr ? text : "", length);
    ZR_YANG_FreeText(yang_, text);
    return status;
}

std::string ModuleText(const std::string &name, const std::string &body)
{
    return "module " + name + " { yang-version 1.1; namespace urn:" + name + "; prefix " + name +
           ";" + body + "}\n";
}

std::string Module1Text(const std::string &name, const std::string &body)
{
    return "module " + name + " { namespace urn:" + name + "; prefix " + name + ";" + body + "}\n";
}

namespace {

std::vector<std::string> ReportsOfText(const std::string &text)
{
    Preparation preparation;
    preparation.Add("m.yang", text);
    preparation.Prepare("m");
    std::vector<std::string> reports = preparation.reports();
    for (std::string &report : reports)
        report.erase(0, std::string("m.yang:").size());
    return reports;
}

} // namespace

std::vector<std::string> ReportsOf(const std::string &body)
{
    return ReportsOfText(ModuleText("m", body));
}

std::vector<std::string> ReportsOf1(const std::string &body)
{
    return ReportsOfText(Module1Text("m", body));
}

std::string BodyOf(Preparation &preparation, const std::string &name)
{
    if (preparation.Prepare(name) != ZR_YANG_OK) {
        std::string all;
        for (const std::string &report : preparation.reports())
            all += report + "\n";
        return all;
    }
    const std::string &text = preparation.text();
    const std::string prefix = "  <prefix value=\"" + name + "\"/>\n";
    size_t start = text.find(prefix);
    size_t import = text.rfind("  </import>\n");
    start = import != std::string::npos ? import + 12 : start + prefix.size();
    return text.substr(start, text.size() - start - std::string("</module>\n").size());
}

std::string BodyOf(const std::string &body)
{
    Preparation preparation;
    preparation.AddModule("m", body);
    return BodyOf(preparation);
}

Folder::Folder()
{
    std::string name = (std::filesystem::temp_directory_path() / "zryang-XXXXXX").string();
    path_ = mkdtemp(name.data());
}

Folder::~Folder()
{
    std::filesystem::remove_all(path_);
}

std::string Folder::Add(const std::string &name, const std::string &text) const
{
    std::string path = path_ + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::string Folder::Read(const std::string &name) const
{
    std::ifstream file(path_ + "/" + name, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace yangtest
