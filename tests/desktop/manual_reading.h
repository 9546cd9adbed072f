// The user manual as its tests read it.
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Where the manual lies below a folder of documentation.
QString ManualPlace();
/// Where the desktop application finds it.
QString BuiltManual();

/// The test fails where there is no such file.
QByteArray BytesOf(const QString& path);
/// Of a program that is expected to succeed.
QString Output(const QString& program, const QStringList& arguments);

/// Without what line ends do to a sentence: lines are broken anywhere on a page.
QString Comparable(QString text);
/// Whether the manual has the message with anything in the place of each "{}".
testing::AssertionResult HasMessage(const QString& message);

/// The names of the manual's sources, in order.
QStringList ChapterFiles();
QString ChapterText(const QString& name);
