// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"

#include <QDir>
#include <QFile>

// Runs a fuzz target over the files of the folders that are named, without a fuzzing engine: every
// input that was once worth keeping is a test of every build.
int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                endWith(__FILE__, __LINE__, file.fileName());
            std::fprintf(stderr, "%s\n", qUtf8Printable(file.fileName()));
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
            ++inputs;
        }
    }
    std::fprintf(stderr, "%d inputs\n", inputs);
    return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
