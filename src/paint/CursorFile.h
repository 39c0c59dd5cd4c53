#pragma once

#include <QCursor>
#include <QString>

/// Pointer shapes in .cur files: a directory of pictures with a hot spot each, of which the first is taken.
namespace CursorFile
{
/// The shape in the file; Qt::CrossCursor where there is none that can be read. Needs a QGuiApplication.
QCursor load(const QString &path);
} // namespace CursorFile
