/* A library to be loaded before all others (LD_PRELOAD): lets chosen calls fail that change files.
 *
 * Counted is what changes something below FAILING_CALLS_FOLDER, from the moment on when the first number of the
 * control file is not 0. FAILING_CALLS_CONTROL names that file; it is shared memory, so that a program that runs
 * can be armed and asked from outside. Numbers have 64 bits, in the machine's order:
 *
 *   0  armed: calls are counted
 *   1  which: the call that fails, counted from 1; 0 for none
 *   2  mode: ONCE, only this call; FULL, from it on all that need room on the disk; SHORT, a writing call does half
 *      of its work and the next one to that file fails, other calls as ONCE
 *   3  counted: the calls so far
 *   4  failed: how many of them have failed
 *   5  free
 *   6  the calls, 128 characters each with a 0 behind them: a name and the last part of the path
 *
 * A failing call does nothing, but close() closes. Calls that only read are left alone, as are those of programs
 * that the program starts. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

enum mode { ONCE, FULL, SHORT };
enum { MOST_CALLS = 4096, CALL_LENGTH = 128 };

struct control {
    _Atomic uint64_t armed, which, mode, counted, failed, unused;
    char calls[MOST_CALLS][CALL_LENGTH];
};

static struct control *control;
static char folder[PATH_MAX];
static _Atomic int broken_descriptor = -1; /* where the half of a write was the last that went well */

