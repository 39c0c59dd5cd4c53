// Files of pointer shapes.

#include "fuzz/Fuzz.h"

#include "paint/CursorFile.h"

#include <QGuiApplication>
#include <QPixmap>

using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *names[] = {name, nullptr};
    static const QGuiApplication *const application =
        (qputenv("QT_QPA_PLATFORM", "offscreen"), qputenv("QT_LOGGING_RULES", "*=false"),
         new QGuiApplication(count, names));
    Q_UNUSED(application)

    const QString path = Fuzz::path(u"shape.cur"_s);
    Fuzz::write(path, Fuzz::bytesOf(data, size));
    const QCursor cursor = CursorFile::load(path);
    const QSize shape = cursor.pixmap().size();
    Fuzz::require(cursor.shape() == Qt::CrossCursor || QRect(QPoint(), shape).contains(cursor.hotSpot()),
                  "the hot spot lies in the shape");
    Fuzz::require(shape.width() <= 256 && shape.height() <= 256, "a shape is small");
    return 0;
}
