#include "tests/endtoend/transferfiles.h"
#include "tests/model/sequence.h"

#include <QPointer>

#include <algorithm>

namespace {

// The commands whose failing an action does not look at.
const QString ofCreation = "^(config active_config$|veltra2 config (clone|new)_config"
                           "|config (new_password|owner|desc) )";
const QString ofEditing = "^config (owner_of_config|desc_of_config|active_config|owner|desc) ";
const QString ofLocking = "^config (desc_of_config|new_password|password|super_password) ";
const QString ofLoading = "^(system upload|system import item|veltra2 config delete_config)";
const QString ofBackup =
    "^(system controller_serial|system model|system download (prepare|cancel)|config config t)";

QString printed(const QVector<int> &rows)
{
    QStringList numbers;
    for (int row : rows) {
        numbers << QString::number(row);
    }
    return numbers.join(QLatin1Char(' '));
}

QString printed(const Attempts &attempts)
{
    QStringList texts;
    for (const Attempt &attempt : attempts) {
        texts << QStringLiteral("'%1' '%2'%3")
                     .arg(attempt.first, attempt.second, attempt.isSuper ? " as super" : "");
    }
    return texts.isEmpty() ? "cancelling" : texts.join(", then ");
}

QString nameOf(const QString &path)
{
    return path.isEmpty() ? "(cancelled)" : path.section(QLatin1Char('/'), -1);
}

} // namespace

void Sequence::open()
{
    bool isOpen = false;
    begin("open the list");
    m_user->open([this, &isOpen](QDialog *list) {
        isOpen = true;
        m_list = list;
        end([this](const Facts &facts) { return m_model->open(facts); });
        useList();
        m_list = nullptr;
        User::close(list);
    });
    if (!isOpen) {
        end([](const Facts &) { return QStringList(); });
        if (!m_isDisturbed) {
            complain("The list did not open.");
        }
    }
}

void Sequence::useList()
{
    // After a fault the rows may be anything, until the list is opened again.
    while (isGoing() && !m_isDisturbed && !oneIn(8)) {
        if (oneIn(10)) {
            changeElsewhere();
        } else {
            actOnList();
        }
    }
}

void Sequence::actOnList()
{
    using Action = void (Sequence::*)();
    QVector<Action> possible{&Sequence::clickRow,      &Sequence::clickRow,
                             &Sequence::apply,         &Sequence::apply,
                             &Sequence::deleteCurrent, &Sequence::deleteCurrent};
    const auto offer = [&possible](bool isPossible, Action action, int weight) {
        possible += QVector<Action>(isPossible ? weight : 0, action);
    };
    const bool hasCurrent = m_model->currentRow() >= 0;
    offer(hasCurrent, &Sequence::pressUpOrDown, 1);
    offer(hasCurrent, &Sequence::editByDoubleClick, 1);
    offer(m_model->isEnabled("new"), &Sequence::createNew, 3);
    offer(m_model->isEnabled("edit"), &Sequence::editByButton, 2);
    offer(m_model->isEnabled("lock"), &Sequence::lockOrUnlock, 4);
    offer(m_model->isEnabled("save"), &Sequence::save, 2);
    offer(m_model->isEnabled("save"), &Sequence::backUp, 1);
    offer(m_model->isEnabled("load"), &Sequence::load, m_model->files.isEmpty() ? 1 : 3);
    (this->*oneOf(possible))();
}

