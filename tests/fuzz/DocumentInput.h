#pragma once

#include "fuzz/Fuzz.h"
#include "platform/office/DocumentContent.h"

#include <QGuiApplication>

/// A document of an input: its title, then paragraphs, the first bytes of which say how they look.
inline DocumentContent documentOf(const std::uint8_t *data, std::size_t size, qsizetype mostParagraphs)
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *names[] = {name, nullptr};
    static const QGuiApplication *const application =
        (qputenv("QT_QPA_PLATFORM", "offscreen"), new QGuiApplication(count, names));
    Q_UNUSED(application)

    DocumentContent content;
    QList<QByteArray> parts = Fuzz::bytesOf(data, size).split('\xff');
    content.title = Fuzz::text(parts.takeFirst());
    for (const QByteArray &part : parts.first(std::min(parts.size(), mostParagraphs))) {
        const auto byte = [&part](int index) { return index < part.size() ? part[index] : 0; };
        DocumentParagraph paragraph;
        ParagraphLook &look = paragraph.look;
        look.fontSize = byte(0);
        look.colorIndex = byte(1) % 20;
        look.bold = byte(2) & 1;
        look.italic = byte(2) & 2;
        look.underline = byte(2) & 4;
        look.alignment = byte(2) / 8 % 4;
        look.outlineLevel = byte(3) % 12;
        paragraph.pageBreakBefore = byte(3) < 0;
        if (byte(2) < 0)
            look.fontName = Fuzz::text(part.mid(4, 8));
        // As OfficeDocument takes texts apart.
        paragraph.text = Fuzz::text(part.mid(4)).replace(u'\r', u' ').replace(u'\n', u' ');
        content.paragraphs.push_back(paragraph);
    }
    return content;
}
