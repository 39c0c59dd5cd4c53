#pragma once

#include <QByteArray>
#include <QString>
#include <QStringConverter>
#include <QtEndian>

#include <initializer_list>

/// Fields one after the other, the lowest byte first. Numbers are cut to the width of their field.
class LittleEndianBytes
{
public:
    const QByteArray &bytes() const { return m_bytes; }
    qsizetype size() const { return m_bytes.size(); }

    void put8(qint64 value) { put(static_cast<quint8>(value)); }
    void put16(qint64 value) { put(static_cast<quint16>(value)); }
    void put32(qint64 value) { put(static_cast<quint32>(value)); }
    void put16(std::initializer_list<qint64> values)
    {
        for (const qint64 value : values)
            put16(value);
    }
    void put32(std::initializer_list<qint64> values)
    {
        for (const qint64 value : values)
            put32(value);
    }
    void put64(quint64 value) { put(value); }
    void putBytes(QByteArrayView bytes) { m_bytes += bytes; }
    void putZeros(qsizetype count) { m_bytes.append(count, '\0'); }
    /// UTF-16 without a terminator.
    void putText(const QString &text) { m_bytes += utf16(text); }
    /// Zeros up to the next multiple.
    void padTo(qsizetype multiple) { putZeros((multiple - size() % multiple) % multiple); }

    static QByteArray utf16(const QString &text) { return QStringEncoder(QStringConverter::Utf16LE)(text); }

private:
    template <typename T>
    void put(T value)
    {
        const T ordered = qToLittleEndian(value);
        m_bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
    }

    QByteArray m_bytes;
};
