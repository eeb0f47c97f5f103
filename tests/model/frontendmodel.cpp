#include "tests/model/frontendmodel.h"

#include "tests/sweep/transcript.h"

#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace {

const QString listTable = "tableWidget";
constexpr double nearlyFull = 0.2;
constexpr double tooFull = 0.02;

QString unquoted(const QByteArray &text)
{
    return QString::fromLatin1(text).remove(QLatin1Char('"'));
}

QString warningLine(const QString &text)
{
    return Transcript::boxLine(QMessageBox::Warning, "Warning", text);
}

// As the controller answers it: in quotes.
QString descriptionAnswer(const StoredModel *configuration)
{
    return configuration
        ? QLatin1Char('"') + QString::fromLatin1(configuration->description) + QLatin1Char('"')
        : QString();
}

// What a description becomes in a file: today's date replaces an older one.
QByteArray dated(const QByteArray &description)
{
    QString text = unquoted(description);
    if (text.startsWith("copy of ")) {
        text = text.mid(8);
    }
    static const QRegularExpression date("[0-9]{2}-[0-9]{2}-[0-9]{4}$");
    const QRegularExpressionMatch match = date.match(text);
    if (match.hasMatch()) {
        const QString before = text.left(match.capturedStart());
        text = before.endsWith(QLatin1Char(' ')) ? before.chopped(1) : before + "00-00-0000";
    }
    const QString today = QLocale::c().toString(QDate::currentDate(), "dd-MM-yyyy");
    return (text + QLatin1Char(' ') + today).toLatin1();
}

// Owner and description as a file's contents are listed: cut where a blank stands before a quote,
// be it the closing one.
QStringList offeredTexts(const StoredModel &item)
{
    const QString line =
        QStringLiteral("'%1' '%2'")
            .arg(QString::fromLatin1(item.owner), QString::fromLatin1(item.description));
    return QString(line).replace(QLatin1String(" '"), QLatin1String("\n")).remove('\'').split('\n');
}

QString replaceLine(const QString &caption, const QString &path)
{
    return Transcript::boxLine(QMessageBox::Warning, caption,
                               QStringLiteral("%1 already exists.\nDo you want to replace it?")
                                   .arg(QFileInfo(path).fileName()));
}

QString saveError(const QString &text)
{
    return Transcript::reportLine(QStringLiteral("Error save configuration: ") + text);
}

} // namespace

FrontEndModel::FrontEndModel(ControllerModel controllerAtFirst, const Abilities &abilities)
    : controller(std::move(controllerAtFirst))
    , m_abilities(abilities)
{
    m_list.enabledButtons << "exit";
    enable("save", abilities.hasTransfers);
    enable("load", abilities.hasTransfers);
}

QStringList FrontEndModel::open(const Facts &facts)
{
    refreshAtActive(facts);
    return {};
}

QStringList FrontEndModel::clickRow(int row)
{
    select(row);
    m_list.focus = listTable;
    return {};
}

QStringList FrontEndModel::pressUpOrDown(int step)
{
    select(qBound(0, m_list.currentRow + step, m_list.rows.size() - 1));
    return {};
}

QStringList FrontEndModel::apply(Way way, const Facts &facts)
{
    if (!isEnabled("apply")) {
        return {};
    }
    if (way == Way::Button) {
        m_list.focus = "pushButton_apply";
    }
    return activateCurrent(facts);
}

QStringList FrontEndModel::deleteCurrent(bool isConfirmed, const Facts &facts)
{
    if (!isEnabled("delete")) {
        return {}; // the key does not delete either what the button would not
    }
    const RowPicture row = m_list.rows.at(m_list.currentRow);
    QStringList lines{
        warningLine(QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
                        .arg(row.description, row.owner))};
    if (!isConfirmed) {
        m_list.focus = listTable;
        return lines;
    }
    if (!controller.remove(row.identifier.toLatin1())) {
        lines << Transcript::reportLine("Unable to delete configuration");
    }
    lines << Transcript::eventLine();
    refreshAtActive(facts);
    return lines;
}

