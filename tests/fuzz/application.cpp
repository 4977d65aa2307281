// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"

#include <QApplication>
#include <QDir>

namespace
{

// Decoders complain about broken files; only Qt's critical messages are findings.
void keepQuiet(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        endWith(__FILE__, __LINE__, text);
}

} // namespace

// One application for all inputs, without a screen and with settings of its own. It is never
// destroyed: the engine ends the process.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    const QByteArray home = QDir::tempPath().toLocal8Bit() + "/zoravel-fuzz-home";
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", home);
    qputenv("HOME", home);
    qInstallMessageHandler(keepQuiet);
    static int count = 1;
    Q_UNUSED(argc)
    static auto *application = new QApplication(count, *argv);
    Q_UNUSED(application)
    return 0;
}
