#include "documents/HtmlPageWriter.h"

#include "documents/HtmlText.h"
#include "platform/AtomicFile.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Tags {
    QString opening;
    QString closing;
};

Tags tagsOf(const QString &fontStyle)
{
    if (fontStyle == u"Bold"_s)
        return {u"<strong>"_s, u"</strong>"_s};
    if (fontStyle == u"Italic"_s)
        return {u"<em>"_s, u"</em>"_s};
    if (fontStyle == u"Bold Italic"_s)
        return {u"<strong><em>"_s, u"</em></strong>"_s};
    return {};
}

QString headOf(const QString &title)
{
    return u"<html>\r\n<head>\r\n<title>"_s + title +
           u"</title>\r\n"
           "<meta http-equiv='Content-Type' content='text/html; charset=iso-8859-1'>\r\n"
           "</head>\r\n<body>\r\n<table width='100%' border='0'>\r\n"_s;
}

QString textBlock(const QString &comment, const QString &text, const HtmlTextStyle &style)
{
    const Tags tags = tagsOf(style.FontStyle);
    return u"<!---------------------- "_s + comment +
           u" line ------------------------------->\r\n"
           "  <tr>\r\n    <td width='2%'>&nbsp;</td>\r\n    <td width='96%'>\r\n"
           "     <div align=\""_s +
           style.Align + u"\">\r\n     <font color=\""_s + style.Color + u"\" size=\""_s +
           QString::number(style.FontSize) + u"\"      face=\""_s + style.Font + u"\">\r\n"_s + tags.opening +
           u"\r\n"_s + text + u"\r\n"_s + tags.closing +
           u"\r\n     </font>\r\n     </div>\r\n    </td>\r\n    <td width='2%'>&nbsp;</td>\r\n  </tr>\r\n"_s;
}

QString pictureBlock(const QString &fileName)
{
    if (fileName.trimmed().isEmpty())
        return {};
    return u"<!------------------- sPicture  ----------------------------->\r\n"
           "<tr><td>&nbsp;</td><td><img src=\r\n\""_s +
           HtmlText::fileReference(fileName) + u"\"\r\n></td><td>&nbsp;</td></tr>\r\n"_s;
}

bool hasPageExtension(const QString &path)
{
    return path.endsWith(u".html"_s, Qt::CaseInsensitive) || path.endsWith(u".htm"_s, Qt::CaseInsensitive);
}
} // namespace

HtmlPageWriter::HtmlPageWriter(Module1 &state, Prompter &prompter) : m_state(state), m_prompter(prompter) {}

QByteArray HtmlPageWriter::pageBytes(const HtmlPage &page) const
{
    const auto block = [this](const QString &comment, const QString &text, TextRole role) {
        return textBlock(comment, text, m_state.AppOptions.HtmlStyles[static_cast<std::size_t>(role)]);
    };
    const QString subTitle = block(u"sub title"_s, page.SubTitle, TextRole::SubTitle);
    const QString picture = pictureBlock(FileSystem::bareName(page.ScreenShotFilePath));
    const std::int16_t layout =
        page.Layout == 0 ? m_state.AppOptions.OptionFlags[OptionFlag::PageLayout] : page.Layout;
    return HtmlText::encode(headOf(page.PageTitle) + block(u"title"_s, page.PageTitle, TextRole::Title) +
                            (layout == 1 ? picture + subTitle : subTitle + picture) +
                            block(u"summary"_s, page.PageSummary, TextRole::Other) +
                            block(u"note1"_s, page.Note1, TextRole::Note1) +
                            block(u"note2"_s, page.Note2, TextRole::Note2) +
                            u"<!---------------------- end of the table ------------------------------->\r\n"
                            "</table></body></html>"_s);
}

void HtmlPageWriter::WritePageHtml(const HtmlPage &page, const QString &path) const
{
    AtomicFile::write(path, pageBytes(page));
}

QString HtmlPageWriter::ChoosePageHtmlPath(const HtmlPage &page, int pageOrdinal)
{
    if (!page.ScreenShotFilePath.trimmed().isEmpty())
        return page.ScreenShotFilePath.chopped(3) + u"htm"_s;
    QString path =
        page.HTMLFilePath.trimmed().isEmpty() ? unusedName(pageOrdinal) : besideContents(page.HTMLFilePath);
    while (m_state.FileSystem.fileExists(path) && !mayOverwrite(path))
        path = askForName();
    return path;
}

/// A name of this pass that no file has, from the user where counting does not find one.
QString HtmlPageWriter::unusedName(int pageOrdinal)
{
    constexpr int attempts = 1000;
    const QString prefix = m_state.AppOptions.FileNamePrefix;
    QString path = besideContents(prefix + QString::number(pageOrdinal) + u"A.htm"_s);
    for (int count = 0; count < attempts && m_state.FileSystem.fileExists(path); ++count)
        path = path.chopped(4) + QString::number(count) + u".htm"_s;
    return m_state.FileSystem.fileExists(path) ? askForName() : path;
}

bool HtmlPageWriter::mayOverwrite(const QString &path)
{
    return m_prompter.ask(Question::OverwriteHtmlFile, Buttons::YesNo,
                          {u"File "_s + path + u" already exists, overwrite it?."_s, u"Overwrite?"_s,
                           Icon::Question}) == Answer::Yes;
}

QString HtmlPageWriter::askForName()
{
    QString name;
    while (name.trimmed().isEmpty())
        name =
            m_prompter
                .input(Question::NewHtmlFileName,
                       {u"Please enter a unique file name for the new html file:"_s, u"New HTML File Name"_s},
                       QString())
                .value_or(QString());
    return besideContents(hasPageExtension(name) ? name : name + u".htm"_s);
}

/// A name without a folder would lie wherever the program was started, where no link of the contents page
/// finds it.
QString HtmlPageWriter::besideContents(const QString &path) const
{
    return path.startsWith(u'/') ? path : FileSystem::join(m_state.ProjectDirectory, path);
}
