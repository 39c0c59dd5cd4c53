// The hot-key editor of the options dialog.

#include "platform/qt/ThemedIcon.h"
#include "settings/frmOption.h"
#include "settings/OptionsStore.h"

#include <QLabel>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int actionCount = 10;

QString labelOf(int action)
{
    return u"lblHotKey_%1"_s.arg(action);
}
} // namespace

/// The lists show what the action has now.
void frmOption::cmbAction_Click()
{
    const QString present = control(labelOf(control(u"cmbAction"_s).index())).text();
    const bool known = mHotKey::parse(present).has_value();
    const auto choose = [this](const QString &list, const QString &text) {
        OptionControl &one = control(list);
        const QStringList &entries = one.row().entries;
        const auto entry = std::ranges::find_if(
            entries, [&text](const QString &each) { return each.compare(text, Qt::CaseInsensitive) == 0; });
        one.choose(entry == entries.end() ? -1 : static_cast<int>(entry - entries.begin()));
    };
    choose(u"cmbKey1"_s, known ? present.section(u'-', 0, 0) : QString());
    choose(u"cmbHotKey"_s, known ? present.section(u'-', 1) : QString());
}

void frmOption::cmbHotKey_Click()
{
    const OptionControl &modifier = control(u"cmbKey1"_s);
    const OptionControl &key = control(u"cmbHotKey"_s);
    if (modifier.index() < 0 || key.index() < 0)
        return; // half a hot key is none
    control(labelOf(control(u"cmbAction"_s).index())).show(modifier.text() + u'-' + key.text());
    markHotKeys();
}

void frmOption::Command1_Click()
{
    for (int action = 0; action < actionCount; ++action) {
        OptionControl &label = control(labelOf(action));
        label.show(OptionsStore::row(label.row().key).fallback);
    }
    cmbAction_Click();
    markHotKeys();
}

/// Says beside each action why its combination will not work.
void frmOption::markHotKeys()
{
    std::vector<std::optional<mHotKey::Combination>> combinations;
    combinations.reserve(actionCount);
    for (int action = 0; action < actionCount; ++action)
        combinations.push_back(mHotKey::parse(control(labelOf(action)).text()));
    const auto &refused = m_services.hotKeys.refused();
    for (std::size_t i = 0; i < actionCount; ++i) {
        QStringList notes;
        for (std::size_t other = 0; other < actionCount; ++other) {
            if (other != i && combinations[i] && combinations[other] == combinations[i])
                notes += u"same as \"%1\""_s.arg(OptionRows::actionLabel(static_cast<int>(other)));
        }
        if (!combinations[i])
            notes += u"no such hot key"_s;
        else if (std::ranges::find(refused, *combinations[i]) != refused.end())
            notes += u"in use by another program"_s;
        auto *note = findChild<QLabel *>(u"lblHotKeyNote_%1"_s.arg(i));
        note->setText(notes.join(u", "_s));
        note->setStyleSheet(notes.isEmpty()
                                ? QString()
                                : u"color: "_s + faultColour(palette().color(QPalette::Window)).name());
    }
}
