// The command line: what is understood, and the program itself without a display.

#include "app/CommandLine.h"
#include "app/RunningInstance.h"
#include "support/FakeClock.h"
#include "support/OddNames.h"
#include "support/TestPages.h"

#include <QCoreApplication>
#include <QImage>
#include <QProcess>
#include <QUrl>

#include <future>

using namespace Qt::Literals::StringLiterals;
using Action = CommandLine::Action;
using Format = CommandLine::Format;

TEST(CommandLineTest, WhatIsUnderstood)
{
    const auto read = [](const QString &line) {
        return CommandLine::parse(line.split(u' ', Qt::SkipEmptyParts));
    };
    EXPECT_EQ(read(u""_s).action, Action::OpenWindow);
    EXPECT_EQ(read(u"a.bmp"_s).picture, u"a.bmp"_s);
    EXPECT_EQ(read(u"-- --list"_s).picture, u"--list"_s);
    EXPECT_EQ(read(u"-style fusion --platform offscreen a.bmp"_s).picture, u"a.bmp"_s);
    EXPECT_EQ(read(u"-h"_s).action, Action::ShowHelp);
    EXPECT_EQ(read(u"--begin guide-1"_s).project, u"guide-1"_s);
    EXPECT_EQ(read(u"--stop"_s).action, Action::StopRun);
    const CommandLine generate = read(u"--generate=g --format pdf --output out/../here"_s);
    EXPECT_EQ(generate.action, Action::Generate);
    EXPECT_EQ(generate.project, u"g"_s);
    EXPECT_EQ(generate.format, Format::Pdf);
    EXPECT_EQ(generate.output, QDir::currentPath() + u"/here"_s);
    EXPECT_EQ(read(u"--export-db copy.mdb"_s).file, QDir::currentPath() + u"/copy.mdb"_s);

    for (const QString &wrong :
         {u"--unknown"_s, u"--begin"_s, u"--begin="_s, u"--stop now"_s, u"--stop --list"_s, u"a.bmp b.bmp"_s,
          u"--format pdf"_s, u"--list --output x"_s, u"--generate g --format png"_s,
          u"--generate g --output="_s, u"--export-db="_s}) {
        EXPECT_EQ(read(wrong).action, Action::Refused) << wrong.toStdString();
        EXPECT_FALSE(read(wrong).error.isEmpty());
    }
}

namespace
{
struct Outcome {
    int code;
    QString printed;
    QString complaint;
};

/// The program as it was built, on an application folder of its own, without a display.
class ProgramTest : public ::testing::Test, protected TestPages
{
protected:
    ProgramTest()
    {
        write(state.OptionsFilePath, "[Options]\n");
        for (const int number : {1, 2}) {
            const QString picture = inProject(u"sh000%1.bmp"_s.arg(number));
            EXPECT_TRUE(QImage(40, 30, QImage::Format_RGB32).save(picture));
            add(u"Demo"_s, picture, number);
        }
        const QString elsewhere = folder.filePath(u"sh0001.png"_s);
        EXPECT_TRUE(QImage(10, 10, QImage::Format_RGB32).save(elsewhere));
        add(u"Two"_s, inProject(u"sh0001.bmp"_s), 1);
        add(u"Two"_s, elsewhere, 2);
        add(u"Dear \"$(touch x)\" 'friend'; ok"_s, {}, 1);
    }

    void add(QString project, QString picture, int number)
    {
        for (QString *text : {&project, &picture})
            text->replace(u'"', u"\"\""_s);
        execute(u"insert into PageData(ProjectName, ProjectDirectory, PageNumber, PageTitle, PageStatus, "
                "ScreenShotFilePath) values(\"%1\",\"%2\",%3,\"T\",\"OK\",\"%4\")"_s.arg(
                    project, state.ProjectDirectory, QString::number(number), picture));
    }

    Outcome shotly(const QStringList &arguments)
    {
        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name :
             {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s, u"XDG_RUNTIME_DIR"_s})
            environment.remove(name);
        environment.insert(u"SHOTLY_HOME"_s, folder.path());
        environment.insert(u"SHOTLY_DATA_DIR"_s, QStringLiteral(SHOTLY_DELIVERED_DIR));
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(folder.path());
        program.start(QStringLiteral(SHOTLY_PROGRAM), arguments);
        EXPECT_TRUE(program.waitForFinished(60'000));
        return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
                QString::fromUtf8(program.readAllStandardError())};
    }

