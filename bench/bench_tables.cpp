// Filling the plug-in's tables with very many rows and sorting them, beside a bare table with the
// same cells; and refreshing the list, beside the bare loop of its commands.

#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/operations.h"
#include "bench/sampledata.h"
#include "bench/turns.h"
#include "dialogs/changeconfigurationdlg.h"
#include "tests/support/modaldriver.h"
#include "transfer/configloaddlg.h"
#include "transfer/configsavedlg.h"

#include <QFile>
#include <QHeaderView>
#include <QIcon>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

namespace {

constexpr int manyRows = 10000;
constexpr int rowHeight = 28;

enum Column { DescriptionColumn, OwnerColumn, IdColumn, LastColumn };

ConfigEntryList configurations(int count)
{
    ConfigEntryList list;
    for (int row = 1; row <= count; ++row) {
        list.append({QStringLiteral("config%1").arg(row),
                     QStringLiteral("Measuring plan %1, hall %2")
                         .arg(static_cast<unsigned>(row) * 2654435761U, 8, 16, QLatin1Char('0'))
                         .arg(row),
                     QStringLiteral("Metrology department"), false});
    }
    return list;
}

// By the descriptions and back: neither is in the order of the other.
void sortBothWays(QTableWidget *table)
{
    table->sortItems(DescriptionColumn, Qt::AscendingOrder);
    table->sortItems(IdColumn, Qt::AscendingOrder);
}

/// A dialog that holds a table and nothing else.
class BareTable
{
public:
    BareTable(int columns, QAbstractItemView::SelectionMode mode)
        : m_table(new QTableWidget(0, columns, &m_dialog))
    {
        auto *layout = new QVBoxLayout(&m_dialog);
        layout->addWidget(m_table);
        m_dialog.resize(600, 400);
        m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_table->setSelectionMode(mode);
        m_table->verticalHeader()->setDefaultSectionSize(rowHeight);
        m_table->horizontalHeader()->setStretchLastSection(true);
    }

    QTableWidget *table() { return m_table; }

    void fill(const ConfigEntryList &list)
    {
        m_table->clearContents();
        m_table->setRowCount(list.size());
        for (int row = 0; row < list.size(); ++row) {
            const ConfigEntry &entry = list.at(row);
            m_table->setItem(row, DescriptionColumn, new QTableWidgetItem(entry.description));
            m_table->setItem(row, OwnerColumn, new QTableWidgetItem(entry.owner));
            m_table->setItem(row, IdColumn, new QTableWidgetItem(entry.identifier));
        }
    }

    void fillLastColumn(const QIcon &icon, const QString &text)
    {
        for (int row = 0; row < m_table->rowCount(); ++row) {
            m_table->setItem(row, LastColumn, new QTableWidgetItem(icon, text));
        }
    }

    void show()
    {
        QTimer::singleShot(0, &m_dialog, &QDialog::reject);
        m_dialog.exec();
    }

private:
    QDialog m_dialog;
    QTableWidget *m_table;
};

/// The list beside a controller that has as many configurations as it is to show.
struct List
{
    explicit List(int rows) { channel.setConfigurations(rows); }

    // It opens nothing as long as the button shows its first text, but the list is read anew.
    void refresh() { QMetaObject::invokeMethod(&dialog, "on_pushButton_lock_clicked"); }

    FreeChannel channel;
    BackendVersions versions = SampleData::versions();
    ChangeConfigurationDlg dialog{&channel, &versions, nullptr};
};

/// What it is compared with.
struct BareList
{
    explicit BareList(int rows)
        : entries(configurations(rows))
    {
    }

    void fill()
    {
        bare.fill(entries);
        bare.fillLastColumn(icon, QStringLiteral("no"));
    }

