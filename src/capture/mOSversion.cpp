#include "capture/mOSversion.h"

bool mOSversion::CheckOsVersion(const OsVersion &version)
{
    return version.platform == 2 && version.major >= 5 && version.minor >= 1;
}
