#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"

#include <QDir>

namespace {

constexpr int longestText = 100; // characters that the dialogs let type
constexpr int crowd = 500;
constexpr qint64 roomForAll = 1LL << 40; // bytes

QByteArray longText(const QByteArray &beginning)
{
    return (beginning
            + ", measured again after the exchange of the cameras, checked with the length bar, "
              "and "
              "released for the night shift")
        .left(longestText);
}

void useState(Tour &tour, const QVector<Configuration> &configurations, int activeIndex)
{
    ControllerState state = ControllerState::sample();
    state.storeCapacity = roomForAll;
    state.configurations = configurations;
    state.activeIdentifier =
        configurations.isEmpty() ? QByteArray() : configurations.at(activeIndex).identifier;
    tour.link().controller().setState(state);
}

void pictureList(Tour &tour, const QString &name, int count)
{
    ListVisit::open(tour, [&](DialogDriver &list) {
        tour.expectEqual(list.rowCount("tableWidget"), count, "number of rows");
        list.picture(name);
        ListVisit::exit(list);
    });
}

void pictureSaveDialog(Tour &tour, const QString &name)
{
    ListVisit::open(tour, [&](DialogDriver &list) {
        const auto look = [&](DialogDriver &dialog) {
            dialog.picture(name);
            dialog.click("pushButton_exit");
        };
        list.click("pushButton_save", {tour.dialog(ListVisit::saveDialog, look)});
        ListVisit::exit(list);
    });
}

void emptyStore(Tour &tour)
{
    tour.step(QStringLiteral("A controller without configurations"));
    useState(tour, {}, 0);
    pictureList(tour, QStringLiteral("list-empty"), 0);
    pictureSaveDialog(tour, QStringLiteral("save-empty"));
}

void oneConfiguration(Tour &tour)
{
    tour.step(QStringLiteral("A controller with one configuration"));
    useState(tour, ControllerState::sample().configurations.mid(0, 1), 0);
    pictureList(tour, QStringLiteral("list-one"), 1);
}

void crowdedStore(Tour &tour)
{
    tour.step(QStringLiteral("A controller with five hundred configurations"));
    const Configuration pattern = ControllerState::sample().configurations.at(1);
    QVector<Configuration> configurations;
    for (int number = 1; number <= crowd; ++number) {
        Configuration configuration = pattern;
        configuration.identifier += '-' + QByteArray::number(number);
        configuration.description = "Shift " + QByteArray::number(number).rightJustified(3, '0');
        configurations << configuration;
    }
    useState(tour, configurations, crowd / 2);
    pictureList(tour, QStringLiteral("list-crowded"), crowd);
    pictureSaveDialog(tour, QStringLiteral("save-crowded"));
}

/// Texts of the greatest length in all dialogs that show them.
class LongTexts
{
public:
    explicit LongTexts(Tour &tour)
        : m_tour(tour)
    {
    }

    void run();

private:
    void useLongTexts(const SaltedHash &activePassword);
    ModalStep look(const char *dialogName, const QString &pictureName, const QString &wayOut) const;
    void picture(DialogDriver &list);
    void pictureUnlock();
    void save(DialogDriver &list);
    void load(DialogDriver &list);

    Tour &m_tour;
    const QString m_dataFile = QDir::home().filePath(QStringLiteral("long-texts.dat"));
};

void LongTexts::run()
{
    m_tour.step(QStringLiteral("Descriptions and owners as long as they can be"));
    useLongTexts({});
    ListVisit::open(m_tour, [this](DialogDriver &list) {
        picture(list);
        save(list);
        load(list);
        ListVisit::exit(list);
    });
    pictureUnlock();
}

void LongTexts::useLongTexts(const SaltedHash &activePassword)
{
    QVector<Configuration> configurations = ControllerState::sample().configurations;
    for (Configuration &configuration : configurations) {
        configuration.description = longText(configuration.description);
        configuration.owner = longText(configuration.owner);
        configuration.password = {};
    }
    configurations[1].password = activePassword;
    useState(m_tour, configurations, 1);
}

ModalStep LongTexts::look(const char *dialogName, const QString &pictureName,
                          const QString &wayOut) const
{
    return m_tour.dialog(QString::fromLatin1(dialogName), [=](DialogDriver &dialog) {
        dialog.picture(pictureName);
        dialog.click(wayOut);
    });
}

void LongTexts::picture(DialogDriver &list)
{
    const QString active = ListVisit::active(m_tour);
    list.picture(QStringLiteral("list-long"));
    list.click("pushButton_edit",
               {look("EditConfigDialog", QStringLiteral("edit-long"), "pushButton_2")});
    list.select("tableWidget", active);
    list.click("pushButton_lock",
               {look("LockConfigurationDialog", QStringLiteral("lock-long"), "pushButton_cancel")});
    const QString question =
        QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
            .arg(ListVisit::description(m_tour, active), ListVisit::owner(m_tour, active));
    list.click("pushButton_delete",
               {m_tour.box("Warning", question, QMessageBox::Cancel,
                           QStringLiteral("delete-question-long"))});
}

void LongTexts::pictureUnlock()
{
    useLongTexts(ControllerState::sample().superPassword);
    ListVisit::open(m_tour, [this](DialogDriver &list) {
        list.click("pushButton_lock",
                   {look("UnlockConfigurationDialog", QStringLiteral("unlock-long"),
                         "pushButton_cancel")});
        ListVisit::exit(list);
    });
}

void LongTexts::save(DialogDriver &list)
{
    const QString done =
        QStringLiteral("Configuration data successfully written to the file\n%1").arg(m_dataFile);
    const auto saveActive = [&](DialogDriver &dialog) {
        dialog.click("checkBox_allSettings");
        dialog.click("pushButton_clearSelection");
        dialog.select("tableWidget_selectConfigs", ListVisit::active(m_tour));
        dialog.picture(QStringLiteral("save-long"));
        dialog.click("pushButton_save",
                     {m_tour.fileDialog("Save configuration(s)", m_dataFile),
                      m_tour.box("Save Configurations", done, QMessageBox::Ok)});
        dialog.click("pushButton_exit");
    };
    list.click("pushButton_save", {m_tour.dialog(ListVisit::saveDialog, saveActive)});
}

void LongTexts::load(DialogDriver &list)
{
    list.click("pushButton_load",
               {m_tour.fileDialog("Load Configurations", m_dataFile),
                look("ConfigLoadDlgClass", QStringLiteral("load-long"), "pushButton_exit")});
}

} // namespace

void Chapters::extremes(Tour &tour)
{
    emptyStore(tour);
    oneConfiguration(tour);
    crowdedStore(tour);
    LongTexts(tour).run();
}
