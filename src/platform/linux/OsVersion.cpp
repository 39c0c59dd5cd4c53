#include "platform/OsVersion.h"

#include <QString>

OsVersion osVersion()
{
    OsVersion version;
    const QString wanted = qEnvironmentVariable("SHOTLY_OS_VERSION");
    const qsizetype dot = wanted.indexOf(u'.');
    bool majorGiven = false;
    bool minorGiven = false;
    const int major = wanted.left(dot).toInt(&majorGiven);
    const int minor = wanted.mid(dot + 1).toInt(&minorGiven);
    if (dot > 0 && majorGiven && minorGiven) {
        version.major = major;
        version.minor = minor;
    }
    return version;
}
