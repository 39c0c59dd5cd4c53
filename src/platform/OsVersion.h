#pragma once

/// What the version query of the original platform answers today to a program like this one: platform 2,
/// version 6.2. The environment variable SHOTLY_OS_VERSION ("5.0") gives another version, for tests.
struct OsVersion {
    int platform = 2;
    int major = 6;
    int minor = 2;
};

OsVersion osVersion();
