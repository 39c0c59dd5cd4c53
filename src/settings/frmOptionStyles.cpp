// The style rows of the options dialog: what they will look like, and the choice of fonts.

#include "settings/AppOptions.h"
#include "settings/frmOption.h"

#include <QLabel>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Qt::Alignment alignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
constexpr int smallestPoints = 1;
constexpr int largestPoints = 200; // larger ones are off the sheet anyway

/// Pixels of the HTML font sizes 1 to 7, as browsers have them.
int pixelsOfHtmlSize(int size)
{
    static constexpr int pixels[] = {10, 13, 16, 18, 24, 32, 48};
    return pixels[std::clamp(size, 1, 7) - 1];
}

void showSample(QLabel &sample, const QFont &font, const QColor &colour, int alignment)
{
    sample.setFont(font);
    // A palette would not reach it: the sheet of paper has a style sheet.
    sample.setStyleSheet(u"color: %1"_s.arg((colour.isValid() ? colour : QColor(Qt::black)).name()));
    sample.setAlignment(alignments[std::clamp(alignment, 0, 2)] | Qt::AlignVCenter);
}
} // namespace

void frmOption::showPreviews()
{
    for (int role = 0; role < static_cast<int>(textRoleCount); ++role) {
        const auto of = [this, role](const char16_t *name) -> const OptionControl & {
            return control(u"%1_%2"_s.arg(QString::fromUtf16(name)).arg(role));
        };
        QFont html;
        QStringList families = of(u"cmbFont").value().split(u',', Qt::SkipEmptyParts);
        std::ranges::transform(families, families.begin(),
                               [](const QString &name) { return name.trimmed(); });
        html.setFamilies(families);
        html.setPixelSize(pixelsOfHtmlSize(of(u"cmbFontSize").value().toInt()));
        const QString style = of(u"cmbFontStyle").value();
        html.setBold(style.contains("Bold"_L1));
        html.setItalic(style.contains("Italic"_L1));
        showSample(*findChild<QLabel *>(u"lblHtmlPreview_%1"_s.arg(role)), html,
                   QColor(of(u"cmbColor").value()), of(u"cmbAlign").index());

        QFont word(of(u"LwfontName").text());
        word.setPixelSize(std::clamp(of(u"LwfontSize").text().toInt(), smallestPoints, largestPoints) * 96 /
                          72);
        word.setBold(of(u"chkWBold").index() == 1);
        word.setItalic(of(u"chkWitalic").index() == 1);
        word.setUnderline(of(u"chkWuline").index() == 1);
        showSample(*findChild<QLabel *>(u"lblWordPreview_%1"_s.arg(role)), word,
                   OptionRows::wordColour(of(u"cmbwColor").index()), of(u"cmbwAlign").index());
    }
}

void frmOption::cmdWfont_Click(int role)
{
    const auto of = [this, role](const QString &name) -> OptionControl & {
        return control(u"%1_%2"_s.arg(name).arg(role));
    };
    OptionControl &name = of(u"LwfontName"_s);
    OptionControl &size = of(u"LwfontSize"_s);
    OptionControl &bold = of(u"chkWBold"_s);
    OptionControl &italic = of(u"chkWitalic"_s);
    OptionControl &underline = of(u"chkWuline"_s);
    QFont present(name.text(), std::clamp(size.text().toInt(), smallestPoints, largestPoints));
    present.setBold(bold.index() == 1);
    present.setItalic(italic.index() == 1);
    present.setUnderline(underline.index() == 1);
    const std::optional<QFont> chosen = m_services.prompter.chooseFont(Question::WordStyleFont, present);
    if (!chosen)
        return;
    name.show(chosen->family());
    size.show(QString::number(std::max(chosen->pointSize(), smallestPoints)));
    // The chooser loses these by itself where the font that it began with is not installed.
    for (const auto &[box, on] : {std::pair(&bold, chosen->bold()), std::pair(&italic, chosen->italic()),
                                  std::pair(&underline, chosen->underline())}) {
        if (on)
            box->choose(1);
    }
    showPreviews();
}
