// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QString>

#include <span>
#include <variant>

// One option of a command, as the command line and the help know it.
struct Option {
    const char *name;  // without the two hyphens
    char letter;       // the short form; 0 if there is none
    const char *value; // what the help calls its value; null for a flag
    const char *help;  // one line
};

// Every command has these.
inline constexpr Option helpOption{"help", 'h', nullptr, "show this help and end"};

struct UsageError {
    QByteArray what; // one sentence without the full stop
    QByteArray hint; // what may have been meant; empty if nothing comes close
};

// The command line behind a command's name, taken apart. All texts are the bytes that were typed.
class Arguments
{
public:
    // Options may stand before, between and behind operands; "--" ends them. An option's value is
    // its next word, or what follows "=" or the letter. A flag may be given again.
    [[nodiscard]] static std::variant<Arguments, UsageError> parse(const QByteArrayList &words,
                                                                   std::span<const Option> options);

    [[nodiscard]] bool has(const char *option) const;
    // The value that was given last; absent if the option was not.
    [[nodiscard]] QByteArray value(const char *option, const QByteArray &absent = {}) const;
    [[nodiscard]] QByteArrayList values(const char *option) const;
    [[nodiscard]] const QByteArrayList &operands() const { return m_operands; }

private:
    QHash<QByteArray, QByteArrayList> m_values; // a flag has one empty value for each time
    QByteArrayList m_operands;
};

// The candidate that word was probably meant to be; empty if none comes close.
[[nodiscard]] QByteArray closestTo(const QByteArray &word, const QByteArrayList &candidates);
