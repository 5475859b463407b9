// SPDX-License-Identifier: Apache-2.0
// Validates a request in a file: defaults are reported, the first fault is shown.
#include <zrschema/zrschema.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace {

struct DeleteContext {
    void operator()(ZrCtx *ctx) const { ZR_CTX_Delete(ctx); }
};
struct FreeError {
    void operator()(ZrdErrNode *error) const { ZR_FreeErrNode(error); }
};

void CountDefault(void *, void *count)
{
    ++*static_cast<int *>(count);
}

const char *OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: check_request ABSOLUTE_DIRECTORY MODULE FILE\n");
        return 2;
    }
    std::unique_ptr<ZrCtx, DeleteContext> ctx(ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS));
    if (ZR_CTX_SetSearchDir(ctx.get(), argv[1]) != ZR_OK ||
        ZR_CTX_LoadModule(ctx.get(), argv[2]) != ZR_OK) {
        std::fprintf(stderr, "cannot load %s\n", argv[2]);
        return 1;
    }
    std::stringstream text;
    text << std::ifstream(argv[3]).rdbuf();
    std::string request = text.str();
    int defaults = 0;
    std::unique_ptr<ZrdErrNode, FreeError> error(ZR_CTX_ValidateRpcDataTree(
        ctx.get(), ZR_VALUE_STRING, request.data(), CountDefault, &defaults));
    if (error == nullptr) {
        std::printf("valid, %d defaults completed\n", defaults);
        return 0;
    }
    std::printf("not valid: %s (at %s)\n", OrDash(ZR_GetErrorMessage(error.get())),
                OrDash(ZR_GetErrorPath(error.get())));
    return 1;
}
