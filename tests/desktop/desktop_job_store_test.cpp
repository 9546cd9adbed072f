// Where the list of jobs is kept: one program at a time, with what belongs to its jobs and nothing else.
// SPDX-License-Identifier: MIT

#include "apps/desktop/jobs/job_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using desktop::Job;
using desktop::JobStore;

class JobStoreTest : public testing::Test {
protected:
    QString path(const QString& name) const { return _folder.filePath(name); }
    void write(const QString& name, const QByteArray& text = {}) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write(text);
    }
    QStringList files() const
    {
        QStringList all;
        for (const char* const place : {"", "reports", "tables"})
            all += QDir(path(QLatin1String(place))).entryList(QDir::Files, QDir::Name);
        return all;
    }
    QVector<Job> load(const JobStore& store)
    {
        trouble.clear();
        return store.load(trouble);
    }

    QString trouble;
    QTemporaryDir _folder;
};

TEST_F(JobStoreTest, puts_lists_aside_that_cannot_be_read)
{
    const JobStore store(_folder.path());
    for (const char* const aside : {"list-unreadable.json", "list-unreadable-2.json"}) {
        write(QStringLiteral("list.json"), "{ broken");
        EXPECT_TRUE(load(store).isEmpty());
        EXPECT_TRUE(trouble.contains(QLatin1String(aside))) << trouble.toStdString();
        EXPECT_TRUE(QFile::exists(path(QLatin1String(aside))));
    }
}

TEST_F(JobStoreTest, has_one_window_at_a_time)
{
    const JobStore first(_folder.path());
    const JobStore second(_folder.path());
    EXPECT_TRUE(second.place().contains(QStringLiteral("Another window"))) << second.place().toStdString();
}

TEST_F(JobStoreTest, leaves_no_files_of_jobs_that_are_no_more)
{
    Job kept;
    kept.id = JobStore::newId();
    kept.report = QStringLiteral("/elsewhere/reports/old.html");
    EXPECT_EQ(JobStore(_folder.path()).keep({kept}), QString());
    const QStringList own{QStringLiteral("reports/old.html"), QStringLiteral("reports/%1.html").arg(kept.id),
                          QStringLiteral("tables/%1.json").arg(kept.id),
                          QStringLiteral("tables/%1.json.gantrel-batch").arg(kept.id)};
    const QStringList litter{QStringLiteral("running.json"), QStringLiteral("running.json.gantrel-batch"),
                             QStringLiteral("reports/%1.html").arg(JobStore::newId()),
                             QStringLiteral("tables/%1.json.gantrel-batch-locks").arg(JobStore::newId())};
    for (const QString& name : own + litter)
        write(name);
    const JobStore store(_folder.path());
    const QStringList before = files();
    load(JobStore(_folder.path()));
    EXPECT_EQ(files(), before) << "another program has the folder";
    write(QStringLiteral("list-unreadable.json"));
    load(store);
    QFile::remove(path(QStringLiteral("list-unreadable.json")));
    EXPECT_EQ(files(), before) << "somebody may mend that list";
    EXPECT_EQ(load(store).size(), 1);
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("running.json"))));
    EXPECT_EQ(files().size(), before.size() - litter.size());
    for (const QString& name : own)
        EXPECT_TRUE(QFile::exists(path(name))) << name.toStdString();
    store.removeFilesOf({kept});
    EXPECT_EQ(QDir(path(QStringLiteral("tables"))).entryList(QDir::Files), QStringList());
}

} // namespace