    BareTable bare{4, QAbstractItemView::SingleSelection};
    ConfigEntryList entries;
    QIcon icon{QStringLiteral(":/unlock.png")};
};

Operations::Operation refresh(int rows)
{
    return Operations::timed([list = std::make_shared<List>(rows)] { list->refresh(); });
}

Operations::Operation refreshBarely(int rows)
{
    const auto channel = std::make_shared<FreeChannel>();
    channel->setConfigurations(rows);
    return Operations::timed([channel] { BareLoops::refresh(channel.get()); });
}

Operations::Operation fillListBarely(int rows)
{
    return Operations::timed([list = std::make_shared<BareList>(rows)] {
        list->fill();
        list->bare.table()->sortItems(DescriptionColumn, Qt::AscendingOrder);
    });
}

Operations::Operation refreshAndFillBarely(int rows)
{
    return [loop = refreshBarely(rows), fill = fillListBarely(rows)] { return loop() + fill(); };
}

Operations::Operation sort(int rows)
{
    const auto list = std::make_shared<List>(rows);
    list->refresh();
    auto *table = list->dialog.findChild<QTableWidget *>(QStringLiteral("tableWidget"));
    table->sortItems(IdColumn, Qt::AscendingOrder);
    return Operations::timed([list, table] { sortBothWays(table); });
}

Operations::Operation sortBarely(int rows)
{
    const auto list = std::make_shared<BareList>(rows);
    list->fill();
    list->bare.table()->sortItems(IdColumn, Qt::AscendingOrder);
    return Operations::timed([list] { sortBothWays(list->bare.table()); });
}

/// The save dialog with what it works with.
struct Save
{
    FreeChannel channel;
    BackendVersions versions = SampleData::versions();
    ConfigSaveDlg dialog{&channel, &versions, nullptr};
};

Operations::Operation fillSave(int rows)
{
    const auto save = std::make_shared<Save>();
    save->dialog.onSendModulParentVersion(QStringLiteral("v0")); // no automatic backup meanwhile
    save->dialog.setConfigurationList(configurations(rows));
    return Operations::timed([save] {
        QTimer::singleShot(0, &save->dialog, &QDialog::reject);
        save->dialog.runSaveDialog();
    });
}

Operations::Operation fillSaveBarely(int rows)
{
    const auto bare = std::make_shared<BareTable>(3, QAbstractItemView::MultiSelection);
    return Operations::timed([bare, list = configurations(rows)] {
        bare->fill(list);
        bare->table()->selectAll();
        bare->show();
    });
}

/// The load dialog with what it works with.
struct Load
{
    FreeChannel channel;
    BackendVersions versions = SampleData::versions();
    ConfigLoadDlg dialog{&channel, &versions, nullptr};
};

// From the moment when the controller has told the last item to the moment when the dialog is
// shown. The file chooser, the upload and the questions before are none of the table's business.
double timeToShow(Load *load, const QString &path)
{
    Stopwatch stopwatch;
    double time = 0;
    load->channel.whenItemsAreTold([&stopwatch] { stopwatch.start(); });
    ModalDriver driver;
    driver.expectFileDialog(QStringLiteral("Load Configurations"), path);
    driver.expectDialog(QStringLiteral("ConfigLoadDlgClass"), [&](QDialog *shown) {
        time = stopwatch.stop();
        shown->reject();
    });
    load->dialog.openAndExec();
    Operations::require(driver.takeProblems().isEmpty());
    return time;
}

Operations::Operation fillLoad(int rows)
{
    QFile file(QStringLiteral("chosen.dat"));
    Operations::require(file.open(QIODevice::WriteOnly) && file.write("configurations") > 0);
    const auto load = std::make_shared<Load>();
    load->channel.setConfigurations(rows);
    return
        [load, path = QFileInfo(file).absoluteFilePath()] { return timeToShow(load.get(), path); };
}

Operations::Operation fillLoadBarely(int rows)
{
    const auto bare = std::make_shared<BareTable>(4, QAbstractItemView::MultiSelection);
    return Operations::timed([bare, list = configurations(rows)] {
        bare->fill(list);
        bare->fillLastColumn(QIcon(), QString());
        bare->table()->setColumnHidden(LastColumn, true);
        bare->table()->selectAll();
        bare->show();
    });
}

const bool areAdded = [] {
    using Operations::add;
    return add("refresh", refresh) && add("refresh-loop", refreshBarely)
        && add("refresh-table", fillListBarely) && add("refresh-bare", refreshAndFillBarely)
        && add("sort", sort) && add("sort-table", sortBarely) && add("fill-save", fillSave)
        && add("fill-save-table", fillSaveBarely) && add("fill-load", fillLoad)
        && add("fill-load-table", fillLoadBarely)
        && takeTurns({"refresh", "refresh-loop", "refresh-bare"}, {manyRows}, 5)
        && takeTurns({"sort", "sort-table"}, {manyRows}, 5)
        && takeTurns({"fill-save", "fill-save-table"}, {manyRows}, 7)
        && takeTurns({"fill-load", "fill-load-table"}, {manyRows}, 7);
}();

} // namespace
