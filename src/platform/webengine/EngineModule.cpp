#include "platform/webengine/EngineView.h"

#include <QLoggingCategory>
#include <QQuickWindow>

#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
void prepareOnce()
{
    static bool done = false;
    if (std::exchange(done, true))
        return;
    // Without a graphics context of the program's own, see WidgetBrowsers::prepare().
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend(u"software"_s);
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // the engine refuses to run as root with it
    QLoggingCategory::setFilterRules(u"qt.webenginecontext=false"_s); // tells its settings on the terminal
}
} // namespace

/// See BrowserModule.h.
extern "C" Q_DECL_EXPORT BrowserView *shotlyMakeBrowserView1()
{
    prepareOnce();
    return new EngineView;
}