    QString at(const QString &name) const { return folder.filePath(name); }
};
} // namespace

TEST_F(ProgramTest, ListsAndExports)
{
    const Outcome list = shotly({u"--list"_s});
    EXPECT_EQ(list.code, 0);
    EXPECT_EQ(list.printed, u"Dear \"$(touch x)\" 'friend'; ok\t1\nDemo\t2\nTwo\t2\n"_s);
    EXPECT_EQ(list.complaint, QString());

    EXPECT_EQ(shotly({u"--export-db"_s, u"copy.mdb"_s}).code, 0);
    state.ConnectionString = u"PROVIDER=x;Data Source="_s + at(u"copy.mdb"_s);
    EXPECT_EQ(value(u"select count(*) from PageData"_s), u"5"_s);
    const Outcome again = shotly({u"--export-db"_s, u"copy.mdb"_s});
    EXPECT_EQ(again.code, 1);
    EXPECT_TRUE(again.complaint.startsWith(u"shotly: "_s) && again.complaint.contains(u"copy.mdb exists"_s));
    EXPECT_EQ(shotly({u"--export-db"_s, u"no/where.mdb"_s}).code, 1);
    EXPECT_EQ(shotly({u"--wrong"_s}).code, 2);
    const Outcome window = shotly({});
    EXPECT_EQ(window.code, 1);
    EXPECT_TRUE(window.complaint.contains(u"no display"_s)) << window.complaint.toStdString();
    EXPECT_EQ(shotly({u"--stop"_s}).complaint, u"shotly: Shotly is not running.\n"_s);
}

TEST_F(ProgramTest, GeneratesInTheProjectOrElsewhere)
{
    const QByteArray before = read(state.DatabasePath);
    write(inProject(u"index.htm"_s), "old");
    Outcome outcome = shotly({u"--generate"_s, u"demo"_s, u"--format"_s, u"all"_s, u"--output"_s, u"out"_s});
    EXPECT_EQ(outcome.code, 0) << outcome.complaint.toStdString();
    EXPECT_EQ(outcome.complaint, QString());
    EXPECT_EQ(filesOf(at(u"out"_s)),
              u"Demo.doc Demo.pdf index.htm sh0001.bmp sh0001.htm sh0002.bmp sh0002.htm"_s);
    EXPECT_EQ(QDir(at(u"out"_s)).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    EXPECT_TRUE(read(at(u"out/sh0002.htm"_s)).contains("sh0002.bmp"));
    EXPECT_TRUE(read(at(u"out/Demo.pdf"_s)).startsWith("%PDF-"));
    EXPECT_EQ(read(state.DatabasePath), before) << "the project is as it was";
    EXPECT_EQ(read(inProject(u"index.htm"_s)), "old");

    outcome = shotly({u"--generate"_s, u"Demo"_s, u"--format"_s, u"html"_s});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.printed, u"2 HTML pages written.\n"_s);
    EXPECT_TRUE(read(inProject(u"index.htm"_s)).contains("sh0001.htm"));
    EXPECT_EQ(read(inProject(u"oldDocument/index.htm"_s)), "old");

    // A name that a shell would not leave alone, a page without a picture.
    outcome = shotly({u"--generate"_s, u"Dear \"$(touch x)\" 'friend'; ok"_s, u"--output"_s,
                      u"o $(touch y)"_s, u"--format"_s, u"html"_s});
    EXPECT_EQ(outcome.code, 0) << outcome.complaint.toStdString();
    EXPECT_TRUE(filesOf(at(u"o $(touch y)"_s)).contains(u"index.htm"_s));
    EXPECT_FALSE(QFile::exists(at(u"x"_s)) || QFile::exists(at(u"y"_s)));

    // Pages are called after their pictures, which may have the same name in different folders.
    EXPECT_EQ(shotly({u"--generate"_s, u"Two"_s, u"--format"_s, u"html"_s, u"--output"_s, u"two"_s}).code, 0);
    EXPECT_EQ(filesOf(at(u"two"_s)), u"index.htm sh0001-2.htm sh0001-2.png sh0001.bmp sh0001.htm"_s);

    EXPECT_TRUE(shotly({u"--generate"_s, u"None"_s}).complaint.contains(u"no project \"None\""_s));
    write(at(u"file"_s), "in the way");
    EXPECT_EQ(shotly({u"--generate"_s, u"Demo"_s, u"--output"_s, u"file"_s}).code, 1);
    QDir(state.ProjectDirectory).removeRecursively();
    EXPECT_EQ(shotly({u"--generate"_s, u"Demo"_s}).code, 1);
}

