#pragma once

#include "platform/office/Qpdf.h"

#include <set>

/// Mends what Qt writes of the characters that the glyphs of an embedded font stand for: it calls the space a
/// tabulator and tells Arabic letters and ligatures by their shapes. With it, searching and copying find the
/// text as it was written.
class PdfFonts
{
public:
    /// The fonts of one page; each is mended once. Throws what libqpdf throws.
    void mend(QPDFObjectHandle resources);

private:
    std::set<QPDFObjGen> m_mended;
};
