#pragma once

#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"

#include <QObject>
#include <QVariant>
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

    struct Property
    {
        const char *widget; ///< nullptr for the dialog itself
        const char *name;
        QVariant value;
    };

    /// What the dialog asks the controller before it is shown, and where it shows the answer.
    struct Reading
    {
        QByteArray query;
        QByteArray answer;
        const char *widget;
        QString shown;
        QString shownWithoutAnswer;
    };

    /// Input that is not sent.
    struct Refusal
    {
        QStringList entries;
        QString warning;
        QString focus; ///< afterwards
    };

    struct Design
    {
        QString objectName;
        QVector<FormWidget> widgets;
        QVector<Property> properties;
        QVector<QStringList> grid; ///< row by row; a line edit is the buddy of the label before it
        QStringList tabOrder;      ///< the first has the focus when the dialog opens
        const char *okButton = nullptr;
        const char *cancelButton = nullptr;

        QStringList fields; ///< the line edits that take input
        bool takesPasswords = false;
        QStringList entries; ///< good ones for the fields
        QStringList sent;    ///< what OK sends then
        int ignoredFrom = 0; ///< from which command on it does not matter whether they fail
        bool announcesWhileOpen = true;

        QVector<Reading> readings;
        QVector<Refusal> refusals;
        bool ownsWarnings = false; ///< whether it is the parent of its warnings
    };

protected:
    explicit SmallDialogTest(Design design);

    /// A new dialog on m_channel.
    virtual std::unique_ptr<QDialog> makeDialog() = 0;
    /// Its update_and_exec(), for the configuration "hall" if there is one.
    virtual int exec(QDialog *dialog) = 0;

    /// Runs a new dialog, with @p action as its user. @return its result
    int runDialog(const Action &action);
    /// Fills in the fields, with good entries if no others are given.
    void enter(QDialog *dialog, const QStringList &entries) const;
    void enter(QDialog *dialog) const { enter(dialog, m_design.entries); }
    /// The same, and presses OK.
    void enterAndAccept(QDialog *dialog, const QStringList &entries) const;
    void enterAndAccept(QDialog *dialog) const { enterAndAccept(dialog, m_design.entries); }
    void expectWarning(const QString &text, QWidget *parent = nullptr);
    /// Runs a new dialog, with @p action as its user, and destroys it under the box that opens.
    /// Then only @p sent may have been sent since it was shown.
    void destroyUnderBox(const Action &action, const QStringList &sent);

    /// What the dialog asks before it is shown, as it is traced.
    QStringList reading() const;
    /// The trace with the clock's part of a new identifier replaced, once its form has been
    /// checked.
    QStringList trace() const;

    std::unique_ptr<ScriptedChannel> m_channel;
    std::unique_ptr<ModalDriver> m_driver;

private slots:
    void init();
    void cleanup();

    void everyWidgetIsAsDesigned();
    void everyPropertyIsAsDesigned();
    void everyLabelStandsBeforeItsField();
    void theTabKeyLeadsThroughTheForm();
    void fieldsTakeAHundredPermittedCharacters();
    void itShowsWhatTheControllerAnswers();
    void aTextThatIsNotAnsweredIsLeftOut();
    void aLongTextIsShownWhole();
    void okAndTheEnterKeySend();
    void givingUpSendsNothing();
    void everyCommandIsSentWhateverFails();
    void theEventComesBeforeOrAfterTheClosing();
    void badEntriesAreRefusedAndStay_data() { addRefusals(); }
    void badEntriesAreRefusedAndStay();
    void theHostMayDestroyItUnderAWarning_data() { addRefusals(); }
    void theHostMayDestroyItUnderAWarning();

private:
    void addRefusals() const;
    QStringList shownTexts();

    const Design m_design;
};

Q_DECLARE_METATYPE(SmallDialogTest::Refusal)
