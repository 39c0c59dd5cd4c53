#pragma once

class QApplication;

/// The look of the whole program.
namespace Appearance
{
void apply(QApplication &application);
}
