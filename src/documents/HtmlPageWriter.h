#pragma once

#include "platform/Prompter.h"
#include "state/Module1.h"

#include <QString>

/// One page of a project as the document queries give it, Null columns empty. Texts are escaped; the two file
/// paths are not, so that they still lead to their files: they are escaped where they are written.
struct HtmlPage {
    QString PageTitle;
    QString SubTitle;
    QString ScreenShotFilePath;
    QString PageSummary;
    QString Note1;
    QString Note2;
    std::int16_t Layout = 0;
    QString PageNumber;
    qint64 ID = 0;
    QString HTMLFilePath;
};

/// Writes one HTML file per page: a fixed table with five text blocks and the page's picture, styled by the
/// HTML style options. Files are Windows-1252 with CR LF line ends, written whole and atomically.
class HtmlPageWriter
{
public:
    HtmlPageWriter(Module1 &state, Prompter &prompter);

    /// The bytes of a page; its picture is named without the folder.
    QByteArray pageBytes(const HtmlPage &page) const;

    /// Writes the page's file, overwriting. Throws RunTimeError naming the file and the reason.
    void WritePageHtml(const HtmlPage &page, const QString &path) const;

    /// Chooses the page's file name; asks where a name without a picture is taken, again and again until it
    /// has one. `pageOrdinal` counts the pages of this pass from 1. A name without a folder is one of the
    /// project directory.
    QString ChoosePageHtmlPath(const HtmlPage &page, int pageOrdinal);

private:
    QString unusedName(int pageOrdinal);
    bool mayOverwrite(const QString &path);
    QString askForName();
    QString besideContents(const QString &path) const;

    Module1 &m_state;
    Prompter &m_prompter;
};
