#include "platform/office/OfficeProgram.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QGuiApplication application(argc, argv);
    if (!OfficeProgram(QDir::tempPath()).installed()) {
        std::puts("LibreOffice is not installed");
        return 77;
    }
    return RUN_ALL_TESTS();
}
