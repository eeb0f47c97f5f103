// Gives a target every file of its corpus, without a fuzzer: what went wrong once is found again by
// the ordinary tests.

#include "fuzz/target.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QLoggingCategory>
#include <QTextStream>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Cannot read %s", qPrintable(path));
    }
    return file.readAll();
}

int replay(const QString &corpus)
{
    int inputs = 0;
    QDirIterator files(corpus, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QTextStream(stdout) << path
                            << '\n'; // printed before, so that it stands there after a crash
        fuzz(contentOf(path));
        ++inputs;
    }
    return inputs;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("corpus"),
                                 QStringLiteral("The folder of the inputs."));
    parser.addHelpOption();
    parser.process(application);

    int inputs = 0;
    for (const QString &corpus : parser.positionalArguments()) {
        inputs += replay(corpus);
    }
    if (inputs == 0) {
        QTextStream(stderr) << "There is nothing to replay.\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
