#pragma once

#include <QCoreApplication>
#include <QPluginLoader>
#include <QString>

class ModuleInterface;

/// Loads one module plug-in from disk and gives it back in the end.
class PluginLoader
{
    Q_DECLARE_TR_FUNCTIONS(PluginLoader)

public:
    enum class Result {
        Loaded,
        NotFound,     ///< there is no such file
        NotAPlugin,   ///< the file is no Qt plug-in
        OtherPlugin,  ///< a Qt plug-in, but not the configurations module
        NotLoadable,  ///< the system cannot load it: missing symbols, another Qt, another build
        OtherContract ///< loaded, but its object does not speak this host's module interface
    };

    explicit PluginLoader(QString path);
    /// Destroys the module.
    ~PluginLoader();
    Q_DISABLE_COPY_MOVE(PluginLoader)

    Result load();
    /// Asks the module, if there is one, to give up everything that it has made visible.
    void release();

    /// Why load() failed, as one sentence; empty after a success.
    QString errorText() const { return m_errorText; }

    /// The module, null unless load() succeeded.
    ModuleInterface *module() const { return m_module; }

private:
    Result fail(Result result, const QString &text);

    QString m_path;
    QPluginLoader m_loader;
    ModuleInterface *m_module = nullptr;
    QString m_errorText;
};
