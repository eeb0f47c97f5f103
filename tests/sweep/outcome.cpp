#include "tests/sweep/outcome.h"

#include <QXmlStreamReader>

namespace {

constexpr int linesOfContext = 4;

QString difference(const QStringList &actual, const QStringList &expected)
{
    int line = 0;
    while (line < actual.size() && line < expected.size() && actual.at(line) == expected.at(line)) {
        ++line;
    }
    if (line == actual.size() && line == expected.size()) {
        return {};
    }
    const QStringList before =
        actual.mid(qMax(0, line - linesOfContext), qMin(line, linesOfContext));
    const QString nothing = "(nothing)";
    return QStringLiteral("after\n    %1\ncame\n    %2\ninstead of\n    %3")
        .arg(before.join("\n    "), actual.value(line, nothing), expected.value(line, nothing));
}

QStringList described(const Configuration &configuration)
{
    const SaltedHash &password = configuration.password;
    const QByteArray lock =
        password.matches(newPassword) ? QByteArray(newPassword) : password.hash.toHex();
    return {QStringLiteral("%1 of '%2' '%3', locked with '%4', %5")
                .arg(QString::fromLatin1(configuration.identifier),
                     QString::fromLatin1(configuration.owner),
                     QString::fromLatin1(configuration.description), QString::fromLatin1(lock),
                     QString::fromLatin1(configuration.data.toHex()))};
}

QStringList described(const ControllerState &state)
{
    QStringList lines;
    for (const QByteArray &setting :
         {state.hostName, state.serial, state.model, state.net, state.domainName, state.nameServer,
          state.ntpServer, state.activity, state.activeIdentifier, state.baseData.toHex(),
          state.superPassword.hash.toHex()}) {
        lines << QString::fromLatin1(setting);
    }
    for (const Configuration &configuration : state.configurations) {
        lines << described(configuration);
    }
    for (const CascadeSlave &slave : state.slaves) {
        lines << QString::fromLatin1(slave.name) + (slave.isConnected ? ", connected" : QString())
                + (slave.isAvailable ? ", available" : QString())
                + (slave.isScanned ? ", scanned" : QString());
    }
    return lines;
}

// What a document says, without what depends on the time and on the layout. Other files as they
// are.
QStringList described(const QByteArray &contents)
{
    QStringList lines;
    QXmlStreamReader xml(contents);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() || xml.isEndElement()) {
            lines << xml.name().toString();
            if (xml.name() == "creationDate" && xml.isStartElement()) {
                xml.readElementText();
            }
        } else if (xml.isCharacters() && !xml.isWhitespace()) {
            lines << xml.text().toString();
        }
    }
    return xml.hasError() ? QStringList(QString::fromLatin1(contents.toHex())) : lines;
}

// Their contents where they are not the same to the letter as among the others.
QStringList described(const Files &files, const Files &others)
{
    QStringList lines;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        lines << file.key();
        if (others.value(file.key()) != file.value()) {
            lines << described(file.value());
        }
    }
    return lines;
}

} // namespace

QString difference(const Outcome &actual, const Outcome &expected)
{
    const auto compare = [](const char *what, const auto &actually, const auto &asExpected) {
        const QString found = difference(actually, asExpected);
        return found.isEmpty() ? QString() : QString::fromLatin1(what) + found;
    };
    const QStringList differences{
        compare("", actual.transcript, expected.transcript),
        compare("on the controller, ", described(actual.state), described(expected.state)),
        compare("among the files, ", described(actual.files, expected.files),
                described(expected.files, actual.files)),
        actual.waitCursors == expected.waitCursors
            ? QString()
            : QStringLiteral("%1 wait cursors are left instead of %2")
                  .arg(actual.waitCursors)
                  .arg(expected.waitCursors)};
    for (const QString &found : differences) {
        if (!found.isEmpty()) {
            return found;
        }
    }
    return {};
}
