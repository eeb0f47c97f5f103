#pragma once

#include "tests/endtoend/frontend.h"
#include "tests/sweep/outcome.h"
#include "tests/sweep/transcript.h"

#include <QHash>

#include <functional>
#include <optional>

/// The plug-in, loaded from disk, with a user in front of it and a controller behind it that both
/// can be set back to any beginning. Lives through any number of operations, as a front end does.
class Stage
{
public:
    Stage();

    /// Lets the user carry out @p operation, from its beginning, with something going wrong or
    /// nothing.
    Outcome perform(const Operation &operation, const std::optional<FaultPoint> &faultPoint);
    /// Whether anything went wrong in the last operation.
    bool wasFaultMet() const { return m_wasFaultMet; }
    /// What happened in the last operation.
    const Transcript &transcript() const { return m_performed; }

    /// What the list of configurations shows when it is opened now; see Table::lines().
    QStringList listedNow();

    /// @name For the users
    /// @{
    /// From here on it counts.
    void begin();
    /// Opens the list of configurations, runs @p action on it if it appears, and closes it.
    void useList(const std::function<void(QDialog *list)> &action);
    /// The same for an operation that begins with a click on @p button of the list, after one on
    /// the row of @p description where there is one.
    void startOnList(const char *button, const QString &description = {});
    /// What the user does with each dialog of that name, which is closed afterwards.
    void onDialog(const QString &objectName, const std::function<void(QDialog *dialog)> &action);
    /// What the user chooses wherever a file is asked for: @p name in the home directory.
    /// @return its whole path
    QString chooseFile(const QString &name) { return m_chosenPath = m_home.filePath(name); }
    /// Runs the automatic backup as the timer does.
    void backUpAutomatically();
    /// @}

private:
    void handle(QWidget *window);
    void setUp(const Operation &operation);

    TemporaryHome m_home; // comes before the plug-in, which asks for it when it is loaded
    FrontEnd m_frontEnd;
    Transcript m_transcript;
    Transcript m_performed; // the transcript at the end of the last operation
    std::optional<FaultPoint> m_faultPoint;
    QHash<QString, std::function<void(QDialog *)>> m_actions;
    QString m_chosenPath;
    bool m_wasFaultMet = false;
};
