#include "CaptureFixture.h"

#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QRgb grey = qRgb(0xe0, 0xe0, 0xe0);
constexpr QRgb blue = qRgb(0, 0, 0xff);
constexpr QRgb yellow = qRgb(0xff, 0xff, 0);
constexpr QRgb red = qRgb(0xff, 0, 0);

class MarkerTest : public ::testing::Test, protected CaptureFixture
{
protected:
    MarkerTest() { state.ShotTable.resize(1); }

    MarkStyle style{100, PointerMarker::insideColour(1), PointerMarker::borderColour(1), false};
    std::uint64_t hash = 0; ///< of the snapshot added last

    /// A grey snapshot of 800 x 600 with a click and, if there is one, a right click.
    void addShot(QPoint pointer, std::optional<QPoint> rightClick = {}, bool reduced = false,
                 const QString &suffix = u".bmp"_s)
    {
        const QString path = inProject(u"sh%1"_s.arg(state.ShotTable.size()) + suffix);
        hash = ImageFile::save(screen.picture, path);
        const QPoint right = rightClick.value_or(QPoint());
        state.ShotTable.push_back({u"Demo"_s, path, QString::number(pointer.x()),
                                   QString::number(pointer.y()), u"OK"_s, reduced ? u"True"_s : u"False"_s,
                                   rightClick ? u"True"_s : u"False"_s, QString::number(right.x()),
                                   QString::number(right.y())});
    }
    QImage marked(std::size_t number = 1) { return ImageFile::load(state.ShotTable[number][ShotPath]); }

    static QRect changed(const QImage &picture)
    {
        QRect area;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixel(x, y) != grey)
                    area |= QRect(x, y, 1, 1);
        return area;
    }
};
} // namespace

TEST_F(MarkerTest, TheArrowHasItsTipOnTheClick)
{
    addShot({500, 300});
    marker.DrawPointerMarker(1, style, hash);
    const QImage picture = marked();
    EXPECT_EQ(picture.pixel(500, 300), blue);
    EXPECT_EQ(picture.pixel(500, 317), blue); // left edge of the outline
    EXPECT_EQ(picture.pixel(511, 311), blue); // right corner
    EXPECT_EQ(picture.pixel(509, 321), blue); // foot
    EXPECT_EQ(picture.pixel(503, 308), yellow);
    EXPECT_EQ(picture.pixel(505, 313), yellow);
    EXPECT_EQ(changed(picture), QRect(500, 300, 12, 22));
}

TEST_F(MarkerTest, ColoursFollowTheOptions)
{
    EXPECT_EQ(PointerMarker::borderColour(0).rgb(), qRgb(0, 0, 0));
    EXPECT_EQ(PointerMarker::borderColour(1).rgb(), blue);
    EXPECT_EQ(PointerMarker::borderColour(2).rgb(), qRgb(0, 0, 0));
    EXPECT_EQ(PointerMarker::insideColour(0).rgb(), qRgb(0, 0xff, 0));
    EXPECT_EQ(PointerMarker::insideColour(1).rgb(), yellow);
    EXPECT_EQ(PointerMarker::insideColour(2).rgb(), qRgb(0xff, 0xff, 0xff));
    EXPECT_EQ(PointerMarker::insideColour(3).rgb(), red);
    EXPECT_EQ(PointerMarker::insideColour(-1).rgb(), qRgb(0, 0, 0));
}

TEST_F(MarkerTest, PositionsOfScaledSnapshotsAreScaled)
{
    style.bigPicSize = 90;
    addShot({500, 300}, QPoint(5, 15), true);
    marker.DrawPointerMarker(1, style, hash);
    EXPECT_EQ(entry(1), u"sh1.bmp 450 270 OK True True 4 14"_s); // 4.5 and 13.5 round to the even neighbour
    EXPECT_EQ(marked().pixel(450, 270), blue);
    EXPECT_EQ(marked().pixel(500, 300), grey);
}

