// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/arguments.h"

#include "files/editdistance.h"

#include <algorithm>
#include <optional>

namespace
{

const Option *findOption(std::span<const Option> options, const QByteArray &name)
{
    const auto it = std::find_if(options.begin(), options.end(),
                                 [&](const Option &option) { return name == option.name; });
    return it != options.end() ? &*it : nullptr;
}

const Option *findLetter(std::span<const Option> options, char letter)
{
    const auto it = std::find_if(options.begin(), options.end(), [&](const Option &option) {
        return letter != 0 && option.letter == letter;
    });
    return it != options.end() ? &*it : nullptr;
}

UsageError unknownOption(std::span<const Option> options, const QByteArray &word)
{
    QByteArrayList names;
    for (const Option &option : options)
        names.append(QByteArray("--") + option.name);
    return {"unknown option " + word, closestTo(word, names)};
}

// Whether another word contains all parts of a word: "cas-digit" in "cas-check-digit".
bool hasParts(const QByteArrayList &parts, const QByteArray &candidate)
{
    const QByteArrayList others = candidate.split('-');
    return parts.size() > 1 && std::all_of(parts.begin(), parts.end(), [&](const QByteArray &part) {
               return others.contains(part);
           });
}

} // namespace

QByteArray closestTo(const QByteArray &word, const QByteArrayList &candidates)
{
    constexpr qsizetype longestWord = 64; // a longer one was not meant to be a name
    QByteArray best;
    if (word.size() > longestWord)
        return best;
    qsizetype least = std::max<qsizetype>(1, word.size() / 3) + 1;
    for (const QByteArray &candidate : candidates) {
        const qsizetype needed = editDistance(word.toLower(), candidate.toLower(), Swaps::Yes);
        // The start of a long name, or some of its parts, count as one letter off.
        const bool isPart = (word.size() > 2 && candidate.startsWith(word))
                            || hasParts(word.toLower().split('-'), candidate);
        const qsizetype effort = isPart ? std::min<qsizetype>(needed, 1) : needed;
        if (effort < least) {
            least = effort;
            best = candidate;
        }
    }
    return best;
}

std::variant<Arguments, UsageError> Arguments::parse(const QByteArrayList &words,
                                                     std::span<const Option> options)
{
    Arguments result;
    bool optionsEnded = false;
    const auto add = [&](const Option &option, const QByteArray &value) {
        result.m_values[option.name].append(value);
    };
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QByteArray &word = words[i];
        // The value of an option without an attached one.
        const auto nextWord = [&]() -> std::optional<QByteArray> {
            return i + 1 < words.size() ? std::optional(words[++i]) : std::nullopt;
        };
        if (optionsEnded || word == "-" || !word.startsWith('-')) {
            result.m_operands.append(word);
        } else if (word == "--") {
            optionsEnded = true;
        } else if (word.startsWith("--")) {
            const qsizetype equals = word.indexOf('=');
            const QByteArray name = word.sliced(2, (equals < 0 ? word.size() : equals) - 2);
            const Option *option =
                name == helpOption.name ? &helpOption : findOption(options, name);
            if (!option)
                return unknownOption(options, "--" + name);
            if (!option->value && equals >= 0)
                return UsageError{"option --" + name + " takes no value", {}};
            const std::optional<QByteArray> value = !option->value ? QByteArray()
                                                    : equals >= 0  ? word.sliced(equals + 1)
                                                                   : nextWord();
            if (!value)
                return UsageError{"option --" + name + " needs a value: " + option->value, {}};
            add(*option, *value);
        } else {
            for (qsizetype at = 1; at < word.size(); ++at) {
                const Option *option =
                    word[at] == helpOption.letter ? &helpOption : findLetter(options, word[at]);
                if (!option)
                    return unknownOption(options, at == 1 ? word : "-" + word.sliced(at, 1));
                if (!option->value) {
                    add(*option, {});
                    continue;
                }
                const std::optional<QByteArray> value =
                    at + 1 < word.size() ? word.sliced(at + 1) : nextWord();
                if (!value)
                    return UsageError{
                        "option -" + word.sliced(at, 1) + " needs a value: " + option->value, {}};
                add(*option, *value);
                break;
            }
        }
    }
    return result;
}

bool Arguments::has(const char *option) const
{
    return m_values.contains(option);
}

QByteArray Arguments::value(const char *option, const QByteArray &absent) const
{
    const QByteArrayList all = m_values.value(option);
    return all.isEmpty() ? absent : all.last();
}

QByteArrayList Arguments::values(const char *option) const
{
    return m_values.value(option);
}
