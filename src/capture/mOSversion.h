#pragma once

#include "platform/OsVersion.h"

/// The operating-system test that decides several details of capture.
namespace mOSversion
{
/// Platform 2, major version at least 5 and minor version at least 1.
bool CheckOsVersion(const OsVersion &version);
} // namespace mOSversion
