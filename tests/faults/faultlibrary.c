/* SPDX-License-Identifier: GPL-3.0-or-later */
#define _GNU_SOURCE
#include "faultlibrary.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

static struct zoravel_fault_plan plan;
static const char *log_file;
static long counted;
static const char *fired;
static char fired_path[PATH_MAX];

/* --- what is to be done --- */

void zoravel_fault_disarm(void)
{
    plan.path = NULL;
}

void zoravel_fault_arm(const struct zoravel_fault_plan *next)
{
    plan = *next;
    __atomic_store_n(&counted, 0, __ATOMIC_SEQ_CST);
    fired = NULL;
}

long zoravel_fault_counted(void)
{
    return __atomic_load_n(&counted, __ATOMIC_SEQ_CST);
}

const char *zoravel_fault_fired(void)
{
    return fired;
}

const char *zoravel_fault_fired_path(void)
{
    return fired_path;
}

static void fire(const char *call, const char *path)
{
    if (fired)
        return;
    snprintf(fired_path, sizeof fired_path, "%s", path);
    fired = call;
}

static long number_of(const char *name)
{
    const char *text = getenv(name);
    return text ? strtol(text, NULL, 10) : 0;
}

__attribute__((constructor)) static void read_environment(void)
{
    plan.calls = getenv("ZORAVEL_FAULT_CALLS");
    plan.action = getenv("ZORAVEL_FAULT_ACTION");
    plan.nth = number_of("ZORAVEL_FAULT_NTH");
    plan.always = (int)number_of("ZORAVEL_FAULT_ALWAYS");
    plan.no_nameless = (int)number_of("ZORAVEL_FAULT_NO_NAMELESS");
    plan.slow = (int)number_of("ZORAVEL_FAULT_SLOW");
    log_file = getenv("ZORAVEL_FAULT_LOG");
    plan.path = getenv("ZORAVEL_FAULT_PATH");
}

static const struct {
    const char *name;
    int number;
} errors[] = {
    {"ENOSPC", ENOSPC}, {"EIO", EIO},       {"EDQUOT", EDQUOT}, {"EACCES", EACCES},
    {"EROFS", EROFS},   {"EMFILE", EMFILE}, {"EPERM", EPERM},   {"EFBIG", EFBIG},
    {"ENFILE", ENFILE}, {"ENOMEM", ENOMEM}, {"EINTR", EINTR},   {"ESTALE", ESTALE},
    {"done", EIO},
};

static int error_number(const char *name)
{
    for (size_t i = 0; i < sizeof errors / sizeof *errors; ++i) {
        if (strcmp(errors[i].name, name) == 0)
            return errors[i].number;
    }
    fprintf(stderr, "fault library: there is no action %s\n", name);
    abort();
}

/* --- which calls --- */

/* Whether a comma-separated list, or no list, has a name. */
static int lists(const char *list, const char *name)
{
    const size_t length = strlen(name);
    if (!list || !*list)
        return 1;
    for (const char *at = list; at; at = strchr(at, ',')) {
        at += *at == ',';
        if (strncmp(at, name, length) == 0 && (at[length] == ',' || !at[length]))
            return 1;
    }
    return 0;
}

static const char *path_of(int descriptor, char *buffer)
{
    char link[64];
    snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = readlink(link, buffer, PATH_MAX - 1);
    buffer[length < 0 ? 0 : length] = '\0';
    return buffer;
}

/* A path as a call at a folder takes it. */
static const char *path_at(int folder, const char *path, char *buffer)
{
    if (folder == AT_FDCWD || (path && path[0] == '/'))
        return path;
    path_of(folder, buffer);
    strncat(buffer, "/", PATH_MAX - 1 - strlen(buffer));
    strncat(buffer, path ? path : "", PATH_MAX - 1 - strlen(buffer));
    return buffer;
}

