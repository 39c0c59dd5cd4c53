#pragma once

#include <QString>
#include <QStringList>

/// What the program was started for.
struct CommandLine {
    enum class Action {
        OpenWindow, ///< the main window, with a picture in a viewer if one is named
        ShowHelp,
        ShowVersion,
        BeginRun,
        StopRun,
        Generate,
        ListProjects,
        ExportDatabase,
        Refused ///< `error` says why
    };
    enum class Format { AsOptionsSay, Html, Word, Pdf, All };

    Action action = Action::OpenWindow;
    QString project;
    Format format = Format::AsOptionsSay;
    QString output;  ///< absolute folder of the generated documents; empty: the project's
    QString file;    ///< absolute path of the exported database
    QString picture; ///< as it was written
    QString error;

    /// Reads the arguments without the program's name. Those of the window system ("-style fusion") are
    /// passed over.
    static CommandLine parse(const QStringList &arguments);

    /// The text of --help.
    static QString help();
};
