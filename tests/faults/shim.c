/* Preloaded into the programs under test: at a call whose number the campaign chooses, makes a system call
 * fail, removes a file of the backup, or sends a signal. Calls are counted per process, so a plan causes the
 * same fault at the same place in every run of a single-threaded program.
 *
 * The plan is passed in the environment (see sandbox.cpp):
 *   FAULT_PROGRAM   name of the executable that the plan is for; others run undisturbed
 *   FAULT_BACKUP    the backup's folder
 *   FAULT_WRITABLE  prefixes of paths that may be written, separated by ":"
 *   FAULT_COUNTERS  a file that receives the counters: all calls, write-like calls, opens in the backup
 *   FAULT_OUTSIDE   a file that receives a line for each path written elsewhere ("outside PATH")
 *                   and for each private work folder that is created ("work PATH")
 *   FAULT_PLAN      KIND NUMBER VALUE
 *   FAULT_VICTIM    path of the file that the plan is about
 *
 * Standard streams call the kernel from inside the C library, where calls can't be intercepted. They are
 * replaced by streams over the functions of this file (fopencookie).
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

enum { MOST_DESCRIPTORS = 4096, MOST_STREAMS = 64 };

struct counters {
  unsigned long calls, writes, opens;
};

enum plan_kind { NOTHING, OPEN_FAILS, READ_FAILS, FULL_ONCE, FULL_FROM, REMOVE, TRUNCATE, SIGNAL };

static struct counters none;
static struct counters* counters = &none;
static enum plan_kind plan = NOTHING;
static unsigned long number; /* of the call, or bytes that can be read */
static int value;            /* error, signal or size */
static char backup[PATH_MAX], victim[PATH_MAX], writable[4 * PATH_MAX], outside[PATH_MAX];
static int ready;

static unsigned char written_to[MOST_DESCRIPTORS];
static unsigned char is_victim[MOST_DESCRIPTORS];
static unsigned long read_so_far[MOST_DESCRIPTORS];

static struct {
  FILE* stream;
  int descriptor;
} streams[MOST_STREAMS];