// Somebody else at another front end, of which this one does not know until it asks.
void Sequence::changeElsewhere()
{
    ControllerState state = m_frontEnd->state();
    const int slot = below(state.configurations.size());
    Configuration &configuration = state.configurations[slot];
    QString what;
    switch (below(4)) {
    case 0:
        what = "activates";
        state.activeIdentifier = configuration.identifier;
        break;
    case 1:
        what = "renames";
        configuration.description = text(false).toLatin1();
        break;
    case 2:
        what = "locks";
        configuration.password = SaltedHash::of(password().toLatin1());
        break;
    default:
        what = "unlocks";
        configuration.password = {};
    }
    m_actions << QStringLiteral("somebody else %1 %2")
                     .arg(what, QString::fromLatin1(configuration.identifier));
    if (configuration.identifier != "standard" && oneIn(5)) {
        m_actions.last() += " and deletes it";
        const bool isActive = configuration.identifier == state.activeIdentifier;
        state.configurations.remove(slot);
        state.activeIdentifier = isActive ? QByteArray("standard") : state.activeIdentifier;
    }
    m_frontEnd->controller.setState(state);
    m_model->controller = ControllerModel::of(state);
}

void Sequence::clickRow()
{
    const int row = below(m_model->rowCount());
    begin(QStringLiteral("click row %1").arg(row));
    User::clickRow(m_list, row);
    end([this, row](const Facts &) { return m_model->clickRow(row); });
}

void Sequence::pressUpOrDown()
{
    const int step = oneIn(2) ? 1 : -1;
    begin(step < 0 ? "press Up" : "press Down");
    // Where a row was clicked before; elsewhere the keys go from button to button.
    User::clickRow(m_list, m_model->currentRow());
    User::pressUpOrDown(m_list, step);
    end([this, step](const Facts &) {
        return m_model->clickRow(m_model->currentRow()) + m_model->pressUpOrDown(step);
    });
}

void Sequence::apply()
{
    const Way way = oneIn(3) ? Way::Key : Way::Button;
    begin(way == Way::Key ? "press Return" : "press Apply");
    User::apply(m_list, way);
    end([this, way](const Facts &facts) { return m_model->apply(way, facts); });
}

void Sequence::deleteCurrent()
{
    const Way way = oneIn(3) ? Way::Key : Way::Button;
    const bool isConfirmed = !oneIn(3);
    begin(QStringLiteral("delete by %1, %2")
              .arg(way == Way::Key ? "key" : "button", isConfirmed ? "OK" : "Cancel"),
          {{currentIdentifier()}});
    m_user->deleteCurrent(m_list, way, isConfirmed);
    end([this, isConfirmed](const Facts &facts) {
        return m_model->deleteCurrent(isConfirmed, facts);
    });
}

void Sequence::createNew()
{
    const bool isClone = oneIn(2);
    const Attempts attempts = texts();
    begin(QStringLiteral("new %1: %2").arg(isClone ? "clone" : "one", printed(attempts)),
          {{m_model->controller.active}, ofCreation});
    m_user->createNew(m_list, isClone, attempts);
    end([=](const Facts &facts) { return m_model->createNew(isClone, attempts, facts); });
}

void Sequence::editByButton()
{
    edit(Way::Button);
}

void Sequence::editByDoubleClick()
{
    edit(Way::DoubleClick);
}

void Sequence::edit(Way way)
{
    const Attempts attempts = texts();
    begin((way == Way::Button ? "edit: " : "double click: ") + printed(attempts),
          {{currentIdentifier(), m_model->controller.active}, ofEditing});
    if (way == Way::DoubleClick && m_model->row(m_model->currentRow()).locked == "yes") {
        User::doubleClick(m_list, m_model->currentRow());
    } else {
        m_user->edit(m_list, way, attempts);
    }
    end([=](const Facts &facts) { return m_model->edit(way, attempts, facts); });
}

void Sequence::lockOrUnlock()
{
    if (m_model->opensUnlock()) {
        unlock();
    } else {
        lock();
    }
}

void Sequence::lock()
{
    Attempts attempts;
    for (int i = below(4); i > 0; --i) {
        const QString first = oneIn(5) ? QString() : password();
        attempts << Attempt{first, oneIn(4) ? password() : first};
    }
    begin("lock: " + printed(attempts), {{m_model->controller.active}, ofLocking});
    m_user->lock(m_list, attempts);
    end([=](const Facts &facts) { return m_model->lock(attempts, facts); });
}