static void note(const char *call, const char *path)
{
    char line[PATH_MAX + 64];
    const int length = snprintf(line, sizeof line, "%s %s\n", call, path);
    const int file = (int)syscall(SYS_openat, AT_FDCWD, log_file,
                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (file < 0)
        return;
    syscall(SYS_write, file, line, (size_t)length);
    syscall(SYS_close, file);
}

enum todo { CALL, FAIL, SHORT, CALL_AND_FAIL };

/* The calls that put a file in its place. */
static int places(const char *call)
{
    return strcmp(call, "rename") == 0 || strcmp(call, "link") == 0;
}

static void end_process(void)
{
    kill(getpid(), SIGKILL);
    pause();
}

/* What to do with a call; the number of the error is in errno if it is to fail. */
static enum todo next_for(const char *call, const char *path)
{
    if (!plan.path || !path || !strstr(path, plan.path) || !lists(plan.calls, call))
        return CALL;
    const long number = __atomic_add_fetch(&counted, 1, __ATOMIC_SEQ_CST);
    if (log_file)
        note(call, path);
    if (plan.slow > 0)
        usleep((useconds_t)plan.slow);
    if (!plan.action || plan.nth <= 0 || number < plan.nth || (number > plan.nth && !plan.always))
        return CALL;

    const int writes = strcmp(call, "write") == 0;
    if (strcmp(plan.action, "short") == 0 || strcmp(plan.action, "killshort") == 0) {
        if (writes)
            fire(call, path);
        return writes ? SHORT : CALL;
    }
    const int done = strcmp(plan.action, "done") == 0;
    if (done && !places(call))
        return CALL;
    fire(call, path);
    if (strcmp(plan.action, "kill") == 0)
        end_process();
    errno = error_number(plan.action);
    return done ? CALL_AND_FAIL : FAIL;
}

static enum todo next_for_file(const char *call, int descriptor)
{
    char buffer[PATH_MAX];
    return plan.path ? next_for(call, path_of(descriptor, buffer)) : CALL;
}

/* After a short write. */
static void maybe_end_process(void)
{
    if (strcmp(plan.action, "killshort") == 0)
        end_process();
}

/* The function of the next library in line. */
#define REAL(name)                                                                                 \
    static __typeof__(&name) real_##name;                                                          \
    if (!real_##name)                                                                              \
    *(void **)&real_##name = dlsym(RTLD_NEXT, #name)

/* --- open --- */

static mode_t mode_of(int flags, va_list *rest)
{
    const int makes = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
    return makes ? va_arg(*rest, mode_t) : 0;
}

static enum todo next_for_open(int folder, const char *path, int flags)
{
    char buffer[PATH_MAX];
    const int writes = (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT);
    const char *whole = plan.path ? path_at(folder, path, buffer) : NULL;
    if (plan.no_nameless && (flags & O_TMPFILE) == O_TMPFILE && whole && strstr(whole, plan.path)) {
        errno = EOPNOTSUPP;
        return FAIL;
    }
    return next_for(writes ? "open" : "openread", whole);
}

#define OPEN(name)                                                                                 \
    int name(const char *path, int flags, ...)                                                     \
    {                                                                                              \
        va_list rest;                                                                              \
        va_start(rest, flags);                                                                     \
        const mode_t mode = mode_of(flags, &rest);                                                 \
        va_end(rest);                                                                              \
        REAL(name);                                                                                \
        return next_for_open(AT_FDCWD, path, flags) == CALL ? real_##name(path, flags, mode) : -1; \
    }
OPEN(open)
OPEN(open64)

#define OPENAT(name)                                                                               \
    int name(int folder, const char *path, int flags, ...)                                         \
    {                                                                                              \
        va_list rest;                                                                              \
        va_start(rest, flags);                                                                     \
        const mode_t mode = mode_of(flags, &rest);                                                 \
        va_end(rest);                                                                              \
        REAL(name);                                                                                \
        return next_for_open(folder, path, flags) == CALL ? real_##name(folder, path, flags, mode) \
                                                          : -1;                                    \
    }
OPENAT(openat)
OPENAT(openat64)

#define CREAT(name)                                                                                \
    int name(const char *path, mode_t mode)                                                        \
    {                                                                                              \
        REAL(name);                                                                                \
        return next_for_open(AT_FDCWD, path, O_CREAT | O_WRONLY | O_TRUNC) == CALL                 \
                   ? real_##name(path, mode)                                                       \
                   : -1;                                                                           \
    }
CREAT(creat)
CREAT(creat64)

/* As the system does, a close that fails closes nevertheless. */
int close(int descriptor)
{
    REAL(close);
    if (next_for_file("close", descriptor) == CALL)
        return real_close(descriptor);
    const int error = errno;
    real_close(descriptor);
    errno = error;
    return -1;
}

/* --- write --- */

ssize_t write(int descriptor, const void *bytes, size_t size)
{
    REAL(write);
    const enum todo todo = next_for_file("write", descriptor);
    if (todo == FAIL)
        return -1;
    const ssize_t written = real_write(descriptor, bytes, todo == SHORT ? (size + 1) / 2 : size);
    if (todo == SHORT)
        maybe_end_process();
    return written;
}

#define PWRITE(name, offset_type)                                                                  \
    ssize_t name(int descriptor, const void *bytes, size_t size, offset_type offset)               \
    {                                                                                              \
        REAL(name);                                                                                \
        const enum todo todo = next_for_file("write", descriptor);                                 \
        if (todo == FAIL)                                                                          \
            return -1;                                                                             \
        const ssize_t written =                                                                    \
            real_##name(descriptor, bytes, todo == SHORT ? (size + 1) / 2 : size, offset);         \
        if (todo == SHORT)                                                                         \
            maybe_end_process();                                                                   \
        return written;                                                                            \
    }
PWRITE(pwrite, off_t)
PWRITE(pwrite64, off64_t)

/* A short one writes the first half of the pieces, or half of the only one. */
static int shortened(const struct iovec *pieces, int count, struct iovec *single)
{
    *single = pieces[0];
    single->iov_len = (single->iov_len + 1) / 2;
    return count / 2;
}

#define WRITEV(name, offset_parameter, offset_argument)                                            \
    ssize_t name(int descriptor, const struct iovec *pieces, int count offset_parameter)           \
    {                                                                                              \
        REAL(name);                                                                                \
        const enum todo todo = next_for_file("write", descriptor);                                 \
        struct iovec single;                                                                       \
        if (todo == FAIL)                                                                          \
            return -1;                                                                             \
        if (todo == CALL || count < 1)                                                             \
            return real_##name(descriptor, pieces, count offset_argument);                         \
        const int half = shortened(pieces, count, &single);                                        \
        const ssize_t written = half > 0 ? real_##name(descriptor, pieces, half offset_argument)   \
                                         : real_##name(descriptor, &single, 1 offset_argument);    \
        maybe_end_process();                                                                       \
        return written;                                                                            \
    }
#define COMMA ,
WRITEV(writev, , )
WRITEV(pwritev, COMMA off_t offset, COMMA offset)
WRITEV(pwritev64, COMMA off64_t offset, COMMA offset)

/* --- the rest --- */

#define ON_FILE(name, call, parameters, arguments)                                                 \
    int name parameters                                                                            \
    {                                                                                              \
        REAL(name);                                                                                \
        return next_for_file(call, descriptor) == CALL ? real_##name arguments : -1;               \
    }
ON_FILE(fsync, "fsync", (int descriptor), (descriptor))
ON_FILE(fdatasync, "fsync", (int descriptor), (descriptor))
ON_FILE(ftruncate, "ftruncate", (int descriptor, off_t size), (descriptor, size))
ON_FILE(ftruncate64, "ftruncate", (int descriptor, off64_t size), (descriptor, size))

#define ON_PATH(name)                                                                              \
    int name(const char *restrict path, struct name *restrict status)                              \
    {                                                                                              \
        REAL(name);                                                                                \
        return next_for("stat", path) == CALL ? real_##name(path, status) : -1;                    \
    }

/* What is kept of an old file. */
ON_PATH(stat)
ON_PATH(stat64)
ON_FILE(fstat, "fstat", (int descriptor, struct stat *status), (descriptor, status))
ON_FILE(fstat64, "fstat", (int descriptor, struct stat64 *status), (descriptor, status))
ON_FILE(fchmod, "fchmod", (int descriptor, mode_t mode), (descriptor, mode))
ON_FILE(fchown, "fchown", (int descriptor, uid_t owner, gid_t group), (descriptor, owner, group))
ON_FILE(fsetxattr, "fsetxattr",
        (int descriptor, const char *name, const void *value, size_t size, int flags),
        (descriptor, name, value, size, flags))

/* The outcome of a call of these that may be made and nevertheless fail. */
static int outcome(enum todo todo, int result)
{
    if (todo == CALL_AND_FAIL && result == 0)
        errno = EIO;
    return todo == CALL_AND_FAIL ? -1 : result;
}

int rename(const char *from, const char *to)
{
    REAL(rename);
    const enum todo todo = next_for("rename", to);
    return todo == FAIL ? -1 : outcome(todo, real_rename(from, to));
}

int renameat(int from_folder, const char *from, int to_folder, const char *to)
{
    char buffer[PATH_MAX];
    REAL(renameat);
    const enum todo todo = next_for("rename", path_at(to_folder, to, buffer));
    return todo == FAIL ? -1 : outcome(todo, real_renameat(from_folder, from, to_folder, to));
}

int renameat2(int from_folder, const char *from, int to_folder, const char *to, unsigned int flags)
{
    char buffer[PATH_MAX];
    REAL(renameat2);
    const enum todo todo = next_for("rename", path_at(to_folder, to, buffer));
    return todo == FAIL ? -1
                        : outcome(todo, real_renameat2(from_folder, from, to_folder, to, flags));
}

int link(const char *from, const char *to)
{
    REAL(link);
    const enum todo todo = next_for("link", to);
    return todo == FAIL ? -1 : outcome(todo, real_link(from, to));
}

int linkat(int from_folder, const char *from, int to_folder, const char *to, int flags)
{
    char buffer[PATH_MAX];
    REAL(linkat);
    const enum todo todo = next_for("link", path_at(to_folder, to, buffer));
    return todo == FAIL ? -1 : outcome(todo, real_linkat(from_folder, from, to_folder, to, flags));
}
