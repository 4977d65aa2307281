// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/downloadnotice.h"

#include "app/structureimage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStatusBar>
#include <QToolButton>

DownloadNotice::DownloadNotice(QMainWindow *window)
    : QWidget(window),
      m_manager(window->findChild<QNetworkAccessManager *>()),
      m_starter(window->findChild<QAbstractButton *>(QStringLiteral("buttonDownload"))),
      m_label(new QLabel(this)),
      m_cancel(new QToolButton(this))
{
    m_cancel->setText(tr("Cancel"));
    m_cancel->setAccessibleName(tr("Cancel the download"));
    m_cancel->setFocusPolicy(Qt::TabFocus);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(m_label);
    row->addWidget(m_cancel);
    // Keeps the height of the bar.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    window->statusBar()->addPermanentWidget(this);
    hide();
    // The window was connected first: it has started the download by now.
    connect(m_starter, &QAbstractButton::clicked, this, &DownloadNotice::follow);
    connect(m_cancel, &QAbstractButton::clicked, this, &DownloadNotice::cancel);
}

QList<QNetworkReply *> DownloadNotice::running() const
{
    auto replies = m_manager->findChildren<QNetworkReply *>(QString(), Qt::FindDirectChildrenOnly);
    replies.removeIf([](const QNetworkReply *reply) { return reply->isFinished(); });
    return replies;
}

void DownloadNotice::follow()
{
    // finished() would come late: the window's box about a failure holds it back.
    for (const QNetworkReply *reply : running())
        connect(reply, &QNetworkReply::readChannelFinished, this, &DownloadNotice::showRunning,
                Qt::UniqueConnection);
    showRunning();
}

void DownloadNotice::cancel()
{
    for (QNetworkReply *reply : running())
        cancelDownload(reply);
}

void DownloadNotice::showRunning()
{
    const qsizetype count = running().size();
    if (count == 1)
        m_label->setText(tr("Fetching the structure image ..."));
    else if (count > 1)
        m_label->setText(tr("Fetching %1 structure images ...").arg(count));
    else if (m_cancel->hasFocus())
        m_starter->setFocus();
    setVisible(count > 0);
}
