#include "tests/model/sequence.h"

#include "tests/endtoend/transferfiles.h"
#include "tests/support/quickstyle.h"

#include <QGuiApplication>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int fewestActions = 6;
constexpr int mostActions = 12;
constexpr int fewestConfigurations = 1;
constexpr int mostConfigurations = 6;
constexpr int longestData = 700; // bytes; more would only take time
constexpr int latestFault = 30;  // a refresh is about as many commands
constexpr int oneFaultIn = 6;    // actions
constexpr int foreverMs = 3600 * 1000;

QString shown(const QStringList &lines)
{
    return lines.isEmpty() ? "  (nothing)" : QStringLiteral("  ") + lines.join("\n  ");
}

QByteArray bytes(QRandomGenerator &random)
{
    QByteArray data(1 + int(random.bounded(longestData)), Qt::Uninitialized);
    std::generate(data.begin(), data.end(), [&random] { return char(random.bounded(256)); });
    return data;
}

Configuration configuration(QRandomGenerator &random, const QByteArray &identifier)
{
    static const QByteArrayList owners{"", "A. Lindqvist", "demo", "the \"lab\""};
    static const QByteArrayList descriptions{
        "Robot cell",         "Robot cell",        "copy of Hall 7",
        "Hall 7 01-02-2020",  "seats01-02-2020",   "wand \"only\"",
        "Wind tunnel (slow)", "copy of copy of x", QByteArray(100, 'm')};
    Configuration made;
    made.identifier = identifier;
    made.owner = owners.at(int(random.bounded(owners.size())));
    made.description = descriptions.at(int(random.bounded(descriptions.size())));
    made.data = bytes(random);
    if (random.bounded(4) == 0) {
        made.password = SaltedHash::of(
            ControllerModel::passwords.at(int(random.bounded(ControllerModel::passwords.size()))));
    }
    return made;
}

ControllerState controllerState(QRandomGenerator &random)
{
    ControllerState state = ControllerState::sample();
    state.configurations = {configuration(random, "standard")};
    const int count = int(random.bounded(fewestConfigurations, mostConfigurations + 1));
    for (int i = 1; i < count; ++i) {
        state.configurations << configuration(random, "config" + QByteArray::number(i));
    }
    state.activeIdentifier = state.configurations.at(int(random.bounded(count))).identifier;
    state.baseData = bytes(random);
    state.superPassword = SaltedHash::of(ControllerModel::superPassword);
    if (random.bounded(3) == 0) { // little room
        state.storeCapacity = state.usedBytes() + state.usedBytes() * random.bounded(60) / 100;
    }
    return state;
}

// With all that depends on the version, with less and less of it.
Abilities abilities(QRandomGenerator &random)
{
    switch (random.bounded(6)) {
    case 0:
        return {false, false, false};
    case 1:
        return {true, false, false};
    case 2:
        return {true, true, false};
    default:
        return {true, true, true};
    }
}

Version versionOf(const Abilities &abilities)
{
    if (abilities.reportsFreeSpace) {
        return {1, 27, 0};
    }
    if (abilities.hasTransfers) {
        return {1, 26, 9};
    }
    return abilities.hasLocks ? Version{1, 10, -1} : Version{1, 8, 7};
}

bool tellsOfAnError(const QString &line)
{
    return line.startsWith(Transcript::reportLine({})) || line.startsWith("box Critical ")
        || line.contains("unsuccessfully");
}

// What is none of the plug-in's business, except in a restore.
ControllerState settingsOf(ControllerState state)
{
    state.configurations.clear();
    state.activeIdentifier.clear();
    return state;
}

} // namespace

Sequence::Sequence(quint32 seed)
    : m_random(seed)
    , m_abilities(abilities(m_random))
{
    QuickStyle::use();
    const ControllerState state = controllerState(m_random);
    m_frontEnd = std::make_unique<FrontEnd>(state, versionOf(m_abilities));
    m_frontEnd->channel.setSleep([](int) {});
    m_user = std::make_unique<User>(*m_frontEnd, m_transcript);
    m_model = std::make_unique<FrontEndModel>(ControllerModel::of(state), m_abilities);
    m_remaining = m_random.bounded(fewestActions, mostActions + 1);
}

void Sequence::run()
{
    while (isGoing()) {
        if (oneIn(3)) {
            changeElsewhere();
        }
        open();
    }
}

void Sequence::begin(const QString &action, const Promises &promises)
{
    --m_remaining;
    m_actions << action;
    m_promises = promises;
    m_before = m_frontEnd->state();
    m_transcript.clear();
    m_faultsBefore = m_frontEnd->channel.faults().faultCount();
    if (!m_isDisturbed && oneIn(oneFaultIn)) {
        armFault();
    }
}

void Sequence::armFault()
{
    static const QByteArrayList answers{
        "",        "yes",    "no",     "none",     "7",
        "-1",      "0 none", "1 'BA'", "standard", QByteArray(199, 'x'),
        "\xff\xfe"};
    const int n = 1 + below(latestFault);
    const bool isLasting = oneIn(3);
    Fault fault;
    QString what = "fails";
    switch (below(3)) {
    case 0:
        break;
    case 1:
        fault.kind = Fault::Kind::Delay;
        fault.milliseconds = foreverMs;
        what = "is executed, but not answered";
        break;
    default:
        fault.kind = Fault::Kind::Answer;
        fault.answer = oneOf(answers);
        what = QStringLiteral("is answered with '%1'").arg(QString::fromLatin1(fault.answer));
    }
    m_frontEnd->channel.faults().addNth(n, fault, isLasting);
    m_actions.last() +=
        QStringLiteral(", while command %1 %2%3")
            .arg(QString::number(n), isLasting ? "and each after it " : QString(), what);
}

