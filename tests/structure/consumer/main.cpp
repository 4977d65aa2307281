// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"

int main()
{
    return MainWindow::reDataset.isValid() ? 0 : 1;
}
