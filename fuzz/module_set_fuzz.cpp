// SPDX-License-Identifier: Apache-2.0
// Several YIN files, loaded by name and from memory, coupled, printed and unloaded in an order that
// the input gives, with an allocation failing here and there.
//
// Input: a line of operations, each a letter and a digit; then the files, each a line
// "=== FILE.yin" and its text. The digit picks a file:
//   o  option bits of the context, in the first place only
//   l  load by name    m  load the text from memory    u  unload
//   d  delete the file    w  write it again    f  enable all features    p  read and print
//   z  the next operation has its n-th allocation fail; several digits in a row make one number
#include "support.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include <unistd.h>

namespace {

using namespace zrfuzz;

Goal g_loaded("a module is loaded by name");
Goal g_loadedFromMemory("a module is loaded from memory");
Goal g_refused("a module is refused, with an error");
Goal g_notFound("a module has no file");
Goal g_unloaded("a module is unloaded");
Goal g_enabled("features are enabled");
Goal g_shortOfMemory("an operation whose allocation fails does not succeed");
Goal g_augment("an augment has its target");
Goal g_relinked("the children of an augment find their target again");
Goal g_removed("a deviation removes a node");
Goal g_extDeviated("a deviation changes a node with extension instances");
Goal g_reloaded("a module is taken down to be built again");
Goal g_skipped("an extension instance is skipped");
Goal g_kept("an extension instance is kept");
Goal g_privateBack("private data comes back");

constexpr size_t kMaxFiles = 10;

struct File {
    std::string fileName;
    std::string module; // the file's name up to "@" or "."
    std::string text;
};

// A folder of this process, in memory where the system has such a place.
class Folder {
public:
    Folder()
    {
        std::error_code failed;
        std::filesystem::path place = "/dev/shm";
        if (access(place.c_str(), W_OK) != 0)
            place = std::filesystem::temp_directory_path();
        path_ = (place / ("zrschema-fuzz-" + std::to_string(getpid()))).string();
        std::filesystem::create_directories(path_, failed);
        Check(!failed, "a temporary folder is made");
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    const std::string &path() const { return path_; }
    void Write(const File &file) const
    {
        std::ofstream(path_ + "/" + file.fileName, std::ios::binary) << file.text;
    }
    void Delete(const File &file) const { unlink((path_ + "/" + file.fileName).c_str()); }

private:
    std::string path_;
};

bool IsFileName(const std::string &name)
{
    return !name.empty() && name.size() < 60 && name[0] != '.' &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                  "-_.@") == std::string::npos;
}

std::vector<File> ReadFiles(std::string_view rest)
{
    std::vector<File> files;
    for (const Part &part : ReadParts(rest)) {
        if (!IsFileName(part.name) || files.size() == kMaxFiles)
            break;
        files.push_back({part.name, part.name.substr(0, part.name.find_first_of("@.")), part.text});
    }
    return files;
}

// Which modules were ever loaded is not known to the input alone: every file's is a candidate.
void ForEachModule(ZrCtx *ctx, const std::vector<File> &files, void (*visit)(ZrCtx *, ZrMod *))
{
    for (const File &file : files) {
        if (ZrMod *module = ZR_CTX_GetModuleByModName(ctx, file.module.c_str()))
            visit(ctx, module);
    }
}

// Private data of nodes: each of them is handed back once. Callbacks are given nodes that are
// whole.
int64_t g_privateCount = 0;
char g_private;

uint32_t GivePrivate(ZrNode *node, uint32_t arrival, void *)
{
    if (arrival != ZR_ARRIVAL_PARENT && ZR_NODE_GetPrivate(node) == nullptr) {
        ZR_NODE_SetPrivate(node, &g_private);
        ++g_privateCount;
    }
    return 0;
}

uint32_t GivePrivateToTree(ZrNode *root, uint32_t, void *)
{
    return ZR_NODE_TreeScanAllNode(root, GivePrivate, nullptr);
}

void TakePrivate(ZrNode *node, void *privateData)
{
    Check(privateData == &g_private, "private data comes back as it was given");
    Check(ZR_NODE_GetNodeName(node) != nullptr, "with a node that is whole");
    --g_privateCount;
    g_privateBack.MeetIf(true);
}

void TouchChanged(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx)
{
    Check(ctx == sameCtx, "a callback is given its context twice");
    if (node == nullptr)
        return;
    char path[3096];
    ZR_NODE_GetNodePath(node, path, sizeof path);
    ZR_NODE_GetParentNode(node);
    GivePrivateToTree(node, 0, nullptr);
}

void TouchRelinked(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx)
{
    g_relinked.MeetIf(node != nullptr);
    TouchChanged(ctx, node, sameCtx);
}

void TouchRemoved(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx)
{
    g_removed.MeetIf(node != nullptr);
    TouchChanged(ctx, node, sameCtx);
}

void TouchExtDeviated(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx)
{
    g_extDeviated.MeetIf(node != nullptr);
    TouchChanged(ctx, node, sameCtx);
}

void TouchReloaded(ZrCtx *ctx, const char *moduleName)
{
    g_reloaded.MeetIf(true);
    Check(ZR_CTX_GetModuleByModName(ctx, moduleName) != nullptr, "a module is there until then");
}

uint32_t Filter(const char *moduleName, const char *extensionName)
{
    bool skips = moduleName[0] == extensionName[0];
    g_skipped.MeetIf(skips);
    g_kept.MeetIf(!skips);
    return skips;
}

void SetCallbacks(ZrCtx *ctx)
{
    ZR_CTX_SetPridataFreeFunc(ctx, TakePrivate);
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx, TouchRelinked);
    ZR_CTX_SetBeforeDeviateNotSupportFunc(ctx, TouchRemoved);
    ZR_CTX_SetBeforeDeviateExtInstFunc(ctx, TouchExtDeviated);
    ZR_CTX_SetReloadModuleCbFunc(ctx, TouchReloaded);
    ZR_CTX_SetExtInstFilterCbFunc(ctx, Filter);
}

