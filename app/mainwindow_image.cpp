// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

#include "app/messagebox.h"
#include "app/structureimage.h"
#include "pictures/picture.h"
#include "species/casnumber.h"
#include "species/speciesmodel.h"
#include "ui_mainwindow.h"

#include <QClipboard>
#include <QMenu>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPixmap>

namespace
{

constexpr char tooLargeProperty[] = "bodyTooLarge";

// A download is cancelled as soon as its body exceeds the limit.
void refuseLargeBody(QNetworkReply *reply, qint64 received)
{
    if (received <= largestStructureImage)
        return;
    reply->setProperty(tooLargeProperty, true);
    reply->abort();
}

} // namespace

bool MainWindow::isValidCASNumber(const QString &cas) const
{
    return isValidCasNumber(cas);
}

void MainWindow::onButtonDownloadClicked()
{
    const QString cas = ui->lineEditCAS->toPlainText().trimmed();
    if (!isValidCASNumber(cas)) {
        showMessage(this, QMessageBox::Warning, tr("Invalid Input"),
                    tr("Please enter a valid CAS number (e.g., 58-08-2)."));
        return;
    }
    QNetworkReply *reply = networkManager->get(structureImageRequest(cas));
    connect(reply, &QNetworkReply::downloadProgress, reply,
            [reply](qint64 received) { refuseLargeBody(reply, received); });
}

void MainWindow::onImageDownloaded(QNetworkReply *reply)
{
    reply->deleteLater();
    if (isCancelled(reply))
        return;
    const bool isCutOff = reply->property(tooLargeProperty).toBool();
    if (reply->error() != QNetworkReply::NoError && !isCutOff) {
        showMessage(this, QMessageBox::Critical, tr("Download Failed"),
                    tr("Failed to download the image."));
        return;
    }
    const QByteArray body = isCutOff ? QByteArray() : reply->readAll();
    const bool isTooLarge = isCutOff || body.size() > largestStructureImage;
    const QImage image = isTooLarge ? QImage() : decodePicture(body);
    if (image.isNull())
        showMessage(this, QMessageBox::Critical, tr("Image Error"),
                    tr("Failed to load the image data."),
                    isTooLarge ? tr("It is larger than %1 MB.").arg(largestStructureImage >> 20)
                               : QString());
    else
        setImage(image);
}

void MainWindow::updateImageFromSpecies()
{
    const QImage image = speciesModel->getImage();
    if (image.isNull()) {
        ui->imageLabel->clear();
        ui->imageLabel->setAccessibleDescription(tr("No image"));
        return;
    }
    ui->imageLabel->setAccessibleDescription(
        tr("%1 by %2 pixels").arg(image.width()).arg(image.height()));
    // The image is scaled to the screen's own pixels, so that it is sharp at ratios above 1.
    const qreal ratio = ui->imageLabel->devicePixelRatioF();
    QPixmap pixmap = QPixmap::fromImage(image).scaled(
        ui->imageLabel->size() * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(ratio);
    ui->imageLabel->setPixmap(pixmap);
}

void MainWindow::showImageContextMenu(const QPoint &pos)
{
    QMenu menu(tr("Image Menu"), this);
    const QAction *clear = menu.addAction(QStringLiteral("Clear Image"));
    const QAction *paste = menu.addAction(QStringLiteral("Paste Image from Clipboard"));
    const QAction *chosen = menu.exec(ui->imageLabel->mapToGlobal(pos));
    if (!chosen)
        return;
    if (chosen == clear)
        clearImage();
    else if (chosen == paste)
        pasteImageFromClipboard();
}

void MainWindow::clearImage()
{
    setImage(QVariant());
}

void MainWindow::pasteImageFromClipboard()
{
    const QImage image = QGuiApplication::clipboard()->image();
    if (image.isNull()) {
        showMessage(this, QMessageBox::Warning, tr("No Image"),
                    tr("The clipboard does not contain an image."));
        return;
    }
    if (!canBeReloaded(image)) {
        showMessage(this, QMessageBox::Critical, tr("Image Error"),
                    tr("Failed to load the image data."),
                    tr("It has more pixels than an entry can hold."));
        return;
    }
    setImage(image);
}

void MainWindow::setImage(const QVariant &image)
{
    speciesModel->setData(speciesModel->index(0, speciesImageColumn), image, Qt::EditRole);
}
