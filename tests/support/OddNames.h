#pragma once

#include <QStringList>

/// Names of files, without their ending, that a shell, a page, an address or a statement would take for
/// something else.
inline QStringList oddNames()
{
    return {QStringLiteral("a b"),
            QStringLiteral("it's \"quoted\""),
            QStringLiteral("$(touch x);`touch y`|&"),
            QStringLiteral("..x"),
            QStringLiteral("-rf"),
            QStringLiteral("line\nbreak"),
            QStringLiteral("<script>alert(1)<"),
            QStringLiteral("' onmouseover='alert(1)"),
            QStringLiteral("100%41#top?query:file\\n"),
            QStringLiteral("*[a-z]?_%"),
            QStringLiteral("\u00f6").repeated(125) +
                QLatin1Char('x')}; // 255 bytes with an ending of three letters
}