void Sequence::unlock()
{
    Attempts attempts;
    for (int i = below(4); i > 0; --i) {
        const QString word =
            oneIn(4) ? QString::fromLatin1(ControllerModel::superPassword) : password();
        attempts << Attempt{oneIn(6) ? QString() : word, {}, oneIn(3)};
    }
    begin("unlock: " + printed(attempts), {{m_model->controller.active}, ofLocking});
    m_user->unlock(m_list, attempts);
    end([=](const Facts &facts) { return m_model->unlock(attempts, facts); });
}

void Sequence::save()
{
    const QString name = oneIn(2) ? "one.dat" : "two.dat";
    const FileChoice choice{someOf(m_model->entryCount()),
                            oneIn(6) ? QString() : m_home.filePath(name)};
    Promises promises;
    promises.savedPath = choice.path;
    if (m_model->files.contains(choice.path)) {
        promises.savedBefore = TransferFiles::contentsOf(choice.path);
    }
    begin(QStringLiteral("save %1 to %2").arg(printed(choice.rows), nameOf(choice.path)), promises);
    m_user->save(m_list, choice);
    end([this, choice](const Facts &facts) { return m_model->save(choice, facts); });
}

void Sequence::backUp()
{
    const QString path = m_home.filePath(QStringLiteral("all%1.xml").arg(m_actions.size()));
    Promises promises;
    promises.unreported = ofBackup;
    promises.isReportedOnce = true;
    begin(QStringLiteral("back up to ") + nameOf(path), promises);
    m_user->backUp(m_list, path);
    end([this](const Facts &) { return m_model->backUp(); });
}

void Sequence::load()
{
    if (oneIn(6)) {
        const QString text = TransferFiles::write(m_home.filePath("text.dat"), "no archive\n");
        m_model->files.insert(text, {FileModel::Kind::Text, {}});
        const QString empty = TransferFiles::write(m_home.filePath("empty.dat"), "");
        m_model->files.insert(empty, {FileModel::Kind::Empty, {}});
    }
    FileChoice choice;
    if (!m_model->files.isEmpty() && !oneIn(8)) {
        choice.path = oneOf(m_model->files.keys());
    }
    const FileModel file = m_model->files.value(choice.path);
    choice.rows = someOf(file.items.size());
    choice.opensDialog = file.kind == FileModel::Kind::Configurations;
    Promises promises;
    promises.unreported = ofLoading;
    for (const StoredModel &item : file.items) {
        promises.touched << item.identifier;
    }
    begin(QStringLiteral("load %1 from %2").arg(printed(choice.rows), nameOf(choice.path)),
          promises);
    m_user->load(m_list, choice);
    end([this, choice](const Facts &facts) { return m_model->load(choice, facts); });
}

// Few enough that some are equal, and with all that the fields let through.
QString Sequence::text(bool isEmptyAllowed)
{
    static const QStringList texts{"a",        "Robot cell", "Hall 7",     "x_-+=.,;:/ y",   " ",
                                   "copy of ", "B",          "12-12-2012", "lab 4 3-03-2003"};
    return isEmptyAllowed && oneIn(4) ? QString() : oneOf(texts);
}

QString Sequence::password()
{
    return QString::fromLatin1(oneOf(ControllerModel::passwords));
}

Attempts Sequence::texts()
{
    Attempts attempts;
    for (int i = below(3); i > 0; --i) {
        const QString description = text(true);
        attempts << Attempt{description, text(true)};
    }
    return attempts;
}

QVector<int> Sequence::someOf(int count)
{
    QVector<int> rows;
    for (int row = 0; row < count; ++row) {
        if (oneIn(2)) {
            rows << row;
        }
    }
    return rows;
}

QByteArray Sequence::currentIdentifier() const
{
    return m_model->currentRow() < 0 ? QByteArray()
                                     : m_model->row(m_model->currentRow()).identifier.toLatin1();
}
