#include "FileChecks.h"
#include "platform/FileSystem.h"

#include <QTemporaryDir>

namespace
{
class FileSystemTest : public ::testing::Test
{
protected:
    QTemporaryDir m_folder;
    FileSystem m_files;

    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    QString matching(const char *pattern) const
    {
        return m_files.filesMatching(m_folder.path(), QString::fromUtf8(pattern)).join(u' ');
    }
};
} // namespace

TEST_F(FileSystemTest, patternsMatchWithoutRegardToLetterCase)
{
    for (const char *name :
         {"sh0001.bmp", "SH0002.BMP", ".hidden.bmp", "readme", "a.bmp.txt", "[1].bmp", "a.b", "\u00dcb.HTM"})
        putFile(path(name), "x");
    m_files.createFolder(path("folder.bmp"));
    const QString all =
        QStringLiteral(".hidden.bmp [1].bmp a.b a.bmp.txt readme sh0001.bmp SH0002.BMP \u00dcb.HTM");
    EXPECT_EQ(matching("*.*"), all);
    EXPECT_EQ(matching("*"), all);
    EXPECT_EQ(matching("*.bmp"), QStringLiteral(".hidden.bmp [1].bmp sh0001.bmp SH0002.BMP"));
    EXPECT_EQ(matching("sh*.BMP"), QStringLiteral("sh0001.bmp SH0002.BMP"));
    EXPECT_EQ(matching("sh000?.bmp"), QStringLiteral("sh0001.bmp SH0002.BMP"));
    EXPECT_EQ(matching("?.b"), QStringLiteral("a.b"));
    EXPECT_EQ(matching("[1].bmp"), QStringLiteral("[1].bmp"));
    EXPECT_EQ(matching("\u00fc*.htm"), QStringLiteral("\u00dcb.HTM"));
    EXPECT_EQ(matching("*m*t"), QStringLiteral("a.bmp.txt"));
    EXPECT_EQ(matching("read"), QString());
    EXPECT_EQ(errorOf([&] { (void)m_files.filesMatching(path("missing"), all); }),
              RunTimeError::PathNotFound);
}

TEST_F(FileSystemTest, foldersAreMadeWithTheirParents)
{
    m_files.createFolder(path("one/two/three"));
    m_files.createFolder(path("one/two/three"));
    EXPECT_TRUE(m_files.folderExists(path("one/two/three")));
    EXPECT_FALSE(m_files.fileExists(path("one")));
    m_files.writeFile(path("file"), "text");
    EXPECT_TRUE(m_files.fileExists(path("file")));
    EXPECT_FALSE(m_files.folderExists(path("file")));
    EXPECT_EQ(errorOf([&] { m_files.createFolder(path("file/below")); }), RunTimeError::PathNotFound);
    EXPECT_EQ(contents(path("file")), "text");
}

TEST_F(FileSystemTest, filesAreCopiedMovedAndDeleted)
{
    m_files.writeFile(path("first"), "1");
    m_files.writeFile(path("second"), "22");
    m_files.copyFile(path("first"), path("second"));
    EXPECT_EQ(contents(path("second")), "1");

    // Memory, and so another file system than the temporary folder's on most machines.
    const QTemporaryDir elsewhere(QStringLiteral("/dev/shm/shotly-XXXXXX"));
    const QString away = elsewhere.filePath(QStringLiteral("away"));
    m_files.moveFile(path("first"), away);
    EXPECT_EQ(contents(away), "1");
    m_files.moveFile(away, path("second"));
    EXPECT_EQ(matching("*"), QStringLiteral("second"));
    EXPECT_FALSE(m_files.fileExists(away));

    m_files.deleteFile(path("second"));
    EXPECT_EQ(errorOf([&] { m_files.deleteFile(path("second")); }), RunTimeError::FileNotFound);
    EXPECT_EQ(errorOf([&] { m_files.moveFile(path("second"), away); }), RunTimeError::FileNotFound);
    EXPECT_EQ(errorOf([&] { m_files.deleteFile(m_folder.path()); }), RunTimeError::PathAccess);
}
