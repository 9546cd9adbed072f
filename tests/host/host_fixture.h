// A host for tests: one in the process, fresh for each case.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzapp.h"
#include "dzscene.h"
#include "openhost/events.h"
#include "openhost/openhost.h"
#include "openhost/testing.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <optional>
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

/// Sees what is done to the scene and which texts progress displays show, in their order and in words.
class HostWatch : private openhost::OperationWatch {
public:
    HostWatch();
    /// @param operation  such as "select", or "progress" with the text
    /// @return false to refuse; a text cannot be refused
    virtual bool see(const QString& operation, const QString& detail) = 0;

private:
    bool allow(openhost::Operation operation, const QString& detail) final;

    QObject _context;
};

/// Keeps a record, and refuses what it is told to.
class Recorder : public HostWatch {
public:
    bool see(const QString& operation, const QString& detail) override;

    std::vector<std::string> lines;
    std::optional<openhost::Operation> refused;
};
