#include "annotate/ImageFolder.h"

#include "platform/RunTimeError.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace
{
void touch(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
}
} // namespace

TEST(ImageFolder, PicturesComeInNaturalOrderWithoutRegardToLetterCase)
{
    const QTemporaryDir folder;
    for (const QString &name :
         {u"sh10.bmp"_s, u"Sh2.BMP"_s, u"sh1.bmp"_s, u"a.Jpeg"_s, u"b.jpe"_s, u"c.GIF"_s, u"d.ico"_s,
          u"e.cur"_s, u"f.wmf"_s, u"g.emf"_s, u"h.jpg"_s, // and what is not shown:
          u"sh1.bmp.removed"_s, u"notes.txt"_s, u"x.png"_s, u".hidden.bmp"_s, u"bmp"_s})
        touch(folder.filePath(name));
    QDir(folder.path()).mkdir(u"folder.bmp"_s);
    EXPECT_EQ(ImageFolder::files(folder.path()),
              (QStringList{u"a.Jpeg"_s, u"b.jpe"_s, u"c.GIF"_s, u"d.ico"_s, u"e.cur"_s, u"f.wmf"_s,
                           u"g.emf"_s, u"h.jpg"_s, u"sh1.bmp"_s, u"Sh2.BMP"_s, u"sh10.bmp"_s}));
    EXPECT_THROW(ImageFolder::files(folder.filePath(u"none"_s)), RunTimeError);
}

TEST(ImageFolder, TheFolderListLeadsFromTheRootIntoTheFolder)
{
    const QTemporaryDir folder;
    for (const QString &name : {u"part10"_s, u"part9"_s, u".hidden"_s})
        QDir(folder.path()).mkdir(name);
    touch(folder.filePath(u"file"_s));
    const std::vector<ImageFolder::Row> rows = ImageFolder::rows(folder.path());
    const auto depth = folder.path().count(u'/');
    ASSERT_EQ(static_cast<qsizetype>(rows.size()), depth + 3);
    EXPECT_EQ(rows[0].path, u"/"_s);
    EXPECT_EQ(rows[0].depth, 0);
    const ImageFolder::Row &self = rows[rows.size() - 3];
    EXPECT_EQ(self.path, folder.path());
    EXPECT_EQ(self.name, QDir(folder.path()).dirName());
    EXPECT_TRUE(self.open);
    EXPECT_EQ(rows[rows.size() - 2].name, u"part9"_s);
    EXPECT_EQ(rows.back().path, folder.path() + u"/part10"_s);
    EXPECT_EQ(rows.back().depth, depth + 1);
    EXPECT_FALSE(rows.back().open);

    EXPECT_EQ(ImageFolder::rows(u"/"_s)[0].path, u"/"_s);
    EXPECT_TRUE(ImageFolder::rows(u"/"_s)[1].path.startsWith(u'/'));
    EXPECT_FALSE(ImageFolder::rows(u"/"_s)[1].path.startsWith(u"//"_s));
}

TEST(ImageFolder, ADriveIsTheOneWithTheLongestPath)
{
    const std::vector<ImageFolder::Drive> drives{{u"/"_s, {}}, {u"/home/me"_s, {}}, {u"/media/stick"_s, {}}};
    EXPECT_EQ(ImageFolder::driveOf(drives, u"/"_s), 0);
    EXPECT_EQ(ImageFolder::driveOf(drives, u"/home/me"_s), 1);
    EXPECT_EQ(ImageFolder::driveOf(drives, u"/home/me/Shotly"_s), 1);
    EXPECT_EQ(ImageFolder::driveOf(drives, u"/home/mefisto"_s), 0);
    EXPECT_EQ(ImageFolder::driveOf(drives, u"/media/stick/a"_s), 2);

    const auto real = ImageFolder::drives();
    ASSERT_GE(real.size(), 2U);
    EXPECT_EQ(real[0].path, u"/"_s);
    EXPECT_EQ(real[1].path, QDir::homePath());
}

TEST(ImageFolder, ANameIsFoundTrimmedAndWithoutRegardToLetterCase)
{
    const QStringList list{u"a.bmp"_s, u" B.bmp "_s, u"b.bmp"_s};
    EXPECT_EQ(ImageFolder::searchListBox(list, u"b.BMP "_s), 1);
    EXPECT_EQ(ImageFolder::searchListBox(list, u"c.bmp"_s), -1);
    EXPECT_EQ(ImageFolder::searchListBox({}, u""_s), -1);
}

TEST(ImageFolder, AnArgumentMayBeQuotedOrRelative)
{
    EXPECT_EQ(ImageFolder::pathOfArgument(u"\"/a b/c.bmp\""_s), u"/a b/c.bmp"_s);
    EXPECT_EQ(ImageFolder::pathOfArgument(u"/a//b/../c.bmp"_s), u"/a/c.bmp"_s);
    EXPECT_EQ(ImageFolder::pathOfArgument(u"c.bmp"_s), QDir::currentPath() + u"/c.bmp"_s);
    EXPECT_EQ(ImageFolder::pathOfArgument(u"\""_s), QDir::currentPath());
}
