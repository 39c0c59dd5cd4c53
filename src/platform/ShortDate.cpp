#include "platform/ShortDate.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

QString ShortDate::toText(QDate date)
{
    return date.toString(u"MM/dd/yyyy"_s);
}

std::optional<QDate> ShortDate::fromText(const QString &text)
{
    static const QRegularExpression form(u"^(\\d{1,2})/(\\d{1,2})/(\\d{4}|\\d{2})$"_s);
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    int year = match.captured(3).toInt();
    if (match.capturedLength(3) == 2)
        year += year < 30 ? 2000 : 1900;
    const QDate date(year, match.captured(1).toInt(), match.captured(2).toInt());
    return date.isValid() ? std::optional(date) : std::nullopt;
}