uint32_t FindAugmented(ZrNode *augment, uint32_t, void *)
{
    g_augment.MeetIf(ZR_NODE_GetAugmentTargetNode(augment) != nullptr);
    return 0;
}

void Walk(ZrCtx *ctx, ZrMod *module)
{
    ZR_MOD_IterScanAugmentNode(module, FindAugmented, nullptr);
    WalkModule(ctx, module, true);
    ZR_MOD_IterScanTopmostNode(module, GivePrivateToTree, nullptr);
    ZR_MOD_IterScanAugmentNode(module, GivePrivateToTree, nullptr);
}

class Run {
public:
    Run(ZrCtx *ctx, const Folder &folder, const std::vector<File> &files)
        : ctx_(ctx), folder_(folder), files_(files)
    {
    }

    void Do(char operation, unsigned digit)
    {
        if (operation == 'z') {
            failAt_ = (failAt_ < 0 ? 0 : failAt_ * 10) + digit;
            return;
        }
        const File &file = files_[digit % files_.size()];
        FailAllocation(failAt_);
        uint32_t status = Change(operation, file);
        FailAllocation(-1);
        Reached(operation, status);
        failAt_ = -1;
        Check(operation == 'u' || IsLoadStatus(status), "an operation has a stated status");
        if (operation == 'p') {
            ForEachModule(ctx_, files_, Walk);
            WalkErrors(ctx_);
        }
    }

private:
    void Reached(char operation, uint32_t status) const
    {
        g_loaded.MeetIf(operation == 'l' && status == ZR_OK);
        g_loadedFromMemory.MeetIf(operation == 'm' && status == ZR_OK);
        g_refused.MeetIf(failAt_ < 0 && (status == ZR_ERR_FAILED || status == ZR_ERR_INVALID));
        g_notFound.MeetIf(operation == 'l' && status == ZR_ERR_NOT_FOUND);
        g_unloaded.MeetIf(operation == 'u' && status == ZR_OK);
        g_enabled.MeetIf(operation == 'f' && status == ZR_OK);
        g_shortOfMemory.MeetIf(failAt_ >= 0 && status != ZR_OK);
    }

    uint32_t Change(char operation, const File &file)
    {
        switch (operation) {
        case 'l':
            return ZR_CTX_LoadModule(ctx_, file.module.c_str());
        case 'm':
            return ZR_CTX_LoadMemory(ctx_, file.text.c_str());
        case 'u':
            return ZR_CTX_UnloadModule(ctx_, file.module.c_str());
        case 'f':
            return ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, file.module.c_str()), "*");
        case 'd':
            folder_.Delete(file);
            return 0;
        case 'w':
            folder_.Write(file);
            return 0;
        default:
            return 0;
        }
    }

    ZrCtx *ctx_;
    const Folder &folder_;
    const std::vector<File> &files_;
    int64_t failAt_ = -1;
};

// The digit that a character stands for; any other character stands for one of them.
unsigned Digit(char ch)
{
    return static_cast<unsigned char>(ch - '0') % 10;
}

// Bits of ZrCtxFlag, by the digit of "o"; the last three keep compiled patterns.
uint32_t OptionBits(const std::string &operations)
{
    constexpr uint32_t kBits[] = {0x00, 0x01, 0x02, 0x08, 0x10, 0x11, 0x0a, 0x3b, 0x20, 0x21};
    bool given = operations.size() > 1 && operations[0] == 'o';
    return given ? kBits[Digit(operations[1])] : kBits[0];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    static const Folder folder;
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    std::string operations = TakeLine(rest);
    operations.resize(operations.size() < 80 ? operations.size() : 80);
    std::vector<File> files = ReadFiles(rest);
    if (files.empty())
        return 0;
    for (const File &file : files)
        folder.Write(file);
    {
        Context ctx(OptionBits(operations));
        SetCallbacks(ctx);
        Check(ZR_CTX_SetSearchDir(ctx, folder.path().c_str()) == ZR_OK, "the folder is there");
        Run run(ctx, folder, files);
        for (size_t i = 0; i + 1 < operations.size(); i += 2)
            run.Do(operations[i], Digit(operations[i + 1]));
        run.Do('p', 0);
    }
    Check(g_privateCount == 0, "all private data is handed back");
    for (const File &file : files)
        folder.Delete(file);
    return 0;
}
