#pragma once

#include "pagestore/PageDatabase.h"
#include "pagestore/ProjectDirectories.h"
#include "platform/RunTimeError.h"
#include "platform/sqlite/SqliteDatabase.h"
#include "support/FakeWorkspace.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <QDir>
#include <QFile>

/// The page store over a real database and real folders, with a scripted user and a main window that only
/// remembers. The current project is "Demo"; its directory exists.
struct TestPages : TestState {
    SqliteDatabase database{std::chrono::milliseconds(1)};
    ScriptedPrompter prompter;
    FakeWorkspace workspace;
    PageDatabase pages{database, state, prompter};
    ProjectDirectories directories{state, pages, prompter};

    TestPages()
    {
        state.MainWindow = &workspace;
        state.AppOptions.ProjectName = workspace.text = QStringLiteral("Demo");
        workspace.names = QStringList{QStringLiteral("Demo")};
        state.ProjectDirectory = state.AppOptions.BaseDirectory + QStringLiteral("/Demo");
        state.FileSystem.createFolder(state.ProjectDirectory);
    }

    /// Runs a statement in the program's dialect; a failure fails the test.
    void execute(const QString &statement)
    {
        try {
            database.open(state.ConnectionString)->execute(statement);
        } catch (const RunTimeError &error) {
            ADD_FAILURE() << error.what();
        }
    }

    /// The first field of the first row, as text.
    QString value(const QString &query)
    {
        try {
            return database.open(state.ConnectionString)->openRecordset(query)->field(0).toString();
        } catch (const RunTimeError &error) {
            ADD_FAILURE() << error.what();
            return {};
        }
    }

    QString inProject(const QString &name) const { return state.ProjectDirectory + u'/' + name; }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << qPrintable(path);
    }

    /// Nothing (a null array) when there is no such file.
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Names of the files of a folder, sorted, joined with blanks.
    static QString filesOf(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name).join(u' ');
    }
};
