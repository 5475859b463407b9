/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file zryang.h
 * Preparing YANG modules: reads the `.yang` sources of RFC 7950 (YANG 1.1) and RFC 6020 (YANG 1),
 * checks them, and writes prepared YIN, the form that libzrschema loads.
 *
 * A workspace owns everything: the search directories, the modules that were read, the reports that
 * were made. Workspaces know nothing of each other and may be used at the same time; one workspace
 * serves one thread at a time. The library starts no threads, prints nothing and has no state
 * outside its workspaces.
 *
 * In the order of use: create, add directories, set the report callback, features and limits,
 * prepare, delete.
 */
#ifndef ZRYANG_ZRYANG_H
#define ZRYANG_ZRYANG_H
#include <stddef.h>
#include <stdint.h>
/** @def ZR_YANG_API
    Marks a function that the library exports under its own name. */
#if defined(__GNUC__)
#define ZR_YANG_API __attribute__((visibility("default")))
#else
#define ZR_YANG_API
#endif
#ifdef __cplusplus
extern "C" {
#endif

/** A workspace; only the library sees inside. */
typedef struct ZrYang ZrYang;

/** What the functions return. */
enum ZrYangStatus {
    ZR_YANG_OK = 0,            /**< done */
    ZR_YANG_ERR_FAULTY = 1,    /**< the module, or one that it needs, has errors: see the reports */
    ZR_YANG_ERR_NOT_FOUND = 2, /**< no source of that name in the directories */
    ZR_YANG_ERR_IO = 5,        /**< a file or directory cannot be read or written: see errno */
    ZR_YANG_ERR_NO_MEMORY = 12, /**< memory ran out */
    ZR_YANG_ERR_STOPPED = 4,    /**< a progress callback asked to stop */
    ZR_YANG_ERR_INVALID = 22    /**< a null or malformed argument */
};

/** How grave a report is. */
enum ZrYangSeverity {
    ZR_YANG_ERROR = 1,  /**< the module is not written */
    ZR_YANG_WARNING = 2 /**< the module is written all the same */
};

/** What a report is about. */
enum ZrYangCode {
    ZR_YANG_CODE_FILE = 1,      /**< a source that cannot be read or is no text */
    ZR_YANG_CODE_ENCODING = 2,  /**< bytes that are no UTF-8, or characters that YANG forbids */
    ZR_YANG_CODE_SYNTAX = 3,    /**< braces, semicolons, quotes (RFC 7950, section 6) */
    ZR_YANG_CODE_STATEMENT = 4, /**< a statement that is unknown, misplaced, missing or repeated */
    ZR_YANG_CODE_ARGUMENT = 5,  /**< the argument of a statement (RFC 7950, section 14) */
    ZR_YANG_CODE_LINKAGE = 6,   /**< import, include, belongs-to, revisions */
    ZR_YANG_CODE_NAME = 7,      /**< a prefix or a definition that is not known */
    ZR_YANG_CODE_DUPLICATE = 8, /**< one name twice in one name space */
    ZR_YANG_CODE_CIRCLE = 9,    /**< definitions or modules that need themselves */
    ZR_YANG_CODE_TYPE = 10,     /**< types and their restrictions (RFC 7950, section 9) */
    ZR_YANG_CODE_DEFAULT = 11,  /**< a default that is no value of its type, or out of place */
    ZR_YANG_CODE_XPATH = 12,    /**< the expressions of must and when */
    ZR_YANG_CODE_PATH = 13,     /**< leafref paths and the targets of augments and deviations */
    ZR_YANG_CODE_NODE = 14,     /**< keys, unique, mandatory, config (RFC 7950, section 7) */
    ZR_YANG_CODE_REFINE = 15,   /**< refine and deviate of what is not there or cannot have it */
    ZR_YANG_CODE_FEATURE = 16,  /**< an if-feature expression that prepared YIN cannot express */
    ZR_YANG_CODE_LIMIT = 17     /**< a limit of this library */
};

/** One thing that is wrong, or doubtful. All texts belong to the library. */
typedef struct ZrYangReport {
    const char *module;     /**< the module or submodule, "" when it has no name yet */
    const char *file;       /**< the file as it was found, "" when it belongs to none */
    uint32_t line;          /**< from 1; 0 when it belongs to no line */
    uint32_t column;        /**< in characters from 1; 0 without a line */
    uint32_t severity;      /**< ZrYangSeverity */
    uint32_t code;          /**< ZrYangCode */
    const char *message;    /**< one line of English */
    const char *sourceLine; /**< the line of the file, null without one; not NUL-terminated */
    size_t sourceLength;    /**< its bytes */
} ZrYangReport;

/**
 * Receives one report.
 *
 * @param report  valid during the call
 * @param user    as given with the callback
 */
typedef void (*ZrYangReportFunc)(const ZrYangReport *report, void *user);

/**
 * Receives one name.
 *
 * @param name  NUL-terminated, valid during the call
 * @param user  as given with the callback
 * @return 0 to go on, anything else to stop
 */
typedef int (*ZrYangNameFunc)(const char *name, void *user);

/**
 * Hears how far a run over all modules is.
 *
 * @param done   modules that have been dealt with
 * @param total  modules there are
 * @param name   the module that comes next, "" after the last
 * @param user   as given with the callback
 * @return 0 to go on, anything else to stop
 */
typedef int (*ZrYangProgressFunc)(size_t done, size_t total, const char *name, void *user);

/**
 * Where a workspace has its memory from. What libxml2 needs to read an import that is there as
 * prepared YIN alone, or to match a default with a pattern, comes from libxml2's own allocator and
 * is given back at once.
 */
typedef struct ZrYangMemory {
    /** Returns a block of `size` bytes that is aligned for any type, or null. */
    void *(*allocate)(size_t size, void *user);
    /** Takes a block back; never called with null. */
    void (*release)(void *block, void *user);
    void *user; /**< handed to both */
} ZrYangMemory;

/** What can be set; see ZR_YANG_SetOption(). */
enum ZrYangOption {
    ZR_YANG_OPTION_STRIP = 1,       /**< 1: leave descriptions, references, contacts and
                                         organizations out; 0, the default: write them */
    ZR_YANG_OPTION_NODE_LIMIT = 2,  /**< the schema nodes that one module may expand to, default
                                         1,000,000 */
    ZR_YANG_OPTION_REPORT_LIMIT = 3 /**< the reports of one file, default 100 */
};

/**
 * Creates an empty workspace.
 *
 * @param memory  copied; null for the C library's malloc() and free()
 * @return the workspace, to be deleted with ZR_YANG_Delete(), or null when memory runs out or a
 *         function of `memory` is null
 */
ZR_YANG_API ZrYang *ZR_YANG_Create(const ZrYangMemory *memory);

/**
 * Deletes a workspace with all that it owns.
 *
 * @param yang  the workspace; null is ignored
 */
ZR_YANG_API void ZR_YANG_Delete(ZrYang *yang);

/**
 * Adds a directory that is searched for `NAME.yang` and `NAME@REVISION.yang`, behind those that
 * were added before. It is listed once, now; its own directories are not entered.
 *
 * Where several files hold a module, the newest revision is taken, and of equal ones the first.
 * `NAME.yin` and `NAME@REVISION.yin`, prepared modules, stand in for sources that are not there,
 * where another module imports them.
 *
 * @param yang       the workspace
 * @param directory  a path
 * @retval ZR_YANG_OK             added
 * @retval ZR_YANG_ERR_IO         it cannot be listed; errno says why
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_AddDirectory(ZrYang *yang, const char *directory);

/**
 * Adds one file, which is preferred to what the directories hold under its name.
 *
 * @param yang  the workspace
 * @param path  a path that ends with ".yang"; read when the module is needed
 * @retval ZR_YANG_OK             added
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out
 * @retval ZR_YANG_ERR_INVALID    a null argument, or another ending
 */
ZR_YANG_API uint32_t ZR_YANG_AddFile(ZrYang *yang, const char *path);

/**
 * Adds a source from memory, which is preferred to what the directories hold under its name.
 *
 * @param yang    the workspace
 * @param name    what stands for the file in reports; the module's name, or NAME\@REVISION, with or
 *                without ".yang", or with ".yin" for a prepared module that others may import
 * @param text    the source; copied
 * @param length  its bytes
 * @retval ZR_YANG_OK             added
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_AddText(ZrYang *yang, const char *name, const char *text,
                                     size_t length);

/**
 * Sets who receives the reports. They come at the end of the call that made them, sorted by file,
 * line and column; without a callback they are dropped.
 *
 * @param yang  the workspace; null is ignored
 * @param func  the callback, which must not call back into the workspace; null for none
 * @param user  handed to the callback
 */
ZR_YANG_API void ZR_YANG_SetReportFunc(ZrYang *yang, ZrYangReportFunc func, void *user);

/**
 * Says whether a feature is on (RFC 7950, section 7.20.1).
 *
 * Single features, and such as are joined with "and", stay in what is written, and are decided when
 * it is used. Other expressions cannot be written: what was said here decides them, and a node
 * whose expression is false is left out. One that stays open is reported as a warning; its node is
 * kept as if the expression were true.
 *
 * @param yang     the workspace
 * @param module   a module's name, or "*" for every module of which nothing else is said
 * @param feature  a feature's name, or "*" for every feature of which nothing else is said
 * @param isOn     0 for off, anything else for on
 * @retval ZR_YANG_OK             kept; what was prepared before stays as it is
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_SetFeature(ZrYang *yang, const char *module, const char *feature,
                                        int isOn);

/**
 * Sets an option.
 *
 * @param yang    the workspace
 * @param option  a ZrYangOption
 * @param value   its value
 * @retval ZR_YANG_OK           set
 * @retval ZR_YANG_ERR_INVALID  a null workspace, an option that is not known, or a limit of 0
 */
ZR_YANG_API uint32_t ZR_YANG_SetOption(ZrYang *yang, uint32_t option, uint64_t value);

/**
 * Tells the names of all modules in the directories, in alphabetical order; submodules, which are
 * prepared with their modules, are not among them, nor what has no source. Files are read for that.
 *
 * @param yang  the workspace
 * @param func  hears each name
 * @param user  handed to `func`
 * @retval ZR_YANG_OK             all were told
 * @retval ZR_YANG_ERR_STOPPED    `func` asked to stop
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_ScanModules(ZrYang *yang, ZrYangNameFunc func, void *user);

/**
 * Tells the files that a module is made of, in the order in which they are read: its own, its
 * submodules', and those of what it imports.
 *
 * @param yang    the workspace
 * @param module  NAME or NAME\@REVISION
 * @param func    hears each path
 * @param user    handed to `func`
 * @return as ZR_YANG_PrepareToText(), and ZR_YANG_ERR_STOPPED when `func` asked to stop
 */
ZR_YANG_API uint32_t ZR_YANG_ScanDependencies(ZrYang *yang, const char *module, ZrYangNameFunc func,
                                              void *user);

/**
 * Prepares a module and hands out its text.
 *
 * The same sources, features and options give the same bytes in every run.
 *
 * @param yang       the workspace
 * @param module     NAME or NAME\@REVISION
 * @param textOut    receives the YIN document, NUL-terminated, which is the caller's, to be given
 *                   back with ZR_YANG_FreeText(); null when the module is not prepared
 * @param lengthOut  receives its bytes without the NUL; may be null
 * @retval ZR_YANG_OK             prepared; there may be warnings
 * @retval ZR_YANG_ERR_FAULTY     the module, or one that it imports, has errors
 * @retval ZR_YANG_ERR_NOT_FOUND  there is no source of that name and revision, which is reported
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out; the workspace can only be deleted
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_PrepareToText(ZrYang *yang, const char *module, char **textOut,
                                           size_t *lengthOut);

/**
 * Gives a text back.
 *
 * @param yang  the workspace that made it
 * @param text  the text; null is ignored
 */
ZR_YANG_API void ZR_YANG_FreeText(ZrYang *yang, char *text);

/**
 * Prepares a module and writes `DIRECTORY/NAME.yin`. The file appears whole or not at all: it is
 * written under another name and then renamed.
 *
 * @param yang       the workspace
 * @param module     NAME or NAME\@REVISION
 * @param directory  an existing directory
 * @return as ZR_YANG_PrepareToText(), and ZR_YANG_ERR_IO when the file cannot be written; errno
 *         says why
 */
ZR_YANG_API uint32_t ZR_YANG_PrepareToFile(ZrYang *yang, const char *module, const char *directory);

/**
 * Prepares every module that ZR_YANG_ScanModules() tells, each to a file of its own.
 *
 * @param yang       the workspace
 * @param directory  an existing directory
 * @param progress   hears of each module before its turn, and of the end; may be null
 * @param user       handed to `progress`
 * @retval ZR_YANG_OK             all were written
 * @retval ZR_YANG_ERR_FAULTY     some have errors and were not; the others were
 * @retval ZR_YANG_ERR_IO         a file cannot be written; errno says why, and the run ended there
 * @retval ZR_YANG_ERR_STOPPED    `progress` asked to stop
 * @retval ZR_YANG_ERR_NO_MEMORY  memory ran out; the workspace can only be deleted
 * @retval ZR_YANG_ERR_INVALID    a null argument
 */
ZR_YANG_API uint32_t ZR_YANG_PrepareAll(ZrYang *yang, const char *directory,
                                        ZrYangProgressFunc progress, void *user);

#ifdef __cplusplus
}
#endif
#endif
