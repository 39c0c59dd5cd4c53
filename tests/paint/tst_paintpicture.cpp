#include "PaintFixture.h"

#include "platform/ImageFile.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
class PaintPictureTest : public ::testing::Test, protected PaintFixture
{
protected:
    QString path(const QString &name) const { return state.AppOptions.BaseDirectory + u'/' + name; }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        state.FileSystem.writeFile(path(name), bytes);
        return path(name);
    }
    QByteArray read(const QString &file) const
    {
        QFile opened(file);
        EXPECT_TRUE(opened.open(QIODevice::ReadOnly)) << file.toStdString();
        return opened.readAll();
    }
    QString saved(const QString &name, const Rows &rows) const
    {
        ImageFile::save(image(rows), path(name));
        return path(name);
    }
    static Rows inFile(const QString &file) { return rowsOf(QImage(file)); }
    static QImage mirrored(const QImage &from) { return from.mirrored(true, false); }

    const QString bitmap = saved(u"a.bmp"_s, {"#b", ".r", "bb"});
    const QString nowhere = path(u"none/a.bmp"_s);
};
} // namespace

TEST_F(PaintPictureTest, ItBeginsWithAWhiteUntitledPicture)
{
    EXPECT_EQ(picture.image().size(), QSize(427, 400));
    EXPECT_EQ(picture.image().pixelColor(426, 399), QColor(Qt::white));
    EXPECT_EQ(picture.title(), u"untitled - Easel"_s);
    EXPECT_FALSE(picture.dirty());
    EXPECT_FALSE(picture.undoEnabled());
    picture.undo();
    picture.redo();
    EXPECT_FALSE(picture.dirty());
}

TEST_F(PaintPictureTest, OpeningAFileBeginsANewHistory)
{
    picture.Clear();
    prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
    EXPECT_TRUE(picture.openFile(bitmap));
    EXPECT_EQ(prompter.asked.back().text, u"Do you want to save the changes?"_s);
    EXPECT_EQ(prompter.asked.back().icon, Icon::Exclamation);
    EXPECT_EQ(shown(), (Rows{"#b", ".r", "bb"}));
    EXPECT_EQ(picture.title(), bitmap + u" - Easel"_s);
    EXPECT_FALSE(picture.dirty() || picture.undoEnabled() || picture.redoEnabled());

    prompter.expectFile(Question::PaintOpen, std::nullopt);
    EXPECT_FALSE(picture.Open());
    EXPECT_EQ(prompter.asked.back().directory, state.AppOptions.BaseDirectory);
    prompter.expectFile(Question::PaintOpen, saved(u"b.png"_s, {"r"}));
    EXPECT_TRUE(picture.Open());
    EXPECT_EQ(shown(), Rows{"r"});

    EXPECT_TRUE(picture.New()) << "unchanged: no question";
    EXPECT_EQ(shown(), Rows{"."}) << "white, whatever the colours are, in the same size";
    EXPECT_EQ(picture.title(), u"untitled - Easel"_s);
    EXPECT_FALSE(picture.undoEnabled());
}

TEST_F(PaintPictureTest, UnsavedChangesAreAskedForBeforeThePictureGoes)
{
    const std::vector<std::function<bool()>> leaving{
        [this] { return picture.New(); }, [this] { return picture.openFile(bitmap); },
        [this] { return picture.Open(); }, [this] { return picture.queryClose(); }};
    for (const auto &leave : leaving) {
        begin({"b#"});
        prompter.expectAsk(Question::PaintSaveChanges, Answer::Cancel);
        EXPECT_FALSE(leave());
        prompter.expectAsk(Question::PaintSaveChanges, Answer::Yes); // but it has no name and gets none
        prompter.expectFile(Question::PaintSaveAs, std::nullopt);
        EXPECT_FALSE(leave());
        prompter.expectAsk(Question::PaintSaveChanges, Answer::Yes);
        prompter.expectFile(Question::PaintSaveAs, nowhere);
        prompter.expectTell(Question::PaintSaveFailed);
        EXPECT_FALSE(leave());
        EXPECT_TRUE(picture.dirty());
        EXPECT_EQ(shown(), Rows{"b#"});
    }
    prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
    EXPECT_TRUE(picture.queryClose());
    prompter.expectAsk(Question::PaintSaveChanges, Answer::Yes);
    prompter.expectFile(Question::PaintSaveAs, path(u"c.bmp"_s));
    EXPECT_TRUE(picture.queryClose());
    EXPECT_EQ(inFile(path(u"c.bmp"_s)), Rows{"b#"});
    EXPECT_TRUE(picture.queryClose()) << "saved: no question";
}

