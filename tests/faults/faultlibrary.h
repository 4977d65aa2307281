/* SPDX-License-Identifier: GPL-3.0-or-later */
/* The formatter would run the lines of the list together. */
/* clang-format off */
/*
 * A library that stands before the C library and makes calls on chosen files fail. Preloaded into
 * any program it is told by the environment what to do; a test program that links it tells it by
 * calls.
 *
 *   ZORAVEL_FAULT_PATH    only calls on paths that contain this text; of an open file, the path
 *                         that it was opened under, or its folder and a number if it has no name
 *   ZORAVEL_FAULT_CALLS   any of open openread write fsync rename link close ftruncate stat fstat
 *                         fchmod fchown fsetxattr, with commas; all of them if there is none. Each
 *                         stands for its whole family, open for what may write and openread for
 *                         what may not.
 *   ZORAVEL_FAULT_NTH     the first of these calls to fail, from 1; 0 for none
 *   ZORAVEL_FAULT_ACTION  the name of an error (ENOSPC ...), "done" (a rename or link is done and
 *                         fails), "short" (half the bytes are written), "kill" (before the call),
 *                         or "killshort" (after half the bytes)
 *   ZORAVEL_FAULT_ALWAYS  1: every later call, too
 *   ZORAVEL_FAULT_NO_NAMELESS  1: files without a name are unknown to the file system
 *   ZORAVEL_FAULT_SLOW    microseconds that each of these calls takes longer
 *   ZORAVEL_FAULT_LOG     a file that gets a line for each of these calls
 */
/* clang-format on */
#ifndef ZORAVEL_FAULTLIBRARY_H
#define ZORAVEL_FAULTLIBRARY_H

#ifdef __cplusplus
extern "C" {
#endif

struct zoravel_fault_plan {
    const char *path;   /* null: no calls */
    const char *calls;  /* null: all */
    const char *action; /* null: none */
    long nth;
    int always;
    int no_nameless;
    int slow; /* microseconds */
};

/* Starts to count anew. The texts must stay. */
void zoravel_fault_arm(const struct zoravel_fault_plan *plan);
void zoravel_fault_disarm(void);
/* Calls counted since; the name of the first one that was made to fail, or null, and its path. */
long zoravel_fault_counted(void);
const char *zoravel_fault_fired(void);
const char *zoravel_fault_fired_path(void);

#ifdef __cplusplus
}
#endif

#endif