void Sequence::end(const Prediction &predict)
{
    FaultPlan &faults = m_frontEnd->channel.faults();
    faults.clear();
    m_isDisturbed = faults.faultCount() > m_faultsBefore;
    if (m_isDisturbed) {
        ++m_faultCount;
        m_frontEnd->driver.takeProblems(); // windows may have come or not
        comparePromises();
    } else {
        compareWithModel(predict);
    }
}

Facts Sequence::facts() const
{
    Facts facts;
    facts.newIdentifiers = m_transcript.newIdentifiers();
    if (m_list) {
        const ListPicture list = ListPicture::of(m_list);
        for (const RowPicture &row : list.rows) {
            facts.shownOrder << row.identifier;
        }
    }
    return facts;
}

void Sequence::compareWithModel(const Prediction &predict)
{
    const QStringList expected = predict(facts());
    complainOfDifference("What was told", m_transcript.told(), expected);
    complainOfDifference("The controller", ControllerModel::of(m_frontEnd->state()).lines(),
                         m_model->controller.lines());
    if (m_list) {
        complainOfDifference("The list", ListPicture::of(m_list).lines(), m_model->list().lines());
    }
    if (settingsOf(m_frontEnd->state()) != settingsOf(m_before)) {
        complain("The controller's settings have changed.");
    }
    const QStringList problems = m_frontEnd->driver.takeProblems();
    if (!problems.isEmpty()) {
        complain(problems.join(QLatin1Char('\n')));
    }
    if (QGuiApplication::overrideCursor()) {
        complain("The wait cursor has stayed.");
    }
}

void Sequence::comparePromises()
{
    const ControllerModel after = ControllerModel::of(m_frontEnd->state());
    compareUntouched(after);
    compareReports();
    compareFiles();
    const bool mayWait = m_transcript.told().join(QLatin1Char('\n')).contains("Download canceled");
    if (QGuiApplication::overrideCursor() && !mayWait) {
        complain("The wait cursor has stayed.");
    }
    while (QGuiApplication::overrideCursor()) {
        QGuiApplication::restoreOverrideCursor();
    }
    // What has become of the rest is for the controller to say; a password that may have been
    // presented is forgotten.
    m_frontEnd->controller.setState(ControllerState(m_frontEnd->state()));
    m_model->controller = after;
}

void Sequence::compareUntouched(const ControllerModel &after)
{
    const ControllerModel before = ControllerModel::of(m_before);
    for (const StoredModel &configuration : before.stored) {
        const StoredModel *now = after.find(configuration.identifier);
        const bool isSame = now != nullptr && *now == configuration;
        if (!isSame && !m_promises.touched.contains(configuration.identifier)) {
            complain(QStringLiteral("%1 should not have changed:\n%2\n%3")
                         .arg(QString::fromLatin1(configuration.identifier), shown(before.lines()),
                              shown(after.lines())));
        }
    }
    const QByteArrayList created = m_transcript.newIdentifiers();
    for (const StoredModel &configuration : after.stored) {
        const QByteArray identifier = configuration.identifier;
        if (!before.find(identifier) && !created.contains(identifier)
            && !m_promises.touched.contains(identifier)) {
            complain(QStringLiteral("Where does %1 come from?\n%2")
                         .arg(QString::fromLatin1(identifier), shown(after.lines())));
        }
    }
    if (settingsOf(m_frontEnd->state()) != settingsOf(m_before)) {
        complain("The controller's settings have changed.");
    }
}

void Sequence::compareReports()
{
    const QRegularExpression silent(m_promises.unreported);
    QStringList reported;
    const QVector<Exchange> exchanges = m_transcript.exchanges();
    for (const Exchange &exchange : exchanges) {
        const QString text = QString::fromLatin1(exchange.command);
        const bool isSilent = !m_promises.unreported.isEmpty() && silent.match(text).hasMatch();
        if (exchange.result != 0 && !isSilent) {
            reported << text;
        }
    }
    const int expected = m_promises.isReportedOnce ? qMin(1, reported.size()) : reported.size();
    const QStringList told = m_transcript.told();
    if (std::count_if(told.cbegin(), told.cend(), tellsOfAnError) < expected) {
        complain(QStringLiteral("These failed:\n%1\nbut what was told is:\n%2")
                     .arg(shown(reported), shown(told)));
    }
}

// What a file held before is still there, if only under its other name.
void Sequence::compareFiles()
{
    const QString path = m_promises.savedPath;
    if (path.isEmpty()) {
        return;
    }
    const QString backup = path + ".bak";
    const bool isKept = TransferFiles::contentsOf(path) == m_promises.savedBefore
        || TransferFiles::contentsOf(backup) == m_promises.savedBefore;
    if (m_promises.savedBefore && !isKept) {
        complain(QStringLiteral("The older contents of %1 are lost.").arg(path));
    }
    for (const QString &name : {path, backup}) {
        QFile::remove(name);
        m_model->files.remove(name);
    }
}

void Sequence::complain(const QString &problem)
{
    if (m_problem.isEmpty()) {
        m_problem = problem;
    }
}

void Sequence::complainOfDifference(const QString &what, const QStringList &actual,
                                    const QStringList &expected)
{
    if (actual != expected) {
        complain(QStringLiteral("%1 is not as it should be:\n%2\nexpected:\n%3")
                     .arg(what, shown(actual), shown(expected)));
    }
}