#define REAL(name)               \
  static __typeof__(&name) real; \
  if (!real) real = (__typeof__(&name))dlsym(RTLD_NEXT, #name)

static void take(const char* name, char* to, size_t size) {
  const char* text = getenv(name);
  snprintf(to, size, "%s", text ? text : "");
}

__attribute__((constructor)) static void begin(void) {
  static const char* const kinds[] = {"nothing",   "open",   "read",     "full-once",
                                      "full-from", "remove", "truncate", "signal"};
  char program[PATH_MAX], self[PATH_MAX], kind[32] = "", file[PATH_MAX];
  take("FAULT_PROGRAM", program, sizeof program);
  const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
  if (length <= 0) return;
  self[length] = '\0';
  take("FAULT_BACKUP", backup, sizeof backup);
  take("FAULT_VICTIM", victim, sizeof victim);
  take("FAULT_WRITABLE", writable, sizeof writable);
  take("FAULT_OUTSIDE", outside, sizeof outside);
  const char* text = getenv("FAULT_PLAN");
  if (strcmp(strrchr(self, '/') + 1, program) == 0) {
    if (text && sscanf(text, "%31s %lu %d", kind, &number, &value) == 3) {
      for (int i = 0; i < (int)(sizeof kinds / sizeof *kinds); ++i) {
        if (strcmp(kinds[i], kind) == 0) plan = (enum plan_kind)i;
      }
    }
    take("FAULT_COUNTERS", file, sizeof file);
    const int descriptor = (int)syscall(SYS_openat, AT_FDCWD, file, O_RDWR | O_CLOEXEC);
    if (descriptor >= 0) {
      void* shared = mmap(NULL, sizeof *counters, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
      if (shared != MAP_FAILED) counters = shared;
      syscall(SYS_close, descriptor);
    }
  }
  ready = 1;
}

/* The absolute path without repeated slashes. */
static void absolute(int folder, const char* path, char* to) {
  char whole[2 * PATH_MAX], start[PATH_MAX] = "";
  if (path[0] != '/') {
    char link[64];
    snprintf(link, sizeof link, folder == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/%d", folder);
    const ssize_t length = readlink(link, start, sizeof start - 1);
    if (length > 0) start[length] = '\0';
  }
  snprintf(whole, sizeof whole, "%s%s%s", start, path[0] == '/' ? "" : "/", path);
  size_t end = 0;
  for (const char* p = whole; *p && end + 1 < PATH_MAX; ++p) {
    if (*p != '/' || end == 0 || to[end - 1] != '/') to[end++] = *p;
  }
  to[end] = '\0';
}

static int below(const char* path, const char* folder, size_t length) {
  return length > 0 && strncmp(path, folder, length) == 0;
}

static int is_writable(const char* path) {
  for (const char* p = writable; *p;) {
    const size_t length = strcspn(p, ":");
    if (below(path, p, length)) return 1;
    p += length + (p[length] == ':');
  }
  return 0;
}

static int in_backup(const char* path) {
  const size_t length = strlen(backup);
  return below(path, backup, length) && (path[length] == '/' || path[length] == '\0');
}

static int of_victim(const char* path) {
  const size_t length = strlen(victim);
  return below(path, victim, length) && (path[length] == '/' || path[length] == '\0');
}

static void note(const char* what, const char* path) {
  const int descriptor = (int)syscall(SYS_openat, AT_FDCWD, outside, O_WRONLY | O_APPEND | O_CLOEXEC);
  if (descriptor < 0) return;
  char line[PATH_MAX + 16];
  const int length = snprintf(line, sizeof line, "%s%s\n", what, path);
  syscall(SYS_write, descriptor, line, (size_t)length);
  syscall(SYS_close, descriptor);
}

static void note_outside(const char* path) {
  if (!ready || is_writable(path) || in_backup(path) || strncmp(path, "/dev/", 5) == 0 ||
      strncmp(path, "/proc/", 6) == 0)
    return;
  note("outside ", path);
}

static void count_call(void) {
  const unsigned long count = __atomic_add_fetch(&counters->calls, 1, __ATOMIC_SEQ_CST);
  if (plan == SIGNAL && count == number) kill(getpid(), value);
}

/* A call that needs disk space. @return whether it fails with ENOSPC. */
static int disk_full(void) {
  count_call();
  const unsigned long count = __atomic_add_fetch(&counters->writes, 1, __ATOMIC_SEQ_CST);
  if ((plan == FULL_ONCE && count == number) || (plan == FULL_FROM && count >= number)) {
    errno = value;
    return 1;
  }
  return 0;
}

static int known(int descriptor) {
  return descriptor >= 0 && descriptor < MOST_DESCRIPTORS;
}

static int open_at(int folder, const char* name, int flags, unsigned mode) {
  char path[PATH_MAX];
  absolute(folder, name, path);
  const int writes = (flags & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) != 0;
  if (writes) note_outside(path);
  if (writes && is_writable(path) && disk_full()) return -1;
  if (in_backup(path)) {
    count_call();
    const unsigned long count = __atomic_add_fetch(&counters->opens, 1, __ATOMIC_SEQ_CST);
    if (plan == REMOVE && count == number) syscall(SYS_unlinkat, AT_FDCWD, victim, 0);
    if (plan == TRUNCATE && count == number) {
      const int cut = (int)syscall(SYS_openat, AT_FDCWD, victim, O_WRONLY | O_CLOEXEC);
      if (cut >= 0) {
        if (syscall(SYS_ftruncate, cut, (long)value) != 0) abort();
        syscall(SYS_close, cut);
      }
    }
    if (plan == OPEN_FAILS && of_victim(path)) {
      errno = value;
      return -1;
    }
  }
  const int descriptor = (int)syscall(SYS_openat, folder, name, flags, mode);
  if (known(descriptor)) {
    written_to[descriptor] = writes && is_writable(path);
    is_victim[descriptor] = plan == READ_FAILS && of_victim(path);
    read_so_far[descriptor] = 0;
  }
  return descriptor;
}

#define MODE_OF(flags, last)             \
  unsigned mode = 0;                     \
  if ((flags) & (O_CREAT | O_TMPFILE)) { \
    va_list arguments;                   \
    va_start(arguments, last);           \
    mode = va_arg(arguments, unsigned);  \
    va_end(arguments);                   \
  }

int open(const char* path, int flags, ...) {
  MODE_OF(flags, flags)
  return open_at(AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  MODE_OF(flags, flags)
  return open_at(AT_FDCWD, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
  MODE_OF(flags, flags)
  return open_at(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
  MODE_OF(flags, flags)
  return open_at(folder, path, flags, mode);
}

/* Truncates a read of the victim at the unreadable position. @return whether it fails. */
static int read_fails(int descriptor, unsigned long from, size_t* count) {
  if (!known(descriptor) || !is_victim[descriptor]) return 0;
  if (from >= number) {
    errno = value;
    return 1;
  }
  if (*count > number - from) *count = number - from;
  return 0;
}

ssize_t read(int descriptor, void* buffer, size_t count) {
  if (read_fails(descriptor, known(descriptor) ? read_so_far[descriptor] : 0, &count)) return -1;
  const ssize_t got = syscall(SYS_read, descriptor, buffer, count);
  if (got > 0 && known(descriptor)) read_so_far[descriptor] += (unsigned long)got;
  return got;
}
ssize_t pread(int descriptor, void* buffer, size_t count, off_t offset) {
  if (read_fails(descriptor, (unsigned long)offset, &count)) return -1;
  return syscall(SYS_pread64, descriptor, buffer, count, offset);
}
ssize_t pread64(int descriptor, void* buffer, size_t count, off64_t offset) {
  return pread(descriptor, buffer, count, offset);
}

static int write_fails(int descriptor) {
  return known(descriptor) && written_to[descriptor] && disk_full();
}

ssize_t write(int descriptor, const void* buffer, size_t count) {
  return write_fails(descriptor) ? -1 : syscall(SYS_write, descriptor, buffer, count);
}
ssize_t writev(int descriptor, const struct iovec* pieces, int count) {
  return write_fails(descriptor) ? -1 : syscall(SYS_writev, descriptor, pieces, count);
}
ssize_t pwrite(int descriptor, const void* buffer, size_t count, off_t offset) {
  return write_fails(descriptor) ? -1 : syscall(SYS_pwrite64, descriptor, buffer, count, offset);
}
ssize_t pwrite64(int descriptor, const void* buffer, size_t count, off64_t offset) {
  return pwrite(descriptor, buffer, count, offset);
}
ssize_t copy_file_range(int from, off64_t* from_offset, int to, off64_t* to_offset, size_t count,
                        unsigned flags) {
  if (read_fails(from, known(from) ? read_so_far[from] : 0, &count) || write_fails(to)) return -1;
  const ssize_t copied = syscall(SYS_copy_file_range, from, from_offset, to, to_offset, count, flags);
  if (copied > 0 && known(from)) read_so_far[from] += (unsigned long)copied;
  return copied;
}
int ftruncate(int descriptor, off_t size) {
  return write_fails(descriptor) ? -1 : (int)syscall(SYS_ftruncate, descriptor, size);
}
int ftruncate64(int descriptor, off64_t size) {
  return ftruncate(descriptor, size);
}

/* The descriptor is closed in any case, as by the kernel. */
int close(int descriptor) {
  const int fails = write_fails(descriptor), error = errno;
  if (known(descriptor)) written_to[descriptor] = is_victim[descriptor] = 0;
  const int result = (int)syscall(SYS_close, descriptor);
  if (fails) errno = error;
  return fails ? -1 : result;
}

int mkdir(const char* name, mode_t mode) {
  char path[PATH_MAX];
  absolute(AT_FDCWD, name, path);
  /* An existing folder needs no space. */
  const int is_there = syscall(SYS_faccessat, AT_FDCWD, name, F_OK) == 0;
  if (is_writable(path) && !is_there && disk_full()) return -1;
  const int result = (int)syscall(SYS_mkdirat, AT_FDCWD, name, mode);
  if (result == 0) note_outside(path);
  return result;
}

char* mkdtemp(char* name) {
  REAL(mkdtemp);
  char path[PATH_MAX];
  absolute(AT_FDCWD, name, path);
  if (is_writable(path) && disk_full()) return NULL;
  char* made = real(name);
  if (!made) return NULL;
  note_outside(made);
  if (strncmp(made, "/var/tmp/orvandel-work-", 23) == 0) note("work ", made);
  return made;
}
int rename(const char* from, const char* to) {
  char path[PATH_MAX];
  absolute(AT_FDCWD, to, path);
  if (is_writable(path) && disk_full()) return -1;
  note_outside(path);
  return (int)syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}

static ssize_t stream_read(void* cookie, char* buffer, size_t count) {
  return read((int)(long)cookie, buffer, count);
}
static ssize_t stream_write(void* cookie, const char* buffer, size_t count) {
  const ssize_t put = write((int)(long)cookie, buffer, count);
  return put < 0 ? 0 : put;
}
static int stream_seek(void* cookie, off64_t* offset, int whence) {
  const off64_t place = lseek64((int)(long)cookie, *offset, whence);
  if (place >= 0) *offset = place;
  return place < 0 ? -1 : 0;
}
static int stream_close(void* cookie) {
  for (int i = 0; i < MOST_STREAMS; ++i) {
    if (streams[i].descriptor == (int)(long)cookie) streams[i].stream = NULL;
  }
  return close((int)(long)cookie);
}

static FILE* stream_over(int descriptor, const char* mode) {
  static const cookie_io_functions_t functions = {stream_read, stream_write, stream_seek, stream_close};
  FILE* stream = fopencookie((void*)(long)descriptor, mode, functions);
  for (int i = 0; stream && i < MOST_STREAMS; ++i) {
    if (streams[i].stream) continue;
    streams[i].stream = stream;
    streams[i].descriptor = descriptor;
    break;
  }
  return stream;
}

FILE* fopen(const char* name, const char* mode) {
  char path[PATH_MAX];
  absolute(AT_FDCWD, name, path);
  if (!ready || mode[0] == 'r' || !is_writable(path)) {
    REAL(fopen);
    if (ready && mode[0] != 'r') note_outside(path);
    return real(name, mode);
  }
  const int flags = O_CREAT | (strchr(mode, '+') ? O_RDWR : O_WRONLY) | (mode[0] == 'a' ? O_APPEND : O_TRUNC);
  const int descriptor = open_at(AT_FDCWD, name, flags, 0666);
  return descriptor == -1 ? NULL : stream_over(descriptor, mode);
}
FILE* fopen64(const char* name, const char* mode) {
  return fopen(name, mode);
}
FILE* fdopen(int descriptor, const char* mode) {
  REAL(fdopen);
  return known(descriptor) && (is_victim[descriptor] || written_to[descriptor])
             ? stream_over(descriptor, mode)
             : real(descriptor, mode);
}
/* The C++ library writes to the descriptor of its stream. */
int fileno(FILE* stream) {
  REAL(fileno);
  for (int i = 0; i < MOST_STREAMS; ++i) {
    if (streams[i].stream == stream) return streams[i].descriptor;
  }
  return real(stream);
}