/// What a browser makes of the references of a page.
static QStringList referencesOf(const QByteArray &html, const QByteArray &before, char end)
{
    QStringList names;
    for (qsizetype at = html.indexOf(before); at >= 0; at = html.indexOf(before, at + 1)) {
        const qsizetype from = at + before.size();
        names += QUrl(QString::fromLatin1(html.sliced(from, html.indexOf(end, from) - from))).path();
    }
    return names;
}

TEST_F(ProgramTest, FileNamesOfAnyKindLeadToTheirFiles)
{
    const QStringList names = oddNames();
    for (int i = 0; i < names.size(); ++i) {
        const QString picture = inProject(names[i] + u".bmp"_s);
        EXPECT_TRUE(QImage(8, 8, QImage::Format_RGB32).save(picture));
        add(u"Names"_s, picture, i);
    }
    for (const QStringList &where : {QStringList(), {u"--output"_s, u"out"_s}}) {
        const Outcome outcome =
            shotly(QStringList{u"--generate"_s, u"Names"_s, u"--format"_s, u"all"_s} + where);
        EXPECT_EQ(outcome.code, 0) << outcome.complaint.toStdString();
        const QDir target(where.isEmpty() ? state.ProjectDirectory : at(u"out"_s));
        EXPECT_TRUE(target.exists(u"Names.pdf"_s));
        const QStringList links = referencesOf(read(target.filePath(u"index.htm"_s)), "href='", '\'');
        ASSERT_EQ(links.size(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            EXPECT_EQ(links[i], names[i] + u".htm"_s);
            EXPECT_EQ(referencesOf(read(target.filePath(links[i])), "src=\r\n\"", '"'),
                      QStringList(names[i] + u".bmp"_s));
        }
    }
    EXPECT_FALSE(QFile::exists(at(u"x"_s)) || QFile::exists(at(u"y"_s)));
}

TEST(RunningInstanceTest, TheFirstAnswersThoseThatComeLater)
{
    QTemporaryDir folder;
    FakeClock clock;
    EXPECT_EQ(RunningInstance::send(clock, folder.path(), {u"show"_s}, -1), std::nullopt);
    for (int start = 0; start < 2; ++start) { // the second comes after one that has gone
        RunningInstance first(folder.path());
        EXPECT_TRUE(first.isFirst());
        EXPECT_FALSE(RunningInstance(folder.path()).isFirst());
        QStringList got;
        first.listen([&](const QStringList &request) {
            got += request;
            return request.value(1) == u"ö"_s ? u"No: ö"_s : QString();
        });
        EXPECT_EQ(QFile::permissions(folder.filePath(u"control"_s)) &
                      (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
                  QFile::Permissions());
        EXPECT_EQ(RunningInstance::send(clock, folder.path(), {u"show"_s}, 20),
                  u"Shotly runs already, but does not answer."_s)
            << "no events run";
        const auto ask = [&](const QStringList &request) {
            auto answer = std::async(
                std::launch::async, [&] { return RunningInstance::send(clock, folder.path(), request, -1); });
            while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
                QCoreApplication::processEvents();
            return answer.get();
        };
        EXPECT_EQ(ask({u"begin"_s, u"x"_s}), QString());
        EXPECT_EQ(ask({u"begin"_s, u"ö"_s}), u"No: ö"_s);
        EXPECT_EQ(got, (QStringList{u"show"_s, u"begin"_s, u"x"_s, u"begin"_s, u"ö"_s}));
    }
}
