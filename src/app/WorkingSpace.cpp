#include "app/WorkingSpace.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString section = u"WorkingSpace"_s;

QString formKey(int number)
{
    return u"form"_s + QString::number(number);
}
} // namespace

namespace WorkingSpace
{
void save(UserSettings &settings, const QStringList &captions, const QString &appTitle, const QString &user)
{
    int next = 1;
    for (const QString &caption : captions) {
        if (caption == appTitle)
            continue;
        const bool address = caption.startsWith(u'<') || caption.startsWith(u'>');
        settings.setValue(section, formKey(next), address ? caption : caption + u'-');
        ++next;
    }
    settings.setValue(section, u"count"_s, QString::number(next - 1));
    settings.setValue(section, u"currentUser"_s, user);
}

Kept load(const UserSettings &settings, const QString &appTitle)
{
    Kept kept;
    kept.user = settings.value(section, u"currentUser"_s, u"Administrator"_s).trimmed();
    const int count = settings.value(section, u"count"_s, u"0"_s).toInt();
    for (int i = 1; i <= count; ++i) {
        const QString value = settings.value(section, formKey(i));
        if (value != appTitle && value != appTitle + u'-' && value.startsWith(u'<'))
            kept.pageAddresses += value.mid(1);
    }
    return kept;
}
} // namespace WorkingSpace
