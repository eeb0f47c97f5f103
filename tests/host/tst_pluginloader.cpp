#include "host/pluginloader.h"

#include "hostapi/moduleinterface.h"
#include "tests/support/testmain.h"

#include <QtTest>

Q_DECLARE_METATYPE(PluginLoader::Result)

class TestPluginLoader : public QObject
{
    Q_OBJECT

private:
    static QString beside(const QString &fileName)
    {
        return QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
    }

private slots:
    void aModuleIsLoaded()
    {
        PluginLoader loader(beside("probemodule.so"));
        QCOMPARE(loader.load(), PluginLoader::Result::Loaded);
        QCOMPARE(loader.errorText(), QString());
        QVERIFY(loader.module());
        QCOMPARE(loader.module()->moduleName(), QStringLiteral("Probe"));
    }

    void aRelativePathBeginsInTheCurrentFolder()
    {
        QVERIFY(QDir::setCurrent(QCoreApplication::applicationDirPath()));
        PluginLoader loader("probemodule.so");
        QCOMPARE(loader.load(), PluginLoader::Result::Loaded);
    }

    void whatIsNoModuleIsRefused_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<PluginLoader::Result>("result");
        QTest::addColumn<QString>("said");
        QTest::newRow("missing file")
            << beside("nosuch.so") << PluginLoader::Result::NotFound << "There is no plug-in";
        QTest::newRow("folder") << QDir::tempPath() << PluginLoader::Result::NotFound
                                << "There is no plug-in";
        QTest::newRow("text file")
            << "/etc/passwd" << PluginLoader::Result::NotAPlugin << "is not a Qt plug-in";
        QTest::newRow("program") << QCoreApplication::applicationFilePath()
                                 << PluginLoader::Result::NotAPlugin << "is not a Qt plug-in";
        QTest::newRow("plug-in of another kind")
            << beside("othermodule.so") << PluginLoader::Result::OtherPlugin
            << "is the plug-in \"com.zor.Veltra2.OtherModule\"";
        QTest::newRow("unresolved symbol")
            << beside("brokenmodule.so") << PluginLoader::Result::NotLoadable << "cannot be loaded";
        QTest::newRow("other interface")
            << beside("contractlessmodule.so") << PluginLoader::Result::OtherContract
            << "does not offer the interface \"com.zor.veltra2.gui.Module/0.2.0\"";
    }

    void whatIsNoModuleIsRefused()
    {
        QFETCH(const QString, path);
        QFETCH(const PluginLoader::Result, result);
        QFETCH(const QString, said);
        PluginLoader loader(path);
        QCOMPARE(loader.load(), result);
        QVERIFY2(loader.errorText().contains(said), qPrintable(loader.errorText()));
        QVERIFY(loader.errorText().contains(path));
        QVERIFY(!loader.module());
    }
};

VELTRA4_TEST(TestPluginLoader)
#include "tst_pluginloader.moc"
