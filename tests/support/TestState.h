#pragma once

#include "platform/ApplicationFolder.h"
#include "state/Module1.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A program-wide state as Main makes it, over a temporary application folder with a real, empty database
/// and a temporary base directory. Options have plain values; tests set what they mean.
struct TestState {
    QTemporaryDir folder;
    Module1 state;

    TestState()
    {
        EXPECT_TRUE(folder.isValid());
        const QString home = folder.path();
        state.AppTitle = QStringLiteral("Shotly");
        state.ApplicationPath = home;
        state.OptionsFilePath = home + QStringLiteral("/options.ini");
        state.HelpFilePath = home + QStringLiteral("/help");
        state.DatabasePath = home + QStringLiteral("/Shotly.mdb");
        state.ConnectionString =
            QStringLiteral("PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=") + state.DatabasePath;
        state.AppOptions.BaseDirectory = home + QStringLiteral("/base");
        state.AppOptions.FileNamePrefix = QStringLiteral("sh");
        state.AppOptions.BigPicSize = 100;
        state.IsWinXPOrLater = true;
        state.TrayAllowed = true;
        state.ShotCounter = 1;
        state.FileSystem.createFolder(state.AppOptions.BaseDirectory);
        EXPECT_TRUE(QFile::copy(QStringLiteral(SHOTLY_DELIVERED_DIR "/Shotly.mdb"), state.DatabasePath));
    }
};