TEST_F(PaintPictureTest, AFileThatIsNoPictureIsToldAndChangesNothing)
{
    const QByteArray whole = read(bitmap);
    QByteArray huge = whole;
    huge.replace(18, 8, QByteArray::fromHex("00ffff0000ffff00")); // width and height
    EXPECT_TRUE(picture.openFile(bitmap));
    picture.Clear();
    const QStringList bad{write(u"empty.bmp"_s, {}),
                          write(u"broken.bmp"_s, "BM no picture"),
                          write(u"cut.bmp"_s, whole.left(30)),
                          write(u"huge.bmp"_s, huge),
                          path(u"none.bmp"_s),
                          state.AppOptions.BaseDirectory};
    for (const QString &file : bad) {
        prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
        prompter.expectTell(Question::PaintOpenFailed);
        EXPECT_FALSE(picture.openFile(file)) << file.toStdString();
        EXPECT_TRUE(prompter.asked.back().text.contains(file)) << prompter.asked.back().text.toStdString();
    }
    EXPECT_TRUE(picture.dirty());
    EXPECT_EQ(picture.fileName(), bitmap);
    EXPECT_EQ(shown(), (Rows{"rr", "rr", "rr"}));
    picture.undo();
    EXPECT_EQ(shown(), (Rows{"#b", ".r", "bb"}));
}

TEST_F(PaintPictureTest, SavingGoesToTheFileAndSaveAsToAnother)
{
    EXPECT_TRUE(picture.openFile(bitmap));
    picture.Clear();
    EXPECT_TRUE(picture.Save());
    EXPECT_FALSE(picture.dirty());
    EXPECT_EQ(inFile(bitmap), (Rows{"rr", "rr", "rr"}));
    picture.undo();
    EXPECT_TRUE(picture.dirty()) << "that is not what was saved";

    const QString other = saved(u"other.png"_s, {"b"});
    prompter.expectFile(Question::PaintSaveAs, other);
    prompter.expectAsk(Question::PaintReplaceFile, Answer::No);
    EXPECT_FALSE(picture.SaveAs());
    EXPECT_EQ(inFile(other), Rows{"b"});
    EXPECT_EQ(picture.fileName(), bitmap);
    prompter.expectFile(Question::PaintSaveAs, other);
    prompter.expectAsk(Question::PaintReplaceFile, Answer::Yes);
    EXPECT_TRUE(picture.SaveAs());
    EXPECT_EQ(prompter.asked[prompter.asked.size() - 2].proposal, u"a.bmp"_s);
    EXPECT_EQ(inFile(other), (Rows{"#b", ".r", "bb"}));
    EXPECT_TRUE(read(other).startsWith("\x89PNG"));
    EXPECT_EQ(picture.title(), other + u" - Easel"_s);
    prompter.expectFile(Question::PaintSaveAs, other);
    EXPECT_TRUE(picture.SaveAs()) << "its own file: no question";

    picture.Clear();
    prompter.expectFile(Question::PaintSaveAs, nowhere);
    prompter.expectTell(Question::PaintSaveFailed);
    EXPECT_FALSE(picture.SaveAs());
    EXPECT_TRUE(picture.dirty());
    EXPECT_EQ(picture.fileName(), other) << "the next Save goes where the last one went";
}

TEST_F(PaintPictureTest, EveryCommandCanBeUndoneAndRedone)
{
    const QImage pasted = image({"bb", "b#"});
    const std::vector<std::pair<const char *, std::function<void()>>> commands{
        {"Clear", [this] { picture.Clear(); }},
        {"grow",
         [this] {
             picture.resizeCanvas({6, 5});
         }},
        {"shrink",
         [this] {
             picture.resizeCanvas({2, 1});
         }},
        {"effect", [this] { picture.apply(mirrored); }},
        {"Paste",
         [&] {
             picture.Paste(pasted, {2, 1});
         }},
        {"Delete", [this] { picture.Delete(); }},
        {"Cut", [this] { picture.Cut(); }},
        {"Crop", [this] { picture.Crop(); }},
        {"move",
         [this] {
             picture.lift(false), picture.moveSelection({2, 2});
         }},
        {"copy", [this] {
             picture.lift(true), picture.moveSelection({-1, 0});
         }}};
    for (const bool selected : {false, true}) {
        for (const auto &[name, command] : commands) {
            begin({"#..b", "....", "r..#"});
            if (selected)
                picture.select({0, 0, 2, 2});
            const int entry = picture.history().current();
            const Rows before = shown();
            command();
            const Rows after = shown();
            if (after == before) {
                EXPECT_EQ(picture.history().current(), entry) << name;
                continue;
            }
            EXPECT_TRUE(picture.undoEnabled()) << name;
            picture.undo();
            EXPECT_EQ(shown(), before) << name << selected;
            EXPECT_EQ(picture.history().current(), entry) << name;
            picture.redo();
            EXPECT_EQ(shown(), after) << name << selected;
            EXPECT_FALSE(picture.redoEnabled());
        }
    }
}

