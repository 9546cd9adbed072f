// A host for tests: one in the process, fresh for each case.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzapp.h"
#include "dzscene.h"
#include "openhost/openhost.h"
#include "openhost/operations.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <vector>

/// The process's host, with settings and log in a folder that goes with it. It is headless unless the program
/// is compiled with HOST_WITH_WINDOWS.
openhost::OpenHost& TestHost();
const QString& TestFolder();
/// The log's text so far.
QString LogText();

class HostTest : public testing::Test {
protected:
    void SetUp() override { TestHost().reset(); }
};

/// A new node of that name and label in the scene, below the parent if there is one; the scene owns it.
DzNode* AddNode(const char* label, DzNode* parent = nullptr);

/// Keeps a record, and refuses what it is told to.
class Recorder : public openhost::OperationListener {
public:
    Recorder() { openhost::SetOperationListener(this); }
    ~Recorder() override { openhost::SetOperationListener(nullptr); }
    bool allow(const QString& operation, const QString& detail) override
    {
        lines.push_back((operation + QLatin1Char(' ') + detail).toStdString());
        return operation != refused;
    }
    std::vector<std::string> lines;
    QString refused;
};
