#include "platform/qt/WidgetBrowsers.h"

#include "platform/BrowserModule.h"
#include "platform/qt/BrowserPane.h"
#include "platform/qt/TextBrowserView.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr const char *glIntegration = "QT_XCB_GL_INTEGRATION";
bool integrationIsOurs = false;
QtMessageHandler otherMessages = nullptr;

/// What prepare() asks for is told on the terminal as if it were a fault.
void withoutGlComplaint(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith("QXcbIntegration: Cannot create platform OpenGL"_L1))
        otherMessages(type, context, text);
}

/// Can a process shut itself in, as the engine does with those that read pages? Where it cannot, the engine
/// would end the whole program. Root does without.
bool canShutIn()
{
    if (geteuid() == 0 || qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return true;
    const pid_t child = fork();
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 && unshare(CLONE_NEWPID | CLONE_NEWNET) == 0 ? 0 : 1);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
} // namespace

std::unique_ptr<BrowserView> WidgetBrowsers::make()
{
    std::unique_ptr<BrowserView> engine;
    if (const Maker makeView = maker())
        engine.reset(makeView());
    if (!engine)
        engine = std::make_unique<TextBrowserView>();
    return std::make_unique<BrowserPane>(std::move(engine));
}

WidgetBrowsers::Maker WidgetBrowsers::maker()
{
    if (m_tried)
        return m_maker;
    m_tried = true;
    if (m_module.isEmpty() || !QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts) || !canShutIn())
        return nullptr;
    QLibrary library(m_module);
    library.setLoadHints(QLibrary::PreventUnloadHint);
    m_maker = reinterpret_cast<Maker>(library.resolve(browserModuleEntry));
    return m_maker;
}

void WidgetBrowsers::prepare()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    // Sharing would cost time and memory at the start. Pages are drawn in software.
    if (!qEnvironmentVariableIsSet(glIntegration)) {
        qputenv(glIntegration, "none");
        integrationIsOurs = true;
        otherMessages = qInstallMessageHandler(withoutGlComplaint);
    }
}

void WidgetBrowsers::prepared()
{
    if (!integrationIsOurs)
        return;
    qunsetenv(glIntegration);
    qInstallMessageHandler(otherMessages);
    integrationIsOurs = false;
}

QString WidgetBrowsers::installedModule(const QString &programFolder)
{
    for (const QString &folder : {programFolder, programFolder + u"/../lib/shotly"_s}) {
        const QString path = QDir::cleanPath(folder + u"/" SHOTLY_BROWSER_MODULE ""_s);
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}
