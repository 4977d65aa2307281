// SPDX-License-Identifier: GPL-3.0-or-later
// The same for what has windows, and for the tests.
#pragma once

#include "precompiled_core.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QEvent>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QStandardItemModel>
#include <QStyle>
#include <QTabBar>
#include <QTextCursor>
#include <QTextEdit>
#include <QToolBar>
#include <QWidget>
