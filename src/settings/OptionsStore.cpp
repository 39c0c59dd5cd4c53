#include "settings/OptionsStore.h"

#include "platform/ApplicationFolder.h"
#include "platform/ProfileFile.h"
#include "platform/Rounding.h"
#include "platform/RunTimeError.h"

#include <algorithm>
#include <vector>

namespace OptionsStore
{
namespace
{
using namespace Qt::Literals::StringLiterals;

constexpr int longestValue = 255;

const QString optionsSection = u"Options"_s;
const QString hotKeysSection = u"HotKeys"_s;
const QString projectNameKey = u"ProjectName"_s;

constexpr const char16_t *hotKeyNames[] = {
    u"SingleRegionCapture",   u"SingleActiveWindowCapture",
    u"SingleDesktopCapture",  u"BeginMultiScreenCapture",
    u"EndMultiScreenCapture", u"ShowPageList",
    u"GenerateHTMLDocuments", u"ViewIndexPage",
    u"ViewWordOrPDF",         u"UsePainterTool",
};
constexpr const char16_t *hotKeyDefaults[] = {u"Ctrl-F1", u"Ctrl-F2", u"Ctrl-F3", u"Ctrl-F5",  u"Ctrl-F6",
                                              u"Ctrl-F7", u"Ctrl-F8", u"Ctrl-F9", u"Ctrl-F10", u"Ctrl-F11"};

constexpr const char16_t *roleNames[textRoleCount] = {u"Title", u"SubTitle", u"Other", u"Note1", u"Note2"};

/// Default and reset value of one role's style, in the order of the keys.
struct HtmlDefaults {
    const char16_t *fallback[5];
    const char16_t *reset[5];
};
constexpr const char16_t *htmlFields[] = {u"Font", u"FontSize", u"FontStyle", u"Color", u"Align"};
constexpr HtmlDefaults htmlDefaults[textRoleCount] = {
    {{u"Times New Roman, Times, serif", u"4", u"Bold", u"Blue", u"Left"},
     {u"Georgia, Times New Roman, Times, serif", u"5", u"Bold", u"Gold", u"Center"}},
    {{u"Times New Roman, Times, serif", u"2", u"Regular", u"Blue", u"Left"},
     {u"Times New Roman, Times, serif", u"3", u"Italic", u"Blue", u"Center"}},
    {{u"Times New Roman, Times, serif", u"2", u"Regular", u"Black", u"Left"},
     {u"Courier New, Courier, mono", u"2", u"Regular", u"Black", u"Left"}},
    {{u"Times New Roman, Times, serif", u"2", u"Regular", u"Black", u"Left"},
     {u"Courier New, Courier, mono", u"2", u"Regular", u"Green", u"Left"}},
    {{u"Times New Roman, Times, serif", u"2", u"Regular", u"Black", u"Left"},
     {u"Courier New, Courier, mono", u"1", u"Italic", u"Red", u"Center"}},
};

struct WordDefaults {
    const char16_t *fallback[7];
    const char16_t *reset[7];
};
constexpr const char16_t *wordFields[] = {u"Font",      u"FontSize", u"FontBold", u"FontItalic",
                                          u"Underline", u"Align",    u"Color"};
constexpr std::size_t wordFieldsReadFirst = 5; // the align keys and the colour keys follow role by role
constexpr WordDefaults wordDefaults[textRoleCount] = {
    {{u"Times New Roman", u"18", u"1", u"0", u"0", u"1", u"1"},
     {u"BauerBodni BT", u"18", u"1", u"0", u"0", u"1", u"10"}},
    {{u"Arial", u"12", u"0", u"0", u"0", u"1", u"1"},
     {u"AmeriGarmnd BT", u"11", u"0", u"0", u"0", u"1", u"10"}},
    {{u"Arial", u"10", u"0", u"0", u"0", u"0", u"1"}, {u"Courier New", u"8", u"0", u"0", u"0", u"0", u"1"}},
    {{u"Arial", u"10", u"0", u"0", u"0", u"0", u"1"},
     {u"BankGothic Md BT", u"8", u"0", u"0", u"0", u"0", u"11"}},
    {{u"Arial", u"10", u"0", u"0", u"0", u"0", u"1"}, {u"Arial", u"8", u"0", u"1", u"0", u"1", u"6"}},
};

template <typename T>
std::function<Field(AppOptions &)> member(T AppOptions::*pointer)
{
    return [pointer](AppOptions &options) -> Field { return &(options.*pointer); };
}

std::function<Field(AppOptions &)> flag(OptionFlag which)
{
    return [which](AppOptions &options) -> Field { return &options.OptionFlags[which]; };
}

Field htmlField(AppOptions &options, std::size_t role, std::size_t field)
{
    HtmlTextStyle &style = options.HtmlStyles[role];
    const Field fields[] = {&style.Font, &style.FontSize, &style.FontStyle, &style.Color, &style.Align};
    return fields[field];
}

Field wordField(AppOptions &options, std::size_t role, std::size_t field)
{
    WordTextStyle &style = options.WordStyles[role];
    const Field fields[] = {&style.Font,      &style.FontSize, &style.Bold, &style.Italic,
                            &style.Underline, &style.Align,    &style.Color};
    return fields[field];
}

QString text(const char16_t *characters)
{
    return QString::fromUtf16(characters);
}

void addPlainRows(std::vector<Row> &table)
{
    const auto add = [&table](const char16_t *key, std::function<Field(AppOptions &)> field,
                              const QString &fallback, std::optional<QString> reset) {
        table.push_back({optionsSection, text(key), std::move(field), fallback, std::move(reset)});
    };
    add(u"ProjectName", member(&AppOptions::ProjectName), {}, std::nullopt);
    const QString base = ApplicationFolder::defaultBaseDirectory();
    add(u"BaseDirectory", member(&AppOptions::BaseDirectory), base, base);
    add(u"FileNamePrefix", member(&AppOptions::FileNamePrefix), u"sh"_s, u"sh"_s);
    add(u"BigPicSize", member(&AppOptions::BigPicSize), u"90"_s, u"100"_s);
    add(u"UseSystemMouseShape", member(&AppOptions::UseSystemMouseShape), u"false"_s, u"False"_s);
    add(u"SingleScreenShotFileLocation", member(&AppOptions::SingleScreenShotFileLocation), u"Desktop"_s,
        u"Desktop"_s);
    add(u"FinalDocumentFormat", member(&AppOptions::FinalDocumentFormat), u"0"_s, u"0"_s);
    add(u"ShowLessMessage", member(&AppOptions::ShowLessMessage), u"0"_s, u"0"_s);
    add(u"OneWordDocumentIncludeAllPages", member(&AppOptions::OneWordDocumentIncludeAllPages), u"True"_s,
        u"True"_s);
    add(u"AutoConvertWord2PDF", member(&AppOptions::AutoConvertWord2PDF), u"0"_s, u"0"_s);
    add(u"SnapShotByPressTab", member(&AppOptions::SnapShotByPressTab), u"0"_s, std::nullopt);
    add(u"SnapShotByPressReturn", member(&AppOptions::SnapShotByPressReturn), u"0"_s, std::nullopt);
    add(u"PaintProgram", member(&AppOptions::PaintProgram), {}, QString());
    add(u"HomePage", member(&AppOptions::HomePage), {}, QString());
    add(u"SearchPage", member(&AppOptions::SearchPage), u"https://duckduckgo.com/"_s,
        u"https://duckduckgo.com/"_s);
    add(u"WordProcessor", member(&AppOptions::WordProcessor), u"auto"_s, u"auto"_s);
}

void addFlagRows(std::vector<Row> &table)
{
    const auto add = [&table](const char16_t *key, OptionFlag which, const QString &fallback,
                              const QString &reset) {
        table.push_back({optionsSection, text(key), flag(which), fallback, reset});
    };
    add(u"LoadLastWorkingSpace", LoadLastWorkingSpace, u"0"_s, u"0"_s);
    add(u"MouseBorderColor", MouseBorderColor, u"0"_s, u"0"_s);
    add(u"MouseInsideColor", MouseInsideColor, u"0"_s, u"1"_s);
    add(u"PageLayout", PageLayout, u"0"_s, u"1"_s);
    add(u"PaintTool", PaintTool, u"0"_s, u"0"_s);
    add(u"Browser", BrowserChoice, u"1"_s, u"1"_s);
    add(u"ChangeResolution", ChangeResolution, u"0"_s, u"1"_s);
    add(u"HideStopButtonDuringCapture", HideStopButtonDuringCapture, u"0"_s, u"0"_s);
}

void addStyleRows(std::vector<Row> &table)
{
    for (std::size_t role = 0; role < textRoleCount; ++role) {
        for (std::size_t field = 0; field < std::size(htmlFields); ++field)
            table.push_back({optionsSection, u"HTML"_s + text(roleNames[role]) + text(htmlFields[field]),
                             [role, field](AppOptions &options) { return htmlField(options, role, field); },
                             text(htmlDefaults[role].fallback[field]),
                             text(htmlDefaults[role].reset[field])});
    }
    const auto addWord = [&table](std::size_t role, std::size_t field) {
        table.push_back({optionsSection, u"Word"_s + text(roleNames[role]) + text(wordFields[field]),
                         [role, field](AppOptions &options) { return wordField(options, role, field); },
                         text(wordDefaults[role].fallback[field]), text(wordDefaults[role].reset[field])});
    };
    for (std::size_t role = 0; role < textRoleCount; ++role)
        for (std::size_t field = 0; field < wordFieldsReadFirst; ++field)
            addWord(role, field);
    for (std::size_t field = wordFieldsReadFirst; field < std::size(wordFields); ++field)
        for (std::size_t role = 0; role < textRoleCount; ++role)
            addWord(role, field);
}

std::vector<Row> makeTable()
{
    std::vector<Row> table;
    addFlagRows(table);
    for (std::size_t i = 0; i < std::size(hotKeyNames); ++i)
        table.push_back({hotKeysSection, text(hotKeyNames[i]),
                         [i](AppOptions &options) -> Field { return &options.HotKeyNames[i]; },
                         text(hotKeyDefaults[i]), text(hotKeyDefaults[i])});
    addPlainRows(table);
    addStyleRows(table);
    return table;
}

std::optional<std::int16_t> toShort(const QString &number)
{
    bool isNumber = false;
    const double value = number.trimmed().toDouble(&isNumber);
    const std::int32_t rounded = Rounding::toInt(value);
    if (!isNumber || std::isnan(value) || rounded < INT16_MIN || rounded > INT16_MAX)
        return std::nullopt;
    return static_cast<std::int16_t>(rounded);
}

std::optional<bool> toBool(const QString &word)
{
    const QString trimmed = word.trimmed();
    if (trimmed.compare("True"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare("False"_L1, Qt::CaseInsensitive) == 0)
        return false;
    bool isNumber = false;
    const double value = trimmed.toDouble(&isNumber);
    return isNumber ? std::optional(value != 0) : std::nullopt;
}

/// False when the text does not fit the field; the field keeps its value then.
bool assignText(const Field &field, const QString &value)
{
    if (QString *const *string = std::get_if<QString *>(&field)) {
        **string = value;
        return true;
    }
    if (bool *const *boolean = std::get_if<bool *>(&field)) {
        const std::optional<bool> parsed = toBool(value);
        **boolean = parsed.value_or(**boolean);
        return parsed.has_value();
    }
    std::int16_t *number = std::get<std::int16_t *>(field);
    const std::optional<std::int16_t> parsed = toShort(value);
    *number = parsed.value_or(*number);
    return parsed.has_value();
}

/// The rows that are `wanted`, with their values.
template <typename Wanted>
void writeRows(const QString &file, const AppOptions &options, Wanted wanted)
{
    std::vector<ProfileFile::Entry> entries;
    entries.reserve(rows().size());
    for (const Row &row : rows()) {
        if (wanted(row))
            entries.push_back({row.section, row.key, textOf(options, row)});
    }
    ProfileFile::write(file, entries);
}
} // namespace

std::span<const Row> rows()
{
    static const std::vector<Row> table = makeTable();
    return table;
}

const Row &row(const QString &key)
{
    return *std::ranges::find(rows(), key, &Row::key);
}

void assign(AppOptions &options, const Row &row, const QString &value)
{
    const Field field = row.field(options);
    if (!assignText(field, value))
        assignText(field, row.fallback);
}

QString textOf(const AppOptions &options, const Row &row)
{
    AppOptions copy = options;
    const Field field = row.field(copy);
    if (QString *const *string = std::get_if<QString *>(&field))
        return **string;
    if (bool *const *boolean = std::get_if<bool *>(&field))
        return **boolean ? u"True"_s : u"False"_s;
    return QString::number(*std::get<std::int16_t *>(field));
}

QString ReadIniValue(const QString &file, const QString &section, const QString &key, const QString &fallback)
{
    return ProfileFile::read(file, section, key, fallback).left(longestValue);
}

void WriteIniValue(const QString &file, const QString &section, const QString &key, const QString &value)
{
    QString line = value;
    line.replace(u'\r', u' ').replace(u'\n', u' ');
    try {
        ProfileFile::write(file, section, key, line);
    } catch (const RunTimeError &) {
        // The value still holds in memory; a file that cannot be written must not stop a recording.
    }
}

AppOptions LoadOptions(const QString &file)
{
    AppOptions options;
    for (const Row &row : rows())
        assign(options, row, ReadIniValue(file, row.section, row.key, row.fallback));
    return options;
}

void SaveOptions(const QString &file, const AppOptions &options)
{
    writeRows(file, options, [](const Row &row) { return row.key != projectNameKey; });
}

void ResetOptions(const QString &file, AppOptions &options)
{
    for (const Row &row : rows()) {
        if (row.reset)
            assign(options, row, *row.reset);
    }
    writeRows(file, options, [](const Row &row) { return row.reset.has_value(); });
}

void writeProjectName(const QString &file, const QString &name)
{
    WriteIniValue(file, optionsSection, projectNameKey, name);
}

void writeBaseDirectory(const QString &file, const QString &directory)
{
    WriteIniValue(file, optionsSection, u"BaseDirectory"_s, directory);
}
} // namespace OptionsStore
