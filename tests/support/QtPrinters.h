#pragma once

// Lets GoogleTest print Qt's values readably; included into every test.

#include <QRect>
#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *stream)
{
    *stream << "[\"" << list.join(QStringLiteral("\", \"")).toStdString() << "\"]";
}
inline void PrintTo(const QPoint &point, std::ostream *stream)
{
    *stream << '(' << point.x() << ", " << point.y() << ')';
}
inline void PrintTo(const QSize &size, std::ostream *stream)
{
    *stream << size.width() << " x " << size.height();
}
inline void PrintTo(const QRect &rect, std::ostream *stream)
{
    *stream << rect.width() << " x " << rect.height() << " at (" << rect.x() << ", " << rect.y() << ')';
}
