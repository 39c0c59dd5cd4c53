#pragma once

#include "platform/ExternalPrograms.h"
#include "platform/qt/Guarded.h"

#include <QDialog>

/// Tells which program this is, of which version and build, and the licences of the libraries it uses. Modal.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    /// `programs` and `prompter` must outlive it.
    frmAbout(ExternalPrograms &programs, Prompter &prompter, QWidget *parent);

    /// "Version 0.1.0", the build and what it was made with, in lines.
    static QString versionText();
    /// A line for each library: name, version where the program knows it, licence.
    static QStringList libraries();

private:
    FailureBox m_failures;
};
