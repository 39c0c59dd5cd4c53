#include "FileChecks.h"
#include "platform/linux/DesktopPrograms.h"
#include "support/OddNames.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

namespace
{
/// A desktop whose programs do nothing but tell how they were called.
class DesktopProgramsTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_pipeName = m_folder.filePath(QStringLiteral("pipe"));
    QString m_picture = m_folder.filePath(QStringLiteral("a picture.bmp"));
    QByteArray m_oldPath = qgetenv("PATH");
    DesktopPrograms m_programs;
    int m_pipe = -1;

    void SetUp() override
    {
        ASSERT_EQ(::mkfifo(m_pipeName.toUtf8().constData(), 0600), 0);
        m_pipe = ::open(m_pipeName.toUtf8().constData(), O_RDWR | O_CLOEXEC);
        putFile(m_picture, "x");
        qputenv("PATH", m_folder.path().toUtf8());
    }
    void TearDown() override
    {
        qputenv("PATH", m_oldPath);
        ::close(m_pipe);
    }
    QString install(const char *name) const
    {
        const QString path = m_folder.filePath(QString::fromLatin1(name));
        putFile(path, QByteArray("#!/bin/sh\n{ printf '") + name +
                          "'; printf '|%s' \"$@\"; printf '\\001'; } >'" + m_pipeName.toUtf8() + "'\n");
        QFile(path).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }
    /// The next call that a program tells of: its name and its arguments.
    QString called() const
    {
        QByteArray line;
        pollfd ready{m_pipe, POLLIN, 0};
        char character = 0;
        while (::poll(&ready, 1, 20'000) == 1 && ::read(m_pipe, &character, 1) == 1 && character != '\1')
            line.append(character);
        return QString::fromUtf8(line);
    }
    int painting(const QString &program)
    {
        return errorOf([&] { m_programs.paint(program, m_picture); });
    }
    int opening(const QString &path)
    {
        return errorOf([&] { m_programs.openWithDesktop(path); });
    }
};
} // namespace

TEST_F(DesktopProgramsTest, thePaintProgramIsTheGivenOneOrTheFirstInstalled)
{
    EXPECT_EQ(painting({}), RunTimeError::CannotCreateObject);
    install("drawing");
    install("gimp");
    EXPECT_EQ(painting({}), 0);
    EXPECT_EQ(called(), QStringLiteral("gimp|") + m_picture);
    EXPECT_EQ(painting(install("my painter")), 0);
    EXPECT_EQ(called(), QStringLiteral("my painter|") + m_picture);
    EXPECT_EQ(painting(QStringLiteral("drawing --new \"two words\"")), 0);
    EXPECT_EQ(called(), QStringLiteral("drawing|--new|two words|") + m_picture);
    EXPECT_EQ(painting(QStringLiteral("missing")), RunTimeError::CannotCreateObject);

    for (const QString &name : oddNames()) {
        m_picture = m_folder.filePath(name);
        putFile(m_picture, "x");
        EXPECT_EQ(painting(QStringLiteral("gimp")), 0);
        EXPECT_EQ(called(), QStringLiteral("gimp|") + m_picture);
    }

    m_programs.paint(QStringLiteral("gimp"), {}); // without a picture there is no argument
    EXPECT_EQ(called(), QStringLiteral("gimp|")); // printf repeats its format once, with nothing
    EXPECT_EQ(errorOf([&] { m_programs.paint({}, m_picture + u'x'); }), RunTimeError::FileNotFound);
}

TEST_F(DesktopProgramsTest, theDesktopOpensFilesAndFolders)
{
    EXPECT_EQ(opening(m_picture), RunTimeError::CannotCreateObject);
    install("xdg-open");
    EXPECT_EQ(opening(m_picture), 0);
    EXPECT_EQ(called(), QStringLiteral("xdg-open|") + m_picture);
    EXPECT_EQ(opening(m_folder.path()), 0);
    EXPECT_EQ(called(), QStringLiteral("xdg-open|") + m_folder.path());
    EXPECT_EQ(opening(m_picture + u'x'), RunTimeError::FileNotFound);
}

TEST_F(DesktopProgramsTest, theSystemInformationIsTheFirstProgramInstalled)
{
    const auto show = [this] { return errorOf([&] { m_programs.showSystemInformation(); }); };
    EXPECT_EQ(show(), RunTimeError::CannotCreateObject);
    install("hardinfo");
    install("gnome-control-center");
    EXPECT_EQ(show(), 0);
    EXPECT_EQ(called(), QStringLiteral("gnome-control-center|info-overview"));
}
