#include "pagestore/PageFields.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
using Keys = PageField::Keys;

constexpr int longText = 255;
constexpr int name = 50;
constexpr int mark = 8;

constexpr PageField table[] = {
    {u"PageTitle", u"Page Title:", 1, longText, Keys::Any},
    {u"SubTitle", u"SubTitle:", 1, longText, Keys::Any},
    {u"ScreenShotFilePath", u"Image Path:", 1, longText, Keys::Any},
    {u"PageSummary", u"Body Text:", 1, 0, Keys::Any},
    {u"Note1", u"Note 1:", 1, longText, Keys::Any},
    {u"Note2", u"Note 2:", 1, longText, Keys::Any},
    {u"PageStatus", u"Page Status:", 1, mark, Keys::Any},
    {u"Date", u"Date:", 1, 0, Keys::Date},
    {u"VersionNumber", u"Version Number:", 2, mark, Keys::Any},
    {u"KeyWord", u"Keyword:", 2, name, Keys::Any},
    {u"ProjectName", u"Project Name:", 1, name, Keys::None},
    {u"BookTitle", u"Book Title:", 2, longText, Keys::Any},
    {u"Chapter", u"Chapter:", 2, longText, Keys::Any},
    {u"Section", u"Section:", 2, longText, Keys::Any},
    {u"PageNumber", u"Page Number:", 1, 0, Keys::Digits},
    {u"ID", u"ID:", 1, 0, Keys::None},
    {u"Layout", u"Layout:", 1, 0, Keys::Digits},
    {u"OrderInPage", u"Order in Page:", 1, 0, Keys::Digits},
    {u"HTMLFilePath", u"HTML File Path:", 2, longText, Keys::Any},
    {u"MyOwnNotes", u"My Own Note:", 2, longText, Keys::Any},
    {u"WordFilePath", u"Word File Path:", 2, longText, Keys::Any},
    {u"ProjectDirectory", u"Project Directory:", 1, 0, Keys::None},
};
static_assert(std::size(table) == PageFields::count);

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}
} // namespace

const PageField &PageFields::field(int index)
{
    return table[index];
}

std::span<const PageFields::Index> PageFields::spellChecked(int tab)
{
    static constexpr Index texts[] = {PageTitle, SubTitle, PageSummary, Note1, Note2};
    static constexpr Index references[] = {BookTitle, Chapter, Section, MyOwnNotes};
    return tab == 1 ? std::span<const Index>(texts) : std::span<const Index>(references);
}

bool PageFields::accepts(PageField::Keys keys, QChar character)
{
    if (character < u' ' || character == u'\x7f')
        return true;
    switch (keys) {
    case Keys::Any:
        return true;
    case Keys::Date:
        return isDigit(character) || character == u'/' || character == u':' || character == u';';
    case Keys::Digits:
        return isDigit(character);
    case Keys::None:
        break;
    }
    return false;
}

QString PageFields::normalStatus(const QString &text)
{
    return text.trimmed().compare(u"OK"_s, Qt::CaseInsensitive) == 0 ? u"OK"_s : text;
}

bool PageFields::isLayout(const QString &text)
{
    return text == u"0"_s || text == u"1"_s || text == u"2"_s;
}