QStringList FrontEndModel::createNew(bool isClone, const Attempts &attempts, const Facts &facts)
{
    QStringList lines{Transcript::windowLine("New Configuration", {})};
    bool isCreated = false;
    for (const Attempt &texts : attempts) {
        if (texts.first.isEmpty()) {
            lines << warningLine("Please enter a configuration description.");
            continue;
        }
        const QByteArray identifier = facts.newIdentifiers.value(0);
        isClone ? controller.clone(identifier, controller.active) : controller.create(identifier);
        // Where there was no room, this is about the configuration that is still active.
        controller.setPassword({});
        controller.setOwner(texts.second.toLatin1());
        controller.setDescription(texts.first.toLatin1());
        lines << Transcript::eventLine();
        isCreated = true;
        break;
    }
    isCreated ? refreshAtActive(facts) : refreshAt(m_list.currentRow, facts);
    showActiveText();
    return lines;
}

QStringList FrontEndModel::edit(Way way, const Attempts &attempts, const Facts &facts)
{
    const bool isDoubleClick = way == Way::DoubleClick;
    if (isDoubleClick && m_list.rows.at(m_list.currentRow).locked == "yes") {
        return activateCurrent(facts);
    }
    const QStringList lines = editCurrent(attempts);
    refreshAt(m_list.currentRow, facts);
    m_list.focus = isDoubleClick ? "pushButton_exit" : listTable;
    return lines;
}

QStringList FrontEndModel::lock(const Attempts &attempts, const Facts &facts)
{
    QStringList lines{Transcript::windowLine(
        "Lock configuration dialog",
        {QStringLiteral("set password for configuration ")
         + descriptionAnswer(qAsConst(controller).find(currentIdentifier()))})};
    for (const Attempt &texts : attempts) {
        if (texts.first.isEmpty() || texts.second.isEmpty()) {
            lines << warningLine("Password must not be empty.");
        } else if (texts.first != texts.second) {
            lines << warningLine("The entered passwords do not match.");
        } else {
            controller.setPassword(texts.first.toLatin1());
            lines << Transcript::eventLine();
            break;
        }
    }
    refreshAt(m_list.currentRow, facts);
    return lines;
}

QStringList FrontEndModel::unlock(const Attempts &attempts, const Facts &facts)
{
    QStringList lines{Transcript::windowLine(
        "Unlock Configuration",
        {QStringLiteral("unlock configuration %1:")
             .arg(descriptionAnswer(qAsConst(controller).find(currentIdentifier())))})};
    for (const Attempt &attempt : attempts) {
        if (attempt.first.isEmpty()) {
            lines << warningLine("Please enter the password for this configuration.");
            continue;
        }
        attempt.isSuper ? controller.presentSuper(attempt.first.toLatin1())
                        : controller.present(attempt.first.toLatin1());
        if (controller.isChangeable()) {
            controller.setPassword({});
            lines << Transcript::eventLine();
            break;
        }
        lines << warningLine(attempt.isSuper ? "The super password is invalid."
                                             : "The password is invalid.");
    }
    refreshAt(m_list.currentRow, facts);
    return lines;
}

QStringList FrontEndModel::save(const FileChoice &choice, const Facts &facts)
{
    QStringList contents;
    for (const Entry &entry : qAsConst(m_entries)) {
        contents << entry.description << entry.owner << QString::fromLatin1(entry.identifier);
    }
    QStringList lines{Transcript::windowLine("Save Configurations", contents)};
    if (!choice.rows.isEmpty() && !choice.path.isEmpty()) {
        if (files.contains(choice.path)) {
            lines << replaceLine("Save configuration(s)", choice.path);
        }
        const QByteArray activeBefore = controller.active;
        QStringList copyingLines;
        const QVector<StoredModel> items = copy(choice.rows, facts, &copyingLines);
        const QStringList outcome = storeFile(choice.path, items);
        for (const QByteArray &identifier : facts.newIdentifiers) {
            if (!controller.remove(identifier)) {
                copyingLines << saveError(QStringLiteral("Cannot delete configuration %1.")
                                              .arg(QString::fromLatin1(identifier)));
            }
        }
        controller.activate(activeBefore);
        lines << copyingLines << outcome;
    }
    selectActive();
    return lines;
}

QVector<StoredModel> FrontEndModel::copy(const QVector<int> &rows, const Facts &facts,
                                         QStringList *lines)
{
    QVector<StoredModel> items;
    for (int i = 0; i < rows.size(); ++i) {
        const QByteArray identifier = facts.newIdentifiers.value(i);
        if (!controller.clone(identifier, m_entries.at(rows.at(i)).identifier)) {
            *lines << saveError(QStringLiteral("Cannot clone configuration number %1").arg(i));
            continue;
        }
        controller.setDescription(dated(qAsConst(controller).find(identifier)->description));
        items << *qAsConst(controller).find(identifier);
    }
    return items;
}