__attribute__((constructor)) static void begin(void)
{
    const char *wanted = getenv("FAILING_CALLS_FOLDER");
    const char *file = getenv("FAILING_CALLS_CONTROL");
    unsetenv("LD_PRELOAD");
    if (!wanted || !file || !realpath(wanted, folder))
        return;
    const int descriptor = open(file, O_RDWR | O_CLOEXEC);
    void *memory = mmap(NULL, sizeof(struct control), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (descriptor < 0 || memory == MAP_FAILED) {
        fprintf(stderr, "failing calls: no control file %s\n", file);
        _exit(99);
    }
    close(descriptor);
    control = memory;
}

static int armed(void)
{
    return control && control->armed != 0;
}

static int is_below(const char *path)
{
    const size_t length = strlen(folder);
    return strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

static const char *path_of_descriptor(int descriptor, char *buffer)
{
    char link[32];
    snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = readlink(link, buffer, PATH_MAX - 1);
    buffer[length < 0 ? 0 : length] = '\0';
    return buffer;
}

/* Of a name as the calls with "at" get it. */
static const char *path_at(int directory, const char *name, char *buffer)
{
    if (name[0] == '/')
        return name;
    char before[PATH_MAX];
    if (directory != AT_FDCWD)
        path_of_descriptor(directory, before);
    else if (!getcwd(before, sizeof before))
        before[0] = '\0';
    if (snprintf(buffer, PATH_MAX, "%s/%s", before, name) >= PATH_MAX)
        buffer[0] = '\0';
    return buffer;
}

/* Counts the call; whether it is one that fails. */
static int fails(const char *call, const char *path, int needs_room)
{
    if (!is_below(path))
        return 0;
    const int code = errno;
    const uint64_t number = atomic_fetch_add(&control->counted, 1) + 1;
    const uint64_t which = control->which;
    const char *name = strrchr(path, '/');
    if (number <= MOST_CALLS)
        snprintf(control->calls[number - 1], CALL_LENGTH, "%s %.90s", call, name ? name + 1 : path);
    errno = code;
    const int rest = control->mode == FULL && needs_room && number > which;
    if (which == 0 || (number != which && !rest))
        return 0;
    if (control->mode == FULL && !needs_room)
        return 0;
    atomic_fetch_add(&control->failed, 1);
    return 1;
}

static int path_fails(const char *call, int directory, const char *name, int needs_room)
{
    char buffer[PATH_MAX];
    return armed() && name && fails(call, path_at(directory, name, buffer), needs_room);
}

static int descriptor_fails(const char *call, int descriptor, int needs_room)
{
    char buffer[PATH_MAX];
    return armed() && fails(call, path_of_descriptor(descriptor, buffer), needs_room);
}

/* How much of a write of `size` bytes is done; -1 for nothing at all. */
static ssize_t allowed(const char *call, int descriptor, size_t size)
{
    if (!armed())
        return (ssize_t)size;
    int broken = descriptor;
    if (atomic_compare_exchange_strong(&broken_descriptor, &broken, -1))
        return -1;
    if (!descriptor_fails(call, descriptor, 1))
        return (ssize_t)size;
    if (control->mode != SHORT || size < 2)
        return -1;
    broken_descriptor = descriptor;
    return (ssize_t)(size / 2);
}

#define REAL(result, name, ...)                                                                                \
    static result (*real)(__VA_ARGS__);                                                                        \
    if (!real)                                                                                                 \
    real = (result(*)(__VA_ARGS__))dlsym(RTLD_NEXT, #name)

#define FAIL_WITH(code) return errno = (code), -1

/* ---- opening */

static int opening_fails(int directory, const char *path, int flags)
{
    if ((flags & O_ACCMODE) == O_RDONLY && !(flags & O_CREAT))
        return 0;
    const int creates = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
    return path_fails(creates ? "open(create)" : "open(write)", directory, path, creates);
}

static int opening_code(int flags)
{
    return control->mode == FULL && (flags & (O_CREAT | O_TMPFILE)) ? ENOSPC : EACCES;
}

#define OPEN(name)                                                                                             \
    int name(const char *path, int flags, ...)                                                                 \
    {                                                                                                          \
        REAL(int, name, const char *, int, ...);                                                               \
        va_list rest;                                                                                          \
        va_start(rest, flags);                                                                                 \
        const mode_t mode = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(rest, mode_t) : 0;  \
        va_end(rest);                                                                                          \
        if (opening_fails(AT_FDCWD, path, flags))                                                              \
            FAIL_WITH(opening_code(flags));                                                                    \
        return real(path, flags, mode);                                                                        \
    }
OPEN(open)
OPEN(open64)

#define OPENAT(name)                                                                                           \
    int name(int directory, const char *path, int flags, ...)                                                  \
    {                                                                                                          \
        REAL(int, name, int, const char *, int, ...);                                                          \
        va_list rest;                                                                                          \
        va_start(rest, flags);                                                                                 \
        const mode_t mode = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(rest, mode_t) : 0;  \
        va_end(rest);                                                                                          \
        if (opening_fails(directory, path, flags))                                                             \
            FAIL_WITH(opening_code(flags));                                                                    \
        return real(directory, path, flags, mode);                                                             \
    }
OPENAT(openat)
OPENAT(openat64)

#define OPEN_CHECKED(name)                                                                                     \
    int name(const char *path, int flags);                                                                     \
    int name(const char *path, int flags)                                                                      \
    {                                                                                                          \
        REAL(int, name, const char *, int);                                                                    \
        if (opening_fails(AT_FDCWD, path, flags))                                                              \
            FAIL_WITH(opening_code(flags));                                                                    \
        return real(path, flags);                                                                              \
    }
OPEN_CHECKED(__open_2)
OPEN_CHECKED(__open64_2)

int close(int descriptor)
{
    REAL(int, close, int);
    const int flags = armed() ? fcntl(descriptor, F_GETFL) : -1;
    const int writes = flags >= 0 && (flags & O_ACCMODE) != O_RDONLY && !(flags & O_PATH);
    const int failing = writes && descriptor_fails("close", descriptor, 0);
    int broken = descriptor;
    atomic_compare_exchange_strong(&broken_descriptor, &broken, -1);
    const int result = real(descriptor);
    if (failing)
        FAIL_WITH(EIO);
    return result;
}

/* ---- writing */

ssize_t write(int descriptor, const void *bytes, size_t size)
{
    REAL(ssize_t, write, int, const void *, size_t);
    const ssize_t count = allowed("write", descriptor, size);
    if (count < 0)
        FAIL_WITH(ENOSPC);
    return real(descriptor, bytes, (size_t)count);
}

#define PWRITE(name)                                                                                           \
    ssize_t name(int descriptor, const void *bytes, size_t size, off_t offset)                                 \
    {                                                                                                          \
        REAL(ssize_t, name, int, const void *, size_t, off_t);                                                 \
        const ssize_t count = allowed("pwrite", descriptor, size);                                             \
        if (count < 0)                                                                                         \
            FAIL_WITH(ENOSPC);                                                                                 \
        return real(descriptor, bytes, (size_t)count, offset);                                                 \
    }
PWRITE(pwrite)
PWRITE(pwrite64)

ssize_t writev(int descriptor, const struct iovec *pieces, int count)
{
    REAL(ssize_t, writev, int, const struct iovec *, int);
    size_t size = 0;
    for (int i = 0; i < count; ++i)
        size += pieces[i].iov_len;
    const ssize_t done = allowed("writev", descriptor, size);
    if (done < 0)
        FAIL_WITH(ENOSPC);
    if ((size_t)done == size)
        return real(descriptor, pieces, count);
    const size_t first = pieces[0].iov_len < (size_t)done ? pieces[0].iov_len : (size_t)done;
    return write(descriptor, pieces[0].iov_base, first);
}

/* ---- all others: the real call unless it fails */

// Lists of parameters and their types cannot stand in parentheses of their own.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define OF_DESCRIPTOR(name, what, code, needs_room, parameters, types, arguments)                              \
    int name parameters                                                                                        \
    {                                                                                                          \
        static int(*real) types;                                                                               \
        if (!real)                                                                                             \
            real = (int(*) types)dlsym(RTLD_NEXT, #name);                                                      \
        if (descriptor_fails(what, descriptor, needs_room))                                                    \
            FAIL_WITH(code);                                                                                   \
        return real arguments;                                                                                 \
    }
OF_DESCRIPTOR(ftruncate, "ftruncate", EIO, 0, (int descriptor, off_t size), (int, off_t), (descriptor, size))
OF_DESCRIPTOR(ftruncate64, "ftruncate", EIO, 0, (int descriptor, off_t size), (int, off_t), (descriptor, size))
OF_DESCRIPTOR(fallocate, "fallocate", ENOSPC, 1, (int descriptor, int mode, off_t offset, off_t size),
              (int, int, off_t, off_t), (descriptor, mode, offset, size))
OF_DESCRIPTOR(fallocate64, "fallocate", ENOSPC, 1, (int descriptor, int mode, off_t offset, off_t size),
              (int, int, off_t, off_t), (descriptor, mode, offset, size))
OF_DESCRIPTOR(fsync, "fsync", EIO, 0, (int descriptor), (int), (descriptor))
OF_DESCRIPTOR(fdatasync, "fdatasync", EIO, 0, (int descriptor), (int), (descriptor))
OF_DESCRIPTOR(fchmod, "fchmod", EACCES, 0, (int descriptor, mode_t mode), (int, mode_t), (descriptor, mode))

#define OF_PATH(name, what, needs_room, directory, path, parameters, types, arguments)                         \
    int name parameters                                                                                        \
    {                                                                                                          \
        static int(*real) types;                                                                               \
        if (!real)                                                                                             \
            real = (int(*) types)dlsym(RTLD_NEXT, #name);                                                      \
        if (path_fails(what, directory, path, needs_room))                                                     \
            FAIL_WITH(control->mode == FULL ? ENOSPC : EACCES);                                                \
        return real arguments;                                                                                 \
    }
// NOLINTEND(bugprone-macro-parentheses)
OF_PATH(rename, "rename", 0, AT_FDCWD, to, (const char *from, const char *to), (const char *, const char *),
        (from, to))
OF_PATH(renameat, "rename", 0, toFolder, to, (int folder_of, const char *from, int toFolder, const char *to),
        (int, const char *, int, const char *), (folder_of, from, toFolder, to))
OF_PATH(renameat2, "rename", 0, toFolder, to,
        (int folder_of, const char *from, int toFolder, const char *to, unsigned flags),
        (int, const char *, int, const char *, unsigned), (folder_of, from, toFolder, to, flags))
OF_PATH(link, "link", 1, AT_FDCWD, to, (const char *from, const char *to), (const char *, const char *),
        (from, to))
OF_PATH(linkat, "link", 1, toFolder, to,
        (int folder_of, const char *from, int toFolder, const char *to, int flags),
        (int, const char *, int, const char *, int), (folder_of, from, toFolder, to, flags))
OF_PATH(symlink, "symlink", 1, AT_FDCWD, to, (const char *from, const char *to), (const char *, const char *),
        (from, to))
OF_PATH(unlink, "unlink", 0, AT_FDCWD, path, (const char *path), (const char *), (path))
OF_PATH(unlinkat, "unlink", 0, directory, path, (int directory, const char *path, int flags),
        (int, const char *, int), (directory, path, flags))
OF_PATH(remove, "unlink", 0, AT_FDCWD, path, (const char *path), (const char *), (path))
OF_PATH(rmdir, "rmdir", 0, AT_FDCWD, path, (const char *path), (const char *), (path))
OF_PATH(mkdir, "mkdir", 1, AT_FDCWD, path, (const char *path, mode_t mode), (const char *, mode_t), (path, mode))
OF_PATH(mkdirat, "mkdir", 1, directory, path, (int directory, const char *path, mode_t mode),
        (int, const char *, mode_t), (directory, path, mode))
OF_PATH(truncate, "truncate", 0, AT_FDCWD, path, (const char *path, off_t size), (const char *, off_t),
        (path, size))
OF_PATH(truncate64, "truncate", 0, AT_FDCWD, path, (const char *path, off_t size), (const char *, off_t),
        (path, size))
OF_PATH(chmod, "chmod", 0, AT_FDCWD, path, (const char *path, mode_t mode), (const char *, mode_t), (path, mode))
OF_PATH(fchmodat, "chmod", 0, directory, path, (int directory, const char *path, mode_t mode, int flags),
        (int, const char *, mode_t, int), (directory, path, mode, flags))

/* ---- copying in the kernel */

#define SENDFILE(name)                                                                                         \
    ssize_t name(int target, int source, off_t *offset, size_t size)                                           \
    {                                                                                                          \
        REAL(ssize_t, name, int, int, off_t *, size_t);                                                        \
        const ssize_t count = allowed("sendfile", target, size);                                               \
        if (count < 0)                                                                                         \
            FAIL_WITH(ENOSPC);                                                                                 \
        return real(target, source, offset, (size_t)count);                                                    \
    }
ssize_t sendfile(int target, int source, off_t *offset, size_t size);
ssize_t sendfile64(int target, int source, off_t *offset, size_t size);
SENDFILE(sendfile)
SENDFILE(sendfile64)

ssize_t copy_file_range(int source, off_t *from, int target, off_t *to, size_t size, unsigned flags)
{
    REAL(ssize_t, copy_file_range, int, off_t *, int, off_t *, size_t, unsigned);
    const ssize_t count = allowed("copy_file_range", target, size);
    if (count < 0)
        FAIL_WITH(ENOSPC);
    return real(source, from, target, to, (size_t)count, flags);
}
