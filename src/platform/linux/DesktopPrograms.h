#pragma once

#include "platform/ExternalPrograms.h"

/// The programs of this desktop: xdg-open for files and folders; kolourpaint, pinta, gimp, mtpaint or drawing
/// for pictures, in that order. A program to paint with may be given with arguments; the picture's path
/// follows them, if there is one.
///
/// Failures: FileNotFound when there is no such file, CannotCreateObject when the program is not installed or
/// does not start. What a program that has started thinks of the file is not known here.
class DesktopPrograms : public ExternalPrograms
{
public:
    void openWithDesktop(const QString &path) override;
    void paint(const QString &program, const QString &picturePath) override;
    void showSystemInformation() override;
};
