#include "platform/qt/WidgetSpelling.h"

#include "platform/qt/SpellingDialog.h"

#include <QApplication>

#include <utility>

WidgetSpelling::WidgetSpelling(FailureBox &failures, HunspellDictionary::Places places)
    : m_failures(failures), m_dictionary(std::move(places))
{
}

QString WidgetSpelling::correct(const QString &text)
{
    m_cancelled = false;
    SpellingSession session(text, m_dictionary, m_answers);
    if (!session.finished()) {
        SpellingDialog dialog(session, m_failures, QApplication::activeWindow());
        m_cancelled = dialog.exec() != QDialog::Accepted;
    }
    return m_cancelled ? text : session.text();
}