TEST_F(MarkerTest, ARightClickIsADotAnArrowAndALabelledFrame)
{
    addShot({300, 300}, QPoint(100, 100));
    marker.DrawPointerMarker(1, style, hash);
    const QImage picture = marked();
    EXPECT_EQ(picture.pixel(300, 300), blue);
    EXPECT_EQ(picture.pixel(100, 100), blue); // the second arrow's tip
    EXPECT_EQ(picture.pixel(98, 100), blue);  // the dot's left edge
    // The frame from (108, 94) to (161, 109).
    EXPECT_EQ(picture.pixel(130, 94), red);
    EXPECT_EQ(picture.pixel(161, 100), red);
    EXPECT_EQ(picture.pixel(130, 109), red);
    EXPECT_EQ(picture.pixel(108, 96), red);
    EXPECT_EQ(picture.pixel(163, 100), grey);
    int letters = 0;
    for (int y = 95; y < 109; ++y)
        for (int x = 112; x < 161; ++x)
            letters += qGreen(picture.pixel(x, y)) < 0x80;
    EXPECT_GT(letters, 40);
    EXPECT_EQ(changed(picture.copy(0, 0, 250, 200)), QRect(98, 93, 64, 29));
}

TEST_F(MarkerTest, PositionsOutsideThePictureDrawNothing)
{
    addShot({-100, 300});
    addShot({799, 599});
    marker.DrawPointerMarker(1, style, hash);
    marker.DrawPointerMarker(2, style, hash);
    EXPECT_TRUE(changed(marked(1)).isEmpty());
    EXPECT_EQ(changed(marked(2)), QRect(799, 599, 1, 1)); // only the tip of the arrow
}

TEST_F(MarkerTest, AChangedFileIsLeftAloneAndOneThatIsNoPictureIsAFailure)
{
    addShot({10, 10});
    marker.DrawPointerMarker(1, style, hash);
    const QByteArray once = read(state.ShotTable[1][ShotPath]);
    state.ShotTable[1][ShotPointerX] = u"300"_s; // another mark would show
    marker.DrawPointerMarker(1, style, hash);
    EXPECT_EQ(read(state.ShotTable[1][ShotPath]), once);
    write(state.ShotTable[1][ShotPath], "no picture");
    EXPECT_THROW(marker.DrawPointerMarker(1, style, hash), RunTimeError);
    QFile::remove(state.ShotTable[1][ShotPath]);
    EXPECT_THROW(marker.DrawPointerMarker(1, style, hash), RunTimeError);
}

TEST_F(MarkerTest, TheSystemsShapeIsDrawnWithItsCornerOnTheClick)
{
    style.systemMouseShape = true;
    screen.shape.image = QImage(4, 4, QImage::Format_ARGB32_Premultiplied);
    screen.shape.image.fill(Qt::magenta);
    screen.shape.hotSpot = {2, 2};
    addShot({200, 200});
    marker.DrawPointerMarker(1, style, hash);
    EXPECT_EQ(changed(marked()), QRect(200, 200, 4, 4));
}

TEST_F(MarkerTest, TheMarksAreThoseDrawnOnTheWholePicture)
{
    // A bitmap is taken apart around the marks only, a file of another format is painted as a whole.
    for (int y = 0; y < 600; ++y)
        for (int x = 0; x < 800; ++x)
            screen.picture.setPixel(x, y, qRgb(x * 7, y * 5, x + y));
    screen.shape.image = QImage(200, 256, QImage::Format_ARGB32_Premultiplied);
    screen.shape.image.fill(qRgba(0x60, 0, 0x40, 0x80));
    const QPoint positions[] = {{400, 300}, {0, 0}, {799, 0}, {3, 599}, {-5, -5}, {790, 610}, {300, 5}};
    for (const bool systemShape : {false, true}) {
        style.systemMouseShape = systemShape;
        for (std::size_t i = 0; i < std::size(positions); ++i) {
            const QPoint rightClick = positions[(i + 2) % std::size(positions)];
            for (const QString &suffix : {u".bmp"_s, u".png"_s}) {
                addShot(positions[i], rightClick, false, suffix);
                marker.DrawPointerMarker(state.ShotTable.size() - 1, style, hash);
            }
            const QImage picture = marked(state.ShotTable.size() - 2);
            EXPECT_NE(picture, screen.picture) << i;
            EXPECT_EQ(picture, marked(state.ShotTable.size() - 1)) << systemShape << ' ' << i;
        }
    }
}
