#pragma once

#include <QByteArray>
#include <QString>

/// Text of generated HTML.
namespace HtmlText
{
/// "<" becomes "&lt;", ">" becomes "&gt;", a carriage return "<br>"; nothing else changes.
QString EscapeHtmlText(const QString &text);

/// A file name as the relative reference of a link or picture: characters that would end the attribute or
/// mean something else in an address are percent-encoded (RFC 3986), all others stand as they are.
QString fileReference(const QString &name);

/// Windows-1252 bytes (Microsoft code page 1252); a character that it lacks becomes a decimal character
/// reference ("&#1071;").
QByteArray encode(const QString &text);
} // namespace HtmlText
