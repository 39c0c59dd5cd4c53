#include "platform/sqlite/StatementTranslator.h"

#include "platform/RunTimeError.h"
#include "platform/sqlite/DatabaseErrors.h"

#include <QDate>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace
{
[[noreturn]] void failSyntax(const QString &what, const QString &where)
{
    throw RunTimeError(DatabaseErrors::syntaxError, u"Syntax error in %1: %2"_s.arg(what, where));
}

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == u'_';
}

class Scanner
{
public:
    explicit Scanner(const QString &statement) : m_statement(statement) {}

    QString translated()
    {
        while (m_next < m_statement.size())
            translateNext();
        return m_result;
    }

    bool ordered() const { return m_ordered; }

private:
    void translateNext()
    {
        const QChar character = m_statement[m_next];
        switch (character.unicode()) {
        case u'"':
        case u'\'':
            writeText(quoted(character));
            return;
        case u'[':
            writeName();
            return;
        case u'#':
            writeDate();
            return;
        case u'\0':
            failForZero();
        default:
            break;
        }
        if (isWordCharacter(character)) {
            writeWord();
            return;
        }
        if (character == u'(')
            ++m_depth;
        if (character == u')')
            --m_depth;
        m_result += character;
        ++m_next;
    }

    /// What stands between two quotes, a doubled one inside undone.
    QString quoted(QChar quote)
    {
        const qsizetype start = m_next;
        QString text;
        for (;;) {
            const qsizetype end = m_statement.indexOf(quote, m_next + 1);
            if (end < 0)
                failSyntax(u"text"_s, m_statement.mid(start));
            text += QStringView(m_statement).sliced(m_next + 1, end - m_next - 1);
            m_next = end + 1;
            if (m_next >= m_statement.size() || m_statement[m_next] != quote)
                return text;
            text += quote;
        }
    }

    /// What stands between the character at the current place and the next `end`.
    QString enclosed(QChar end, const QString &what)
    {
        const qsizetype start = m_next + 1;
        const qsizetype stop = m_statement.indexOf(end, start);
        if (stop < 0)
            failSyntax(what, m_statement.mid(m_next));
        m_next = stop + 1;
        return m_statement.sliced(start, stop - start);
    }

    void writeText(QString text)
    {
        text.replace(u'\'', u"''"_s);
        // SQLite reads a statement up to its first character 0.
        if (text.contains(u'\0'))
            m_result += u"('"_s + text.replace(QChar(u'\0'), u"'||char(0)||'"_s) + u"')"_s;
        else
            m_result += u'\'' + text + u'\'';
    }

    /// It would end the statement there, unnoticed.
    [[noreturn]] static void failForZero() { failSyntax(u"statement"_s, u"character 0"_s); }

    void writeName()
    {
        QString name = enclosed(u']', u"name"_s);
        if (name.contains(u'\0'))
            failForZero();
        m_result += u'"' + name.replace(u'"', u"\"\""_s) + u'"';
    }

    void writeDate()
    {
        static const QRegularExpression form(u"^\\s*(\\d{1,2})([/-])(\\d{1,2})\\2(\\d{4})\\s*$"_s);
        const QString text = enclosed(u'#', u"date"_s);
        const QRegularExpressionMatch match = form.match(text);
        const QDate date(match.captured(4).toInt(), match.captured(1).toInt(), match.captured(3).toInt());
        if (!match.hasMatch() || !date.isValid())
            failSyntax(u"date"_s, u'#' + text + u'#');
        m_result += u'\'' + date.toString(Qt::ISODate) + u'\'';
    }

    void writeWord()
    {
        qsizetype end = m_next;
        while (end < m_statement.size() && isWordCharacter(m_statement[end]))
            ++end;
        const QString word = m_statement.sliced(m_next, end - m_next);
        m_next = end;
        m_result += word;
        if (m_depth == 0 && word.compare(u"by"_s, Qt::CaseInsensitive) == 0 &&
            m_previousWord.compare(u"order"_s, Qt::CaseInsensitive) == 0)
            m_ordered = true;
        m_previousWord = word;
    }

    QString m_statement;
    QString m_result;
    QString m_previousWord;
    qsizetype m_next = 0;
    int m_depth = 0;
    bool m_ordered = false;
};
} // namespace

QString StatementTranslator::translate(const QString &statement)
{
    static const QRegularExpression top(u"^\\s*select\\s+top\\s+(\\d+)\\s"_s,
                                        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = top.match(statement);
    if (!match.hasMatch())
        return Scanner(statement).translated();
    Scanner scanner(u"select "_s + statement.mid(match.capturedEnd()));
    const QString rest = scanner.translated();
    return rest + (scanner.ordered() ? u" limit "_s : u" order by ID limit "_s) + match.captured(1);
}

bool StatementTranslator::isOrdered(const QString &statement)
{
    Scanner scanner(statement);
    scanner.translated();
    return scanner.ordered();
}
