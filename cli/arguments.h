// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QString>

#include <span>
#include <variant>

// One option of a command, for the command line and the help.
struct Option {
    const char *name;  // without the two hyphens
    char letter;       // the short form; 0 if there is none
    const char *value; // what the help calls its value; null for a flag
    const char *help;  // one line
};

// All commands have this option.
inline constexpr Option helpOption{"help", 'h', nullptr, "show this help and end"};

struct UsageError {
    QByteArray what; // one sentence without the full stop
    QByteArray hint; // what may have been meant; empty if nothing comes close
};

// The words after a command's name, parsed. All texts are the bytes that were typed.
class Arguments
{
public:
    // Options may stand before, between and behind operands; "--" ends them. An option's value is
    // its next word, or follows "=" or the letter. A flag may be repeated.
    [[nodiscard]] static std::variant<Arguments, UsageError> parse(const QByteArrayList &words,
                                                                   std::span<const Option> options);

    [[nodiscard]] bool has(const char *option) const;
    // The last value of the option; absent if it was not given.
    [[nodiscard]] QByteArray value(const char *option, const QByteArray &absent = {}) const;
    [[nodiscard]] QByteArrayList values(const char *option) const;
    [[nodiscard]] const QByteArrayList &operands() const { return m_operands; }

private:
    QHash<QByteArray, QByteArrayList> m_values; // a flag has one empty value for each time
    QByteArrayList m_operands;
};

// The candidate that word probably means; empty if none comes close.
[[nodiscard]] QByteArray closestTo(const QByteArray &word, const QByteArrayList &candidates);
