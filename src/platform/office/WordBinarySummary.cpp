#include "platform/office/WordBinarySummary.h"

#include "platform/office/LittleEndianBytes.h"
#include "platform/office/WordBinaryText.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qint64 utf8 = 65001;

enum Property { CodePage = 1, Title = 2, CreationTime = 12, SavingTime = 13, Application = 18 };

struct Value {
    Property property;
    QByteArray bytes; ///< with its type
};

Value number(Property property, qint64 value)
{
    constexpr qint64 shortInteger = 2;
    LittleEndianBytes out;
    out.put32({shortInteger, value & 0xffff});
    return {property, out.bytes()};
}

Value string(Property property, const QString &text)
{
    constexpr qint64 codePageString = 0x1e;
    LittleEndianBytes out;
    const QByteArray encoded = text.toUtf8() + '\0';
    out.put32({codePageString, encoded.size()});
    out.putBytes(encoded);
    out.padTo(4);
    return {property, out.bytes()};
}

Value time(Property property, const QDateTime &moment)
{
    constexpr qint64 fileTime = 0x40;
    constexpr qint64 secondsFrom1601 = 11644473600;
    LittleEndianBytes out;
    out.put32(fileTime);
    out.put64(static_cast<quint64>(moment.toMSecsSinceEpoch() + secondsFrom1601 * 1000) * 10000);
    return {property, out.bytes()};
}

void putAnsi(LittleEndianBytes &out, const QByteArray &text)
{
    out.put32(text.size() + 1);
    out.putBytes(text);
    out.put8(0);
}
} // namespace

QByteArray wordSummary(const QString &title, const QDateTime &created)
{
    const std::vector<Value> values = {
        number(CodePage, utf8),    string(Title, wordCharacters(title)), time(CreationTime, created),
        time(SavingTime, created), string(Application, u"Shotly"_s),
    };
    LittleEndianBytes places;
    LittleEndianBytes data;
    const qint64 dataBegin = 2 * 4 + static_cast<qint64>(values.size()) * 2 * 4;
    for (const Value &value : values) {
        places.put32({value.property, dataBegin + data.size()});
        data.putBytes(value.bytes);
    }

    constexpr qint64 littleEndian = 0xfffe;
    constexpr qint64 windows = 0x00020006;
    constexpr qint64 sets = 1;
    constexpr qint64 setBegin = 48;
    LittleEndianBytes out;
    out.put16({littleEndian, 0});
    out.put32(windows);
    out.putZeros(16);
    out.put32(sets);
    out.putBytes(QByteArray::fromHex("e0859ff2f94f6810ab9108002b27b3d9"));
    out.put32({setBegin, dataBegin + data.size(), static_cast<qint64>(values.size())});
    out.putBytes(places.bytes());
    out.putBytes(data.bytes());
    return out.bytes();
}

QByteArray wordObjectDescription()
{
    constexpr qint64 unicodeFollows = 0x71b239f4;
    LittleEndianBytes out;
    out.put32({0xfffe0001, 0x0a03, 0xffffffff});
    out.putBytes(wordClassId());
    putAnsi(out, "Microsoft Word 97-2003 Document");
    putAnsi(out, "MSWordDoc");
    putAnsi(out, "Word.Document.8");
    out.put32({unicodeFollows, 0, 0, 0});
    return out.bytes();
}

QByteArray wordClassId()
{
    return QByteArray::fromHex("0609020000000000c000000000000046");
}