QStringList FrontEndModel::storeFile(const QString &path, const QVector<StoredModel> &items)
{
    if (files.contains(path)) {
        files.insert(path + ".bak", files.take(path));
    }
    const QString title = "Save Configurations";
    if (items.isEmpty()) {
        return {Transcript::boxLine(QMessageBox::Critical, title,
                                    "Configuration data can not be recognized.")};
    }
    files.insert(path, {FileModel::Kind::Configurations, items});
    return {Transcript::boxLine(
        QMessageBox::Information, title,
        QStringLiteral("Configuration data successfully written to the file\n") + path)};
}

QStringList FrontEndModel::backUp()
{
    QStringList lines = save({}, {}); // the window is the same
    lines << Transcript::boxLine(QMessageBox::Information, "Success", "Backup created!");
    return lines;
}

QStringList FrontEndModel::load(const FileChoice &choice, const Facts &facts)
{
    QStringList lines;
    if (!choice.path.isEmpty()) {
        lines = openFile(choice.path);
        const QVector<StoredModel> offered = files.value(choice.path).items;
        QVector<StoredModel> chosen;
        for (int row : choice.rows) {
            if (!isShownLocked(offered.at(row).identifier)) {
                chosen << offered.at(row);
            }
        }
        lines << importItems(chosen);
    }
    refreshAtActive(facts);
    return lines;
}

QStringList FrontEndModel::openFile(const QString &path) const
{
    const FileModel file = files.value(path);
    if (file.kind == FileModel::Kind::Empty) {
        return {Transcript::reportLine("Error: Unable to load configurations")};
    }
    if (file.kind == FileModel::Kind::Text) {
        return {Transcript::reportLine("Error: Configuration file can not be recognized")};
    }
    QStringList contents;
    for (const StoredModel &item : file.items) {
        const QStringList texts = offeredTexts(item);
        contents << texts.value(1) << texts.value(0) << QString::fromLatin1(item.identifier)
                 << (isShownLocked(item.identifier) ? "locked" : QString());
    }
    return {Transcript::windowLine("Load Configurations", contents)};
}

QStringList FrontEndModel::importItems(const QVector<StoredModel> &items)
{
    if (items.isEmpty()) {
        return {}; // there is nothing to press
    }
    const auto isShown = [this](const QByteArray &identifier) {
        return std::any_of(m_entries.cbegin(), m_entries.cend(), [&identifier](const Entry &entry) {
            return entry.identifier == identifier;
        });
    };
    for (const StoredModel &item : items) {
        if (isShown(item.identifier)) {
            controller.remove(item.identifier);
        }
    }
    const bool isComplete = std::all_of(items.cbegin(), items.cend(), [this](const StoredModel &i) {
        return controller.import(i);
    });
    return {Transcript::eventLine(),
            Transcript::boxLine(QMessageBox::Information, "Load Configurations",
                                isComplete ? "Loading configuration successfully."
                                           : "Loading configuration unsuccessfully.")};
}

void FrontEndModel::refreshAt(int row, const Facts &facts)
{
    refresh(facts);
    select(row);
    m_list.focus = listTable;
}

void FrontEndModel::refreshAtActive(const Facts &facts)
{
    refresh(facts);
    showActiveText();
    selectActive();
}

void FrontEndModel::refresh(const Facts &facts)
{
    m_entries.clear();
    for (const StoredModel &configuration : qAsConst(controller.stored)) {
        m_entries << Entry{configuration.identifier, unquoted(configuration.description),
                           unquoted(configuration.owner),
                           m_abilities.hasLocks && configuration.password.has_value()};
    }
    m_activeIdentifier = controller.active;
    showFreeSpace();
    fillRows(facts.shownOrder);
    m_list.currentRow = -1;
    for (const char *button : {"delete", "edit", "apply", "lock"}) {
        enable(QString::fromLatin1(button), false);
    }
    m_list.focus = "pushButton_exit";
}

