#include "platform/RunTimeError.h"
#include "platform/sqlite/StatementTranslator.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Row {
    const char *name;
    QString statement;
    QString expected;
};

const Row translated[] = {
    {"nothing to do", u"delete from PageData where 1 = 1 "_s, u"delete from PageData where 1 = 1 "_s},
    {"text", u"x=\"Demo\" and y =\"\""_s, u"x='Demo' and y =''"_s},
    {"quotes inside text", u"\"a\"\"b'c\""_s, u"'a\"b''c'"_s},
    {"text of quotes only", u"\"\"\"\""_s, u"'\"'"_s},
    {"dialect signs inside text", u"\"[x] #01/02/2026# (select top 5 order by\""_s,
     u"'[x] #01/02/2026# (select top 5 order by'"_s},
    {"single quoted text stays", u"'a''b\"c'"_s, u"'a''b\"c'"_s},
    {"lines inside text", u"\"one\r\ntwo\""_s, u"'one\r\ntwo'"_s},
    {"character 0 inside text", u"x=\""_s + QChar(0) + u"b\""_s, u"x=(''||char(0)||'b')"_s},
    {"short date", u"(#03/21/2026#,1)"_s, u"('2026-03-21',1)"_s},
    {"date with dashes, one digit", u"#3-1-2026#"_s, u"'2026-03-01'"_s},
    {"names", u"[ID], [Date],[a\"b]"_s, u"\"ID\", \"Date\",\"a\"\"b\""_s},
    {"top", u"select top 1 A from T where B=\"x\""_s, u"select A from T where B='x' order by ID limit 1"_s},
    {"top with an order", u" Select  TOP 25 A from T Order\r\nBy A desc"_s,
     u"select A from T Order\r\nBy A desc limit 25"_s},
    {"an order further in is none", u"select top 2 A from (select A from T order by A)"_s,
     u"select A from (select A from T order by A) order by ID limit 2"_s},
    {"an order in text is none", u"select top 1 A from T where B=\"order by\""_s,
     u"select A from T where B='order by' order by ID limit 1"_s},
    {"a column called top", u"select top from T"_s, u"select top from T"_s},
};

TEST(StatementTranslator, changesTheDialectAndNothingElse)
{
    for (const Row &row : translated)
        EXPECT_EQ(StatementTranslator::translate(row.statement), row.expected) << row.name;
}

TEST(StatementTranslator, refusesWhatHasNoEndOrNoMeaning)
{
    const QString refused[] = {u"x=\"abc"_s,
                               u"x=\"a\"\""_s,
                               u"x='a"_s,
                               u"[Date"_s,
                               u"#03/21/2026"_s,
                               u"#02/30/2026#"_s,
                               u"#21/03/2026#"_s,
                               u"#2026-03-21#"_s,
                               u"#03/21-2026#"_s,
                               u"#yesterday#"_s,
                               u"##"_s,
                               u"a"_s + QChar(0) + u"b"_s,
                               u"[a"_s + QChar(0) + u"b]"_s};
    for (const QString &statement : refused) {
        try {
            StatementTranslator::translate(statement);
            ADD_FAILURE() << qPrintable(statement);
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), -2147217900) << qPrintable(statement);
        }
    }
}
} // namespace
