#include "host/pluginloader.h"

#include "hostapi/moduleinterface.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QTest>

using Result = PluginLoader::Result;

class TestPluginLoader : public QObject
{
    Q_OBJECT

private:
    static QString beside(const QString &fileName)
    {
        return QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
    }

    // What is said of that file, which has to be refused with that result.
    static QString refusalOf(const QString &path, Result result)
    {
        PluginLoader loader(path);
        const bool isRefused = loader.load() == result && !loader.module();
        return isRefused ? loader.errorText() : "another result";
    }

private slots:
    void aModuleIsLoaded()
    {
        PluginLoader loader(beside("probemodule.so"));
        QCOMPARE(loader.load(), Result::Loaded);
        QCOMPARE(loader.errorText(), "");
        QVERIFY(loader.module());
        QCOMPARE(loader.module()->moduleName(), "Probe");
    }

    void aRelativePathBeginsInTheCurrentFolder()
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::copy(beside("probemodule.so"), folder.filePath("elsewhere.so")));
        QVERIFY(QDir::setCurrent(folder.path()));
        QCOMPARE(PluginLoader("elsewhere.so").load(), Result::Loaded);
    }

    void whatIsNoModuleIsRefused()
    {
        for (const QString &path : {beside("nosuch.so"), QDir::tempPath()}) {
            QCOMPARE(refusalOf(path, Result::NotFound), "There is no plug-in \"" + path + "\".");
        }
        for (const QString &path :
             {QString("/etc/passwd"), QCoreApplication::applicationFilePath()}) {
            QCOMPARE(refusalOf(path, Result::NotAPlugin), '"' + path + "\" is not a Qt plug-in.");
        }
        const QString other = beside("othermodule.so");
        QCOMPARE(refusalOf(other, Result::OtherPlugin),
                 '"' + other
                     + "\" is the plug-in \"com.zor.Veltra2.OtherModule\", not "
                       "\"com.zor.Veltra2.ConfigurationsModule\".");
        const QString contractless = beside("contractlessmodule.so");
        QCOMPARE(refusalOf(contractless, Result::OtherContract),
                 '"' + contractless
                     + "\" does not offer the interface \"com.zor.veltra2.gui.Module/0.2.0\".");
        const QString broken = beside("brokenmodule.so");
        QVERIFY(refusalOf(broken, Result::NotLoadable)
                    .startsWith('"' + broken + "\" cannot be loaded: "));
    }
};

VELTRA4_TEST(TestPluginLoader)
#include "tst_pluginloader.moc"
