#include "tests/support/testmain.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QtMessageHandler previousHandler = nullptr;

// Qt only warns about a slot whose name fits no widget, and about a connection that cannot be made.
void failOnBrokenConnections(QtMsgType type, const QMessageLogContext &context,
                             const QString &message)
{
    if (message.contains(QLatin1String("propagateSizeHints"))) {
        return; // without a display it comes with every window, and drowns the rest
    }
    previousHandler(type, context, message);
    const bool isBroken = message.contains(QLatin1String("connectSlotsByName"))
        || message.contains(QLatin1String("QObject::connect"))
        || message.contains(QLatin1String("QLayout"));
    if (type == QtWarningMsg && isBroken) {
        QTest::qFail(qPrintable(message), __FILE__, __LINE__);
    }
}

} // namespace

int runWidgetTest(QObject *test, int argc, char *argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QTest::qInit(test, argc,
                 argv); // installs Qt Test's message handler, which ours passes everything on to
    previousHandler = qInstallMessageHandler(failOnBrokenConnections);
    const int result = QTest::qRun();
    QTest::qCleanup();
    return result;
}
