#include "app/Appearance.h"

#include <QApplication>
#include <QIcon>
#include <QStyleFactory>

using namespace Qt::Literals::StringLiterals;

namespace
{
// Colours that carry a meaning here; everything else comes from the desktop's palette.
const QString sheet = u"#cmbProj, #cmbProj QLineEdit { background: #ffd6e7; color: #3b0a20;"
                      " selection-background-color: #be185d; selection-color: white; }"
                      "#cmbProj QAbstractItemView { background: #fff0f6; color: #3b0a20; }"
                      "#instructionsCard { background: palette(base); border: 1px solid palette(mid);"
                      " border-radius: 10px; }"
                      "#instructionsHeadline { font-size: 15pt; font-weight: 600; }"
                      "#stepNumber { background: #2563eb; color: white; border-radius: 17px;"
                      " font-size: 13pt; font-weight: bold; }"
                      "#toolBarLabel { padding: 0 8px; font-weight: 600; }"
                      "QToolBar { spacing: 2px; padding: 2px 4px; }"
                      "#frmToolBar { background: palette(window); border: 2px solid #2563eb; }"_s;
} // namespace

void Appearance::apply(QApplication &application)
{
    if (QStyle *fusion = QStyleFactory::create(u"Fusion"_s))
        QApplication::setStyle(fusion);
    QApplication::setWindowIcon(QIcon(u":/icons/app.svg"_s));
    application.setStyleSheet(sheet);
}
