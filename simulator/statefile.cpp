#include "simulator/statefile.h"

#include "simulator/controllerstate.h"
#include "simulator/jsonreader.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

namespace {

constexpr char format[] = "veltra2 simulated controller 1";

QString shown(const QByteArray &text)
{
    return QString::fromLatin1(text);
}

QString encoded(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

QJsonObject toJson(const SaltedHash &password)
{
    return {{"salt", encoded(password.salt)}, {"hash", encoded(password.hash)}};
}

QJsonObject toJson(const Configuration &configuration)
{
    QJsonObject object{{"identifier", shown(configuration.identifier)},
                       {"owner", shown(configuration.owner)},
                       {"description", shown(configuration.description)},
                       {"data", encoded(configuration.data)}};
    if (configuration.isLocked()) {
        object.insert("password", toJson(configuration.password));
    }
    return object;
}

QJsonObject toJson(const CascadeSlave &slave)
{
    return {{"name", shown(slave.name)},
            {"connected", slave.isConnected},
            {"available", slave.isAvailable},
            {"scanned", slave.isScanned}};
}

template <typename Element>
QJsonArray listToJson(const QVector<Element> &elements)
{
    QJsonArray array;
    for (const Element &element : elements) {
        array.append(toJson(element));
    }
    return array;
}

QJsonObject toJson(const ControllerState &state)
{
    return {{"format", format},
            {"hostName", shown(state.hostName)},
            {"serial", shown(state.serial)},
            {"model", shown(state.model)},
            {"modelDescription", shown(state.modelDescription)},
            {"embedded", state.isEmbedded},
            {"net", shown(state.net)},
            {"domainName", shown(state.domainName)},
            {"nameServer", shown(state.nameServer)},
            {"ntpServer", shown(state.ntpServer)},
            {"activity", shown(state.activity)},
            {"storeCapacity", state.storeCapacity},
            {"active", shown(state.activeIdentifier)},
            {"base", encoded(state.baseData)},
            {"superPassword", toJson(state.superPassword)},
            {"configurations", listToJson(state.configurations)},
            {"slaves", listToJson(state.slaves)}};
}

SaltedHash readPassword(JsonReader &reader, const QString &place, const QJsonObject &object)
{
    reader.enter(place, object);
    return {reader.bytes("salt"), reader.bytes("hash")};
}

Configuration readConfiguration(JsonReader &reader, int slot, const QJsonObject &object)
{
    const QString place = QStringLiteral("configuration %1").arg(slot);
    reader.enter(place, object);
    Configuration configuration;
    configuration.identifier = reader.text("identifier");
    configuration.owner = reader.text("owner");
    configuration.description = reader.text("description");
    configuration.data = reader.bytes("data");
    if (reader.has("password")) {
        configuration.password = readPassword(reader, place, reader.object("password"));
    }
    return configuration;
}

CascadeSlave readSlave(JsonReader &reader, int place, const QJsonObject &object)
{
    reader.enter(QStringLiteral("slave %1").arg(place), object);
    CascadeSlave slave;
    slave.name = reader.text("name");
    slave.isConnected = reader.flag("connected");
    slave.isAvailable = reader.flag("available");
    slave.isScanned = reader.flag("scanned");
    return slave;
}

ControllerState readState(JsonReader &reader, const QJsonObject &root)
{
    reader.enter(QStringLiteral("controller"), root);
    ControllerState state;
    state.hostName = reader.text("hostName");
    state.serial = reader.text("serial");
    state.model = reader.text("model");
    state.modelDescription = reader.text("modelDescription");
    state.isEmbedded = reader.flag("embedded");
    state.net = reader.text("net");
    state.domainName = reader.text("domainName");
    state.nameServer = reader.text("nameServer");
    state.ntpServer = reader.text("ntpServer");
    state.activity = reader.text("activity");
    state.storeCapacity = reader.wholeNumber("storeCapacity");
    state.activeIdentifier = reader.text("active");
    state.baseData = reader.bytes("base");
    const QVector<QJsonObject> configurations = reader.objects("configurations");
    const QVector<QJsonObject> slaves = reader.objects("slaves");
    state.superPassword =
        readPassword(reader, QStringLiteral("superPassword"), reader.object("superPassword"));
    for (const QJsonObject &object : configurations) {
        state.configurations << readConfiguration(reader, state.configurations.size() + 1, object);
    }
    for (const QJsonObject &object : slaves) {
        state.slaves << readSlave(reader, state.slaves.size() + 1, object);
    }
    return state;
}

bool fail(const QString &path, const QString &problem, QString *error)
{
    *error = QStringLiteral("%1: %2").arg(path, problem);
    return false;
}

} // namespace

bool StateFile::load(const QString &path, ControllerState *state, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(path, file.errorString(), error);
    }
    QJsonParseError syntax;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll(), &syntax).object();
    if (syntax.error != QJsonParseError::NoError) {
        return fail(path,
                    QStringLiteral("%1 at byte %2").arg(syntax.errorString()).arg(syntax.offset),
                    error);
    }
    if (root.value("format").toString() != format) {
        return fail(path, QStringLiteral("not the state of a simulated controller"), error);
    }
    JsonReader reader;
    const ControllerState read = readState(reader, root);
    const QString problem = reader.problem().isEmpty() ? read.problem() : reader.problem();
    if (!problem.isEmpty()) {
        return fail(path, problem, error);
    }
    *state = read;
    return true;
}

bool StateFile::takeUp(const QString &path, ControllerState *state, QString *error)
{
    return QFileInfo::exists(path) ? load(path, state, error) : save(path, *state, error);
}

bool StateFile::save(const QString &path, const ControllerState &state, QString *error)
{
    const QByteArray document = QJsonDocument(toJson(state)).toJson();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(document) != document.size()
        || !file.commit()) {
        return fail(path, file.errorString(), error);
    }
    return true;
}