TEST_F(PaintPictureTest, CommandsFinishWhatTheToolsHavePending)
{
    const std::vector<std::function<void()>> commands{
        [this] { picture.undo(); },       [this] { picture.redo(); },
        [this] { picture.Clear(); },      [this] { picture.resizeCanvas({3, 3}); },
        [this] { picture.queryClose(); }, [this] { picture.apply(mirrored); },
        [this] { picture.Copy(); },       [this] { picture.Paste(image({"b"}), {}); }};
    bool exists = true;
    picture.setPendingWork({[&] { return exists; }, [&] { exists = false; }});
    EXPECT_TRUE(picture.undoEnabled());
    for (const auto &command : commands) {
        EXPECT_TRUE(picture.New());
        exists = true;
        command();
        EXPECT_FALSE(exists);
        if (picture.dirty() || picture.selection().exists())
            prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
    }
    EXPECT_TRUE(picture.New());
    picture.setPendingWork({});
}

TEST_F(PaintPictureTest, AMovedSelectionLeavesTheFillColourAndIsClippedWhenItIsCommitted)
{
    begin({"##..", "#b..", "...."});
    picture.select({-3, -3, 5, 5});
    EXPECT_EQ(picture.selection().place, QRect(0, 0, 2, 2)) << "clipped to the picture";
    EXPECT_FALSE(picture.selection().floats());
    picture.moveSelection({1, 1});
    EXPECT_EQ(picture.selection().place, QRect(0, 0, 2, 2)) << "it does not float yet";

    picture.lift(false);
    picture.moveSelection({3, 2});
    EXPECT_EQ(rowsOf(picture.image()), (Rows{"rr..", "rr..", "...."}));
    EXPECT_EQ(shown(), (Rows{"rr..", "rr..", "...#"}));
    picture.moveSelection({3, 1});
    const int entry = picture.history().current();
    picture.commitSelection();
    EXPECT_EQ(rowsOf(picture.image()), (Rows{"rr..", "rr.#", "...#"}));
    EXPECT_FALSE(picture.selection().exists());
    EXPECT_EQ(picture.history().current(), entry + 1);
    picture.commitSelection();
    EXPECT_EQ(picture.history().current(), entry + 1);

    picture.select({3, 1, 1, 2});
    picture.lift(false);
    picture.moveSelection({0, 0});
    picture.dropSelection();
    EXPECT_EQ(shown(), (Rows{"rr..", "rr.#", "...#"}));
    picture.select({5, 1, 3, 3});
    EXPECT_FALSE(picture.selection().exists()) << "outside the picture";
}

TEST_F(PaintPictureTest, ACopiedSelectionStaysWhereItWas)
{
    begin({"#b..", "...."});
    picture.select({0, 0, 2, 1});
    picture.lift(true);
    picture.moveSelection({1, 1});
    picture.lift(true); // once more: the first copy is there for good
    picture.moveSelection({2, 0});
    EXPECT_EQ(shown(), (Rows{"#b#b", ".#b."}));
    picture.undo();
    EXPECT_EQ(shown(), (Rows{"#b..", ".#b."}));
    picture.undo();
    EXPECT_EQ(shown(), (Rows{"#b..", "...."}));
}

TEST_F(PaintPictureTest, CutCopyPasteAndDelete)
{
    begin({"#b.", "..."});
    EXPECT_TRUE(picture.clipboard().isNull());
    EXPECT_FALSE(picture.Cut() || picture.Delete() || picture.Crop()) << "nothing is selected";
    EXPECT_TRUE(picture.clipboard().isNull());
    picture.Copy();
    EXPECT_EQ(rowsOf(picture.clipboard()), (Rows{"#b.", "..."})) << "the whole picture";

    picture.select({0, 0, 2, 1});
    EXPECT_TRUE(picture.Cut());
    EXPECT_EQ(rowsOf(picture.clipboard()), Rows{"#b"});
    EXPECT_EQ(shown(), (Rows{"rr.", "..."}));
    picture.Paste({}, {});
    EXPECT_FALSE(picture.selection().exists());
    picture.Paste(picture.clipboard(), {1, 1});
    EXPECT_EQ(shown(), (Rows{"rr.", ".#b"}));
    EXPECT_TRUE(picture.Delete());
    EXPECT_EQ(shown(), (Rows{"rr.", "..."})) << "what floats leaves nothing";
    picture.undo();
    EXPECT_EQ(shown(), (Rows{"rr.", ".#b"}));

    QImage glass(2, 1, QImage::Format_ARGB32);
    glass.fill(Qt::transparent);
    glass.setPixelColor(0, 0, Qt::blue);
    glass.setDevicePixelRatio(2);
    picture.Paste(glass, {0, 0});
    EXPECT_EQ(shown(), (Rows{"b..", ".#b"})) << "what is transparent is white";
}

