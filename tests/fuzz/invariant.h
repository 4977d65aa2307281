// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDebug>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// A fuzz target says what must hold whatever the input; where it does not, the process ends, and
// the fuzzer keeps the input.

[[noreturn]] inline void endWith(const char *file, int line, const QString &what)
{
    std::fprintf(stderr, "%s:%d: %s\n", file, line, qUtf8Printable(what));
    std::abort();
}

template <typename Actual, typename Expected>
void requireEqual(const Actual &actual, const Expected &expected, const char *file, int line)
{
    if (actual == expected)
        return;
    QString what;
    QDebug(&what) << "actual" << actual << "\nexpected" << expected;
    endWith(file, line, what);
}

#define REQUIRE(condition)                                                                         \
    do {                                                                                           \
        if (!(condition))                                                                          \
            endWith(__FILE__, __LINE__, QStringLiteral("does not hold: " #condition));             \
    } while (false)

#define REQUIRE_EQUAL(actual, expected) requireEqual((actual), (expected), __FILE__, __LINE__)

// What each target defines and the fuzzing engine, or the program that replays the corpus, calls.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

[[nodiscard]] inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}