void FrontEndModel::showFreeSpace()
{
    // As it is answered, to the sixth digit.
    const double free = m_abilities.reportsFreeSpace
        ? QByteArray::number(controller.freeFraction(), 'f', 6).toDouble()
        : 1.0;
    m_list.warning = free <= nearlyFull
        ? QStringLiteral("<b><font color=red>configuration store filled %1%; please delete "
                         "unnecessary configurations!</font></b>")
              .arg(int((1.0 - free) * 100))
        : QString();
    enable("new", free > tooFull);
}

void FrontEndModel::fillRows(const QStringList &shownOrder)
{
    m_list.rows.clear();
    for (const Entry &entry : qAsConst(m_entries)) {
        const QString locked = entry.isLocked ? "yes" : "no";
        m_list.rows << RowPicture{QString::fromLatin1(entry.identifier), entry.description,
                                  entry.owner, m_abilities.hasLocks ? locked : QString(),
                                  entry.identifier == m_activeIdentifier};
    }
    std::sort(m_list.rows.begin(), m_list.rows.end(),
              [&shownOrder](const RowPicture &left, const RowPicture &right) {
                  return std::make_pair(left.description, shownOrder.indexOf(left.identifier))
                      < std::make_pair(right.description, shownOrder.indexOf(right.identifier));
              });
}

void FrontEndModel::select(int row)
{
    if (row < 0 || row >= m_list.rows.size()) {
        m_list.currentRow = -1;
        return;
    }
    m_list.currentRow = row;
    const RowPicture shown = m_list.rows.at(row);
    const bool isActive = shown.identifier.toLatin1() == m_activeIdentifier;
    const bool isLocked = shown.locked == "yes";
    if (m_abilities.hasLocks) {
        m_list.lockButton = isLocked ? "Unl&ock" : "L&ock";
        enable("lock", isActive);
    }
    enable("delete", shown.identifier != "standard" && !isLocked);
    enable("apply", !isActive);
    enable("edit", !isLocked);
}

void FrontEndModel::selectActive()
{
    int row = 0;
    if (m_list.rows.size() > 1) {
        while (row < m_list.rows.size() && !m_list.rows.at(row).isBold) {
            ++row;
        }
    }
    select(row);
    m_list.focus = listTable;
}

void FrontEndModel::showActiveText()
{
    m_list.activeText.clear();
    for (const Entry &entry : qAsConst(m_entries)) {
        if (entry.identifier == m_activeIdentifier) {
            m_list.activeText = entry.description;
        }
    }
}

// The list keeps the order of the buttons in the window.
void FrontEndModel::enable(const QString &button, bool isEnabled)
{
    static const QStringList order{"new",  "apply", "delete", "edit",
                                   "lock", "save",  "load",   "exit"};
    m_list.enabledButtons.removeAll(button);
    if (isEnabled) {
        m_list.enabledButtons << button;
    }
    std::sort(m_list.enabledButtons.begin(), m_list.enabledButtons.end(),
              [](const QString &left, const QString &right) {
                  return order.indexOf(left) < order.indexOf(right);
              });
}

QByteArray FrontEndModel::currentIdentifier() const
{
    return m_list.rows.at(m_list.currentRow).identifier.toLatin1();
}

QStringList FrontEndModel::activateCurrent(const Facts &facts)
{
    if (!controller.activate(currentIdentifier())) {
        return {Transcript::reportLine("Unable to change the configuration")};
    }
    refreshAtActive(facts);
    return {Transcript::eventLine()};
}

QStringList FrontEndModel::editCurrent(const Attempts &attempts)
{
    const QByteArray identifier = currentIdentifier();
    const StoredModel *configuration = qAsConst(controller).find(identifier);
    QStringList lines{
        Transcript::windowLine("Edit Configuration",
                               {configuration ? unquoted(configuration->description) : QString(),
                                configuration ? unquoted(configuration->owner) : QString(),
                                QString::fromLatin1(identifier)})};
    for (const Attempt &texts : attempts) {
        if (texts.first.isEmpty()) {
            lines << warningLine("Configuration description must not be empty.");
            continue;
        }
        controller.activate(identifier);
        controller.setOwner(texts.second.toLatin1());
        controller.setDescription(texts.first.toLatin1());
        lines << Transcript::eventLine();
        break;
    }
    return lines;
}

bool FrontEndModel::isShownLocked(const QByteArray &identifier) const
{
    return std::any_of(m_entries.cbegin(), m_entries.cend(), [&identifier](const Entry &entry) {
        return entry.identifier == identifier && entry.isLocked;
    });
}
