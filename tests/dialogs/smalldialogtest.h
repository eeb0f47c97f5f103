#pragma once

#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"

#include <QObject>
#include <QVector>

#include <functional>
#include <memory>

/// What the tests of the small dialogs have in common: the frame in which each runs its dialog, and
/// the tests that every dialog has to pass as its design says.
class SmallDialogTest : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(QDialog *)>;

    struct FormWidget
    {
        const char *name;
        const char *kind;
        const char *text;
        const char *whatsThis;
    };

    struct Design
    {
        QString objectName;
        QVector<FormWidget> widgets;
        QStringList tabOrder; ///< the first has the focus when the dialog opens
        const char *cancelButton;
        QStringList reading; ///< what the dialog asks the controller before it is shown
    };

protected:
    explicit SmallDialogTest(Design design);

    /// A new dialog on m_channel.
    virtual std::unique_ptr<QDialog> makeDialog() = 0;
    /// Its update_and_exec(), for the configuration "hall" if there is one.
    virtual int exec(QDialog *dialog) = 0;
    /// Scripts the answers of a controller on which all is well.
    virtual void scriptAnswers() = 0;
    /// Types something that must not be sent when the user thinks better of it.
    virtual void fillIn(QDialog *dialog) = 0;

    /// Runs a new dialog, with @p action as its user. @return its result
    int runDialog(const Action &action);

    std::unique_ptr<ScriptedChannel> m_channel;
    std::unique_ptr<ModalDriver> m_driver;

private slots:
    void init();
    void cleanup();

    void everyWidgetIsAsDesigned_data();
    void everyWidgetIsAsDesigned();
    void theFirstFieldHasTheFocus();
    void theTabKeyLeadsThroughTheForm();
    void givingUpSendsNothing_data();
    void givingUpSendsNothing();

private:
    const Design m_design;
};

Q_DECLARE_METATYPE(SmallDialogTest::Action)
