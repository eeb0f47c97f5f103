#include "host/pluginloader.h"

#include "hostapi/moduleinterface.h"

#include <QFileInfo>
#include <QJsonObject>

#include <utility>

namespace {

const char *const moduleIdentifier = "com.zor.Veltra2.ConfigurationsModule";

} // namespace

PluginLoader::PluginLoader(QString path)
    : m_path(std::move(path))
{
}

PluginLoader::~PluginLoader()
{
    m_loader.unload();
}

PluginLoader::Result PluginLoader::load()
{
    const QFileInfo file(m_path);
    if (!file.isFile()) {
        return fail(Result::NotFound, tr("There is no plug-in \"%1\".").arg(m_path));
    }
    // A bare name would make the loader search the library path.
    m_loader.setFileName(file.absoluteFilePath());
    // A symbol that is missing shall be told now, not end the host when it is needed. The code
    // stays in memory after unloading: the style remembers texts and icons of items that it has
    // drawn, whose characters can lie in the library.
    m_loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const QJsonObject metaData = m_loader.metaData();
    if (metaData.isEmpty()) {
        return fail(Result::NotAPlugin, tr(R"("%1" is not a Qt plug-in.)").arg(m_path));
    }
    const QString identifier = metaData.value(QStringLiteral("IID")).toString();
    if (identifier != QLatin1String(moduleIdentifier)) {
        return fail(Result::OtherPlugin,
                    tr(R"("%1" is the plug-in "%2", not "%3".)")
                        .arg(m_path, identifier, QLatin1String(moduleIdentifier)));
    }
    QObject *instance = m_loader.instance();
    if (!instance) {
        return fail(
            Result::NotLoadable,
            tr("\"%1\" cannot be loaded: %2").arg(m_path, m_loader.errorString().simplified()));
    }
    m_module = qobject_cast<ModuleInterface *>(instance);
    if (!m_module) {
        return fail(Result::OtherContract,
                    tr(R"("%1" does not offer the interface "%2".)")
                        .arg(m_path, QLatin1String(ModuleInterface_iid)));
    }
    return Result::Loaded;
}

void PluginLoader::release()
{
    if (m_module) {
        m_module->release();
    }
}

PluginLoader::Result PluginLoader::fail(Result result, const QString &text)
{
    m_errorText = text;
    return result;
}
