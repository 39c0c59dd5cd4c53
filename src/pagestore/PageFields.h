#pragma once

#include <QChar>
#include <QString>

#include <span>

/// One box of the page editor and the column that it shows.
struct PageField {
    enum class Keys { Any, Date, Digits, None };

    const char16_t *column;
    const char16_t *label;
    int tab;   ///< 1 or 2
    int limit; ///< characters; 0: none
    Keys keys;
};

/// The boxes of the page editor, by their index, and the rules for what is typed into them.
namespace PageFields
{
enum Index : int {
    PageTitle,
    SubTitle,
    ScreenShotFilePath,
    PageSummary,
    Note1,
    Note2,
    PageStatus,
    Date,
    VersionNumber,
    KeyWord,
    ProjectName,
    BookTitle,
    Chapter,
    Section,
    PageNumber,
    ID,
    Layout,
    OrderInPage,
    HTMLFilePath,
    MyOwnNotes,
    WordFilePath,
    ProjectDirectory,
    count
};

const PageField &field(int index);

/// The boxes whose spelling is checked on a tab, in their order.
std::span<const Index> spellChecked(int tab);

/// May this character be typed? Control characters always may.
bool accepts(PageField::Keys keys, QChar character);

/// What is stored for a page status: "OK" for every way of writing it.
QString normalStatus(const QString &text);

/// Is the text a layout: 0, 1 or 2?
bool isLayout(const QString &text);
} // namespace PageFields
