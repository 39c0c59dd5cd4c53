#pragma once

#include "platform/office/LittleEndianBytes.h"

/// Properties of characters, paragraphs and sections one after the other: each is a number (Sprm,
/// [MS-DOC] 2.6) that also tells how long its value is, and that value.
class WordProperties
{
public:
    enum Byte : quint16 {
        Bold = 0x0835,
        Italic = 0x0836,
        Special = 0x0855, ///< the character is a mark
        BoldComplex = 0x085c,
        ItalicComplex = 0x085d,
        PhysicalAlignment = 0x2403,
        PageBreakBefore = 0x2407,
        Alignment = 0x2461,
        OutlineLevel = 0x2640, ///< from 0
        Underline = 0x2a3e,
        Color = 0x2a42,
    };
    enum Word : quint16 {
        FontSize = 0x4a43, ///< half points
        Font = 0x4a4f,
        EastAsianFont = 0x4a50,
        OtherFont = 0x4a51,
        ComplexFont = 0x4a5e,
        ComplexFontSize = 0x4a61,
        TopMargin = 0x9023,
        BottomMargin = 0x9024,
        HeaderDistance = 0xb017,
        FooterDistance = 0xb018,
        PageWidth = 0xb01f,
        PageHeight = 0xb020,
        LeftMargin = 0xb021,
        RightMargin = 0xb022,
    };
    enum DoubleWord : quint16 {
        PictureLocation = 0x6a03, ///< in the Data stream
    };

    void put8(Byte property, int value)
    {
        m_bytes.put16(property);
        m_bytes.put8(value);
    }
    void put16(Word property, int value) { m_bytes.put16({property, value}); }
    void put32(DoubleWord property, qint64 value)
    {
        m_bytes.put16(property);
        m_bytes.put32(value);
    }
    /// The font for all scripts.
    void putFont(int number, int points)
    {
        for (const Word property : {FontSize, ComplexFontSize})
            put16(property, 2 * points);
        for (const Word property : {Font, EastAsianFont, OtherFont, ComplexFont})
            put16(property, number);
    }

    const QByteArray &bytes() const { return m_bytes.bytes(); }

private:
    LittleEndianBytes m_bytes;
};
