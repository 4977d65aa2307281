// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/filecheck.h"
#include "check/savecheck.h"
#include "cli/exitstatus.h"
#include "cli/testconsole.h"
#include "fuzz/invariant.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// The status of zoravel format --check for a file of these bytes.
int statusOfFormat(const QByteArray &bytes)
{
    static const auto *folder = new QTemporaryDir;
    static const QString path = folder->filePath(u"entry.json"_s);
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    TestConsole console;
    return console.run({"format", "--check", path.toUtf8()});
}

} // namespace

// Any bytes as a file: the checks and zoravel format --check must not disagree on whether saving
// changes it. A finding that says why it does stands for the one that only says that it does.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QList<Finding> findings = checkBytes(u"entry.json"_s, bytes, {}).findings;
    const auto has = [&](auto predicate) {
        return std::any_of(findings.begin(), findings.end(), predicate);
    };
    const bool isReported =
        has([](const Finding &finding) { return finding.check == Check::WouldChange; });
    const bool hasCause = has([](const Finding &finding) {
        return finding.endsReading || saysWhySavingChanges(finding.check);
    });
    const bool changes = statusOfFormat(bytes) == exitFindings;
    REQUIRE(!isReported || !hasCause);
    REQUIRE(hasCause || isReported == changes);
    return 0;
}
