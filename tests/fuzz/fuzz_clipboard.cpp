// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"
#include "fuzz/invariant.h"
#include "spectrum/spectrumwindow.h"
#include "support/closedboxes.h"
#include "support/expecteddocument.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QMdiArea>
#include <QMdiSubWindow>

using namespace Qt::StringLiterals;

namespace
{

// What the editor has to say to this text; nothing if it has to take it.
QStringList expectedBoxes(const QJsonDocument &document)
{
    if (!document.isObject())
        return {u"Error: Clipboard does not contain a valid spectrum."_s};
    if (document.object()["Type"_L1] != QJsonValue(u"Spectrum v1"_s))
        return {u"Error: Format error, cannot paste."_s};
    return {};
}

class PastingWindow
{
public:
    // Pastes text into the empty document and leaves it empty.
    void paste(const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
        m_window.pasteSpectrumFromClipboard();
        REQUIRE_EQUAL(m_boxes.take(), expectedBoxes(document));
        const bool isTaken = expectedBoxes(document).isEmpty();
        REQUIRE_EQUAL(spectra().size(), isTaken ? 1 : 0);
        if (isTaken)
            testPasted(document.object());
    }

private:
    void testPasted(const QJsonObject &pasted)
    {
        const QJsonObject first = spectra().constFirst()->toJson();
        REQUIRE_EQUAL(first, expectedSpectrum(pasted));

        // A copy of it is the same, and so is what is pasted from the copy.
        m_window.copySpectrumToClipboard();
        QJsonObject copied =
            QJsonDocument::fromJson(QGuiApplication::clipboard()->text().toUtf8()).object();
        REQUIRE_EQUAL(copied.take("Type"_L1), QJsonValue(u"Spectrum v1"_s));
        REQUIRE_EQUAL(copied, first);
        m_window.pasteSpectrumFromClipboard();
        REQUIRE_EQUAL(m_boxes.take(), QStringList());
        REQUIRE_EQUAL(spectra().size(), 2);
        REQUIRE_EQUAL(spectra().constLast()->toJson(), expectedSpectrum(first));
        REQUIRE_EQUAL(spectra().constFirst()->toJson(), first);

        m_window.findChild<QMdiArea *>()->closeAllSubWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        REQUIRE(spectra().isEmpty());
    }

    [[nodiscard]] QList<SpectrumWindow *> spectra() const
    {
        QList<SpectrumWindow *> windows;
        for (const QMdiSubWindow *sub : m_window.findChild<QMdiArea *>()->subWindowList())
            windows.append(qobject_cast<SpectrumWindow *>(sub->widget()));
        return windows;
    }

    MainWindow m_window;
    ClosedBoxes m_boxes;
};

} // namespace

// Any text on the clipboard, pasted as a spectrum into the real window.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto *window = new PastingWindow;
    window->paste(QString::fromUtf8(bytesOf(data, size)));
    return 0;
}
