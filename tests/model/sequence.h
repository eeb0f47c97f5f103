#pragma once

#include "tests/model/choices.h"
#include "tests/model/frontendmodel.h"
#include "tests/sweep/transcript.h"
#include "tests/model/user.h"

#include <QRandomGenerator>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

/// What holds of an action even when it meets faults.
struct Promises
{
    QSet<QByteArray> touched = {}; ///< no other configurations change
    QString unreported = {};       ///< a pattern for the commands whose failing is not told
    bool isReportedOnce = false;   ///< however much fails
    QString savedPath = {};        ///< the file that is written
    std::optional<QByteArray> savedBefore = {}; ///< its older contents, which are kept
};

/// One random sequence of what users do, with what goes wrong meanwhile: the same for the same
/// seed. After each action, what is seen, what is told and what the controller holds are compared
/// with the model; after one that met a fault, only with what is promised then.
class Sequence
{
public:
    explicit Sequence(quint32 seed);

    /// Runs until it ends or something is not as it should be.
    void run();

    /// What was not as it should be; empty if all was.
    QString problem() const { return m_problem; }
    /// What was done, one line each.
    QStringList actions() const { return m_actions; }
    /// How many of the actions met a fault.
    int faultCount() const { return m_faultCount; }

private:
    using Prediction = std::function<QStringList(const Facts &facts)>;

    // What can be done, each with choices of its own.
    void open();
    void useList();
    void actOnList();
    void changeElsewhere();
    void clickRow();
    void pressUpOrDown();
    void apply();
    void deleteCurrent();
    void createNew();
    void editByButton();
    void editByDoubleClick();
    void edit(Way way);
    void lockOrUnlock();
    void lock();
    void unlock();
    void save();
    void backUp();
    void load();

    // One action: said, done and compared.
    void begin(const QString &action, const Promises &promises = {});
    void end(const Prediction &predict);
    void armFault();
    Facts facts() const;
    void compareWithModel(const Prediction &predict);
    void comparePromises();
    void compareUntouched(const ControllerModel &after);
    void compareReports();
    void compareFiles();
    void complain(const QString &problem);
    void complainOfDifference(const QString &what, const QStringList &actual,
                              const QStringList &expected);
    bool isGoing() const { return m_problem.isEmpty() && m_remaining > 0; }

    // Choices.
    int below(int limit) { return int(m_random.bounded(limit)); }
    bool oneIn(int n) { return below(n) == 0; }
    template <typename List>
    auto oneOf(const List &list)
    {
        return list.at(below(int(list.size())));
    }
    QString text(bool isEmptyAllowed);
    QString password();
    Attempts texts();
    QVector<int> someOf(int count);
    QByteArray currentIdentifier() const;

    QRandomGenerator m_random;
    const TemporaryHome m_home;
    const Abilities m_abilities;
    std::unique_ptr<FrontEnd> m_frontEnd;
    Transcript m_transcript;
    std::unique_ptr<User> m_user;
    std::unique_ptr<FrontEndModel> m_model;

    QDialog *m_list = nullptr; // while it is open
    int m_remaining = 0;
    bool m_isDisturbed = false; // by a fault: the list has to be opened again
    QStringList m_actions;
    QString m_problem;
    int m_faultCount = 0;

    // The action under way.
    Promises m_promises;
    ControllerState m_before;
    int m_faultsBefore = 0;
};
