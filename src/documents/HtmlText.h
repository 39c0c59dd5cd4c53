#pragma once

#include <QByteArray>
#include <QString>

/// Text of generated HTML.
namespace HtmlText
{
/// "<" becomes "&lt;", ">" becomes "&gt;", a carriage return "<br>"; nothing else changes.
QString EscapeHtmlText(const QString &text);

/// Windows-1252 bytes (Microsoft code page 1252); a character that it lacks becomes a decimal character
/// reference ("&#1071;").
QByteArray encode(const QString &text);
} // namespace HtmlText
