#include "tests/support/testmain.h"

#include <QApplication>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

namespace {

QMap<QString, RegisteredTest::Maker> &registeredTests()
{
    static QMap<QString, RegisteredTest::Maker> tests;
    return tests;
}

QtMessageHandler previousHandler = nullptr;

// Qt only warns about a slot whose name fits no widget, and about a connection that cannot be made.
void failOnBrokenConnections(QtMsgType type, const QMessageLogContext &context,
                             const QString &message)
{
    if (message == QLatin1String("This plugin does not support propagateSizeHints()")) {
        return; // says the platform without a display, of every window
    }
    previousHandler(type, context, message);
    const bool isBroken = message.contains(QLatin1String("connectSlotsByName"))
        || message.contains(QLatin1String("QObject::connect"))
        || message.contains(QLatin1String("QLayout"));
    if (type == QtWarningMsg && isBroken) {
        QTest::qFail(qPrintable(message), __FILE__, __LINE__);
    }
}

// In an application without a display, with an empty temporary folder as the user's home. Fails on
// the warnings that stand for a broken connection or a misused object.
int run(const RegisteredTest::Maker &make, int argc, char *argv[])
{
    const std::unique_ptr<QObject> test = make();
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QTest::qInit(test.get(), argc,
                 argv); // installs Qt Test's message handler, which ours passes everything on to
    previousHandler = qInstallMessageHandler(failOnBrokenConnections);
    const int result = QTest::qRun();
    QTest::qCleanup();
    return result;
}

int sayWhatThereIs(const char *program)
{
    QTextStream(stderr) << "usage: " << program << " TEST [OPTION]...\n\nThe tests are:\n  "
                        << QStringList(registeredTests().keys()).join("\n  ") << '\n';
    return EXIT_FAILURE;
}

} // namespace

RegisteredTest::RegisteredTest(const char *file, const Maker &make)
{
    registeredTests().insert(QFileInfo(QString::fromLocal8Bit(file)).completeBaseName(), make);
}

int main(int argc, char *argv[])
{
    const auto test = registeredTests().constFind(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (test == registeredTests().constEnd()) {
        return sayWhatThereIs(argv[0]);
    }
    argv[1] = argv[0];
    return run(*test, argc - 1, argv + 1);
}
