#pragma once

#include <QKeySequence>
#include <QString>

/// Tool tips that tell the keys of what they are about.
namespace ToolTip
{
/// "Print (Ctrl+P)"; the tip alone where there are no keys.
inline QString withKeys(const QString &tip, const QString &keys)
{
    return keys.isEmpty() ? tip : QString::fromUtf16(u"%1 (%2)").arg(tip, keys);
}

inline QString withKeys(const QString &tip, const QKeySequence &keys)
{
    return withKeys(tip, keys.toString(QKeySequence::NativeText));
}
} // namespace ToolTip
