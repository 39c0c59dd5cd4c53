#pragma once

#include "documents/DocumentGeneration.h"
#include "support/FakePrograms.h"
#include "support/FakeProgress.h"
#include "support/FakeWordProcessor.h"
#include "support/TestPages.h"

#include <QDirIterator>

#include <map>

class DocumentGenerationTest : public testing::Test
{
protected:
    TestPages t;
    FakeProgress progress;
    FakeWordProcessor word;
    FakePrograms programs;
    DocumentServices services{t.state,     t.pages,  t.directories, t.prompter,
                              t.workspace, progress, word,          programs};
    DocumentGeneration documents{services};

    /// A finished page; one that has a picture is named after its number.
    void addPage(int number, bool picture = true, const QString &title = QStringLiteral("T"),
                 const QString &status = QStringLiteral("OK"))
    {
        const QString image =
            picture ? t.inProject(QStringLiteral("sh%1.bmp").arg(number, 4, 10, QChar(u'0'))) : QString();
        t.execute(
            QStringLiteral(
                "insert into PageData(ProjectName, ProjectDirectory, PageNumber, PageTitle, PageStatus, "
                "ScreenShotFilePath) values(\"Demo\",\"%1\",%2,\"%3\",\"%4\",\"%5\")")
                .arg(t.state.ProjectDirectory, QString::number(number), title, status, image));
    }
    QString storedPath(int number)
    {
        return t.value(QStringLiteral("select HTMLFilePath from PageData where PageNumber=") +
                       QString::number(number));
    }
    QString files() const { return t.filesOf(t.state.ProjectDirectory); }
    QString oldFiles() const { return t.filesOf(t.inProject(QStringLiteral("oldDocument"))); }
    QByteArray golden(const QString &name) const
    {
        return t.read(QStringLiteral(SHOTLY_SOURCE_DIR "/tests/golden/") + name);
    }
    /// Every file of the project, by its path.
    using Tree = std::map<QString, QByteArray>;
    Tree tree() const
    {
        Tree found;
        QDirIterator files(t.state.ProjectDirectory, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            found.emplace(path, t.read(path));
        }
        return found;
    }
    void expectNothingHappened(const QString &expectedFiles)
    {
        EXPECT_EQ(files(), expectedFiles);
        EXPECT_EQ(t.read(t.inProject(QStringLiteral("index.htm"))), "old contents");
        EXPECT_EQ(t.read(t.inProject(QStringLiteral("sh0001.htm"))), "old page");
        EXPECT_EQ(oldFiles(), QString());
        EXPECT_EQ(storedPath(1), QStringLiteral("before"));
        EXPECT_EQ(t.state.ContentsPagePath, QStringLiteral("/old/index.htm"));
        EXPECT_FALSE(t.workspace.busy || progress.open || t.state.ShowContentsRequested);
        EXPECT_TRUE(t.workspace.calls.isEmpty());
    }
    /// Two pages that were generated before.
    void generatedBefore()
    {
        addPage(1);
        addPage(2);
        t.execute(QStringLiteral("update PageData set HTMLFilePath=\"before\""));
        t.write(t.inProject(QStringLiteral("index.htm")), "old contents");
        t.write(t.inProject(QStringLiteral("sh0001.htm")), "old page");
        t.state.ContentsPagePath = QStringLiteral("/old/index.htm");
    }
};