TEST_F(PaintPictureTest, CropMakesTheSelectionThePicture)
{
    begin({"#b.", "r.."});
    picture.select({0, 0, 2, 2});
    EXPECT_TRUE(picture.Crop());
    EXPECT_EQ(shown(), (Rows{"#b", "r."}));
    EXPECT_FALSE(picture.selection().exists());
    picture.select({1, 0, 1, 2});
    picture.lift(false);
    picture.moveSelection({-1, 1}); // mostly outside
    EXPECT_TRUE(picture.Crop());
    EXPECT_EQ(shown(), (Rows{"b", "."}));
}

TEST_F(PaintPictureTest, TheCanvasGrowsAndShrinksAtRightAndBottom)
{
    begin({"#b", "b#"});
    EXPECT_TRUE(picture.resizeCanvas({3, 3}));
    EXPECT_EQ(shown(), (Rows{"#br", "b#r", "rrr"}));
    EXPECT_TRUE(picture.resizeCanvas({3, 1}));
    EXPECT_EQ(shown(), Rows{"#br"});
    for (const QSize size : {QSize(3, 1), QSize(0, 1), QSize(3, -1)})
        EXPECT_FALSE(picture.resizeCanvas(size));
    const QImage line = QImage(40'000, 1, QImage::Format_RGB32); // longer than what can be drawn on
    const std::vector<std::function<void()>> growing{
        [this] {
            picture.resizeCanvas({30'000, 30'000});
        },
        [&] { picture.Paste(line, {}); },
        [this] {
            picture.apply([](const QImage &) -> QImage { throw RunTimeError(7, u"it is not even tried"_s); },
                          [](QSize size) { return size * 20'000; });
        }};
    for (const auto &grow : growing) {
        prompter.expectTell(Question::PaintTooLarge);
        grow();
        EXPECT_EQ(shown(), Rows{"#br"});
    }
    EXPECT_TRUE(prompter.asked.back().text.contains(u"60000 x 20000"_s));
    ImageFile::save(line, path(u"line.bmp"_s));
    picture.discardChanges();
    prompter.expectTell(Question::PaintOpenFailed);
    EXPECT_FALSE(picture.openFile(path(u"line.bmp"_s)));
}

TEST_F(PaintPictureTest, ChangesThatAreNotWantedAreGoneForGood)
{
    EXPECT_TRUE(picture.openFile(bitmap));
    picture.discardChanges();
    picture.Clear();
    EXPECT_TRUE(picture.Save());
    begin({"b"});
    picture.discardChanges();
    EXPECT_EQ(shown(), (Rows{"rr", "rr", "rr"})) << "as it was saved last";
    EXPECT_EQ(picture.fileName(), bitmap);
    EXPECT_FALSE(picture.dirty() || picture.undoEnabled());
}

TEST_F(PaintPictureTest, AnEffectChangesTheSelectionOrElseThePicture)
{
    begin({"#b.", "..."});
    EXPECT_TRUE(picture.apply(mirrored));
    EXPECT_EQ(shown(), (Rows{".b#", "..."}));
    picture.select({1, 0, 2, 1});
    EXPECT_TRUE(picture.apply(mirrored));
    EXPECT_TRUE(picture.selection().floats());
    EXPECT_EQ(shown(), (Rows{".#b", "..."}));
    EXPECT_TRUE(picture.apply([](const QImage &from) { return from.scaled(1, 2); }));
    EXPECT_EQ(picture.selection().place, QRect(1, 0, 1, 2));
    EXPECT_EQ(picture.image().pixelColor(2, 0), QColor(Qt::red)) << "the place it came from";
    picture.undo();
    EXPECT_EQ(shown(), (Rows{".#b", "..."})) << "one step each";

    picture.select({0, 0, 1, 1});
    const int entry = picture.history().current();
    EXPECT_FALSE(picture.apply([](const QImage &) { return QImage(); }));
    EXPECT_THROW(picture.apply([](const QImage &) -> QImage { throw RunTimeError(7, u"no memory"_s); }),
                 RunTimeError);
    EXPECT_EQ(shown(), (Rows{".#b", "..."}));
    EXPECT_EQ(picture.history().current(), entry);
    EXPECT_FALSE(picture.selection().floats());
}
