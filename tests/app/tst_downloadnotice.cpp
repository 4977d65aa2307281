// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/downloadnotice.h"
#include "app/structureimage.h"
#include "species/speciesmodel.h"
#include "support/dialogs.h"
#include "support/httpsservice.h"
#include "support/mainwindowfixture.h"
#include "support/samplepictures.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QPushButton>
#include <QSslSocket>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>

namespace
{

class Fixture : public MainWindowFixture
{
public:
    explicit Fixture(const HttpsService &service) : notice(new DownloadNotice(&window))
    {
        window.findChild<QNetworkAccessManager *>()->setProxy(service.proxy());
    }

    void download(const QString &cas) const
    {
        field(QStringLiteral("lineEditCAS"))->setPlainText(cas);
        starter()->click();
    }

    [[nodiscard]] QPushButton *starter() const
    {
        return find<QPushButton>(QStringLiteral("buttonDownload"));
    }
    [[nodiscard]] QString said() const { return notice->findChild<QLabel *>()->text(); }
    [[nodiscard]] QToolButton *cancel() const { return notice->findChild<QToolButton *>(); }
    [[nodiscard]] bool hasImage() const
    {
        return !window.findChild<SpeciesModel *>()->getImage().isNull();
    }

    DownloadNotice *notice;
};

const QString water = QStringLiteral("7732-18-5");
const QString caffeine = QStringLiteral("58-08-2");

QByteArray picture()
{
    return pictureFile(picturePattern(QImage::Format_RGB32), "PNG");
}

} // namespace

// What the status bar says while structure images are on their way.
class TestDownloadNotice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString host = structureImageUrl(water).host();
        m_service = std::make_unique<HttpsService>(host, m_folder.path());
        m_service->makeTrusted();
    }

    void init()
    {
        failOnWarnings();
        m_service->requests.clear();
    }

    void aWindowWithItLooksAsOneWithout()
    {
        const MainWindowFixture without;
        const Fixture with(*m_service);
        QVERIFY(!with.notice->isVisible());
        QCOMPARE(with.window.statusBar()->geometry(), without.window.statusBar()->geometry());
        QCOMPARE(with.window.minimumSizeHint(), without.window.minimumSizeHint());
    }

    void itIsShownAtTheRightEndWhileADownloadRunsAndMovesNothing()
    {
        Fixture f(*m_service);
        const QRect bar = f.window.statusBar()->geometry();
        const QRect area = f.area()->geometry();
        QPointer<QSslSocket> waiting;
        m_service->answerWith({[&](QSslSocket *socket) { waiting = socket; }});
        f.download(water);
        QVERIFY(f.notice->isVisible());
        QCOMPARE(f.said(), QStringLiteral("Fetching the structure image ..."));
        QTRY_VERIFY(waiting);
        QCOMPARE(f.window.statusBar()->geometry(), bar);
        QCOMPARE(f.area()->geometry(), area);
        const QRect place(f.notice->mapTo(&f.window, QPoint()), f.notice->size());
        QVERIFY(bar.contains(place));
        QVERIFY(bar.right() - place.right() < 30);
        QVERIFY(f.cancel()->height() >= f.cancel()->fontMetrics().height());
        HttpsService::response("200 OK", picture())(waiting);
        QTRY_VERIFY(f.hasImage());
        QVERIFY(!f.notice->isVisible());
    }

    void cancellingSaysNothingAndChangesNothing()
    {
        Fixture f(*m_service);
        QPointer<QSslSocket> waiting;
        m_service->answerWith({[&](QSslSocket *socket) { waiting = socket; },
                               HttpsService::response("200 OK", picture())});
        f.download(water);
        QTRY_VERIFY(waiting);
        const Dialogs none;
        f.cancel()->click();
        QVERIFY(!f.notice->isVisible());
        QTRY_VERIFY(!waiting);
        QVERIFY(!f.hasImage());
        QVERIFY(none.boxes.isEmpty());

        f.download(water);
        QVERIFY(f.notice->isVisible());
        QTRY_VERIFY(f.hasImage());
        QVERIFY(!f.notice->isVisible());
    }

    void severalDownloadsAreCountedAndCancelledTogether()
    {
        Fixture f(*m_service);
        m_service->answerWith({HttpsService::stall, HttpsService::stall});
        f.download(water);
        f.download(caffeine);
        QCOMPARE(f.said(), QStringLiteral("Fetching 2 structure images ..."));
        QTRY_COMPARE(m_service->requests.size(), 2);
        f.cancel()->click();
        QVERIFY(!f.notice->isVisible());
        const auto replies = f.window.findChildren<QNetworkReply *>();
        QVERIFY(replies.isEmpty() || !replies.first()->isRunning());
    }

    void oneThatIsLeftIsStillShown()
    {
        Fixture f(*m_service);
        m_service->answerWith({HttpsService::stall, HttpsService::response("200 OK", picture())});
        f.download(water);
        QTRY_COMPARE(m_service->requests.size(), 1);
        f.download(caffeine);
        QTRY_VERIFY(f.hasImage());
        QCOMPARE(f.said(), QStringLiteral("Fetching the structure image ..."));
        QVERIFY(f.notice->isVisible());
    }

    void itIsGoneWhenABoxSaysAFailure()
    {
        Fixture f(*m_service);
        m_service->answerWith({HttpsService::response("404 Not Found", {})});
        Dialogs dialogs;
        bool isShown = true;
        dialogs.handle([&](QWidget *box) {
            isShown = f.notice->isVisible();
            box->close();
        });
        f.download(water);
        QVERIFY(f.notice->isVisible());
        QTRY_COMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Download Failed"));
        QVERIFY(!isShown);
    }

    void aWrongNumberShowsNothing()
    {
        const Fixture f(*m_service);
        Dialogs dialogs;
        dialogs.press();
        f.download(QStringLiteral("58-08-3"));
        QVERIFY(!f.notice->isVisible());
    }

    void theKeyboardCancelsAndIsBackInTheForm()
    {
        Fixture f(*m_service);
        m_service->answerWith({HttpsService::stall});
        f.download(water);
        QTRY_COMPARE(m_service->requests.size(), 1);
        for (int i = 0; i < 40 && !f.cancel()->hasFocus(); ++i)
            QTest::keyClick(f.window.windowHandle(), Qt::Key_Tab);
        QVERIFY(f.cancel()->hasFocus());
        QTest::keyClick(f.cancel(), Qt::Key_Space);
        QVERIFY(!f.notice->isVisible());
        QCOMPARE(QApplication::focusWidget(), f.starter());
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<HttpsService> m_service;
};

QTEST_MAIN(TestDownloadNotice)
#include "tst_downloadnotice.moc"
