// Filling the plug-in's tables with very many rows, beside a bare table with the same cells. What
// the list's table is compared with is here as well.

#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/processcputime.h"
#include "bench/sampledata.h"
#include "tests/support/modaldriver.h"
#include "transfer/configloaddlg.h"
#include "transfer/configsavedlg.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QHeaderView>
#include <QIcon>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int rows = 10000;
constexpr int rowHeight = 28;

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

/// A dialog that holds a table and nothing else.
class BareTable
{
public:
    explicit BareTable(int columns)
        : m_table(new QTableWidget(0, columns, &m_dialog))
    {
        auto *layout = new QVBoxLayout(&m_dialog);
        layout->addWidget(m_table);
        m_dialog.resize(600, 400);
        m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_table->verticalHeader()->setDefaultSectionSize(rowHeight);
        m_table->horizontalHeader()->setStretchLastSection(true);
    }

    QTableWidget *table() { return m_table; }

    void fill(const ConfigEntryList &list)
    {
        m_table->clearContents();
        m_table->setRowCount(list.size());
        for (int row = 0; row < list.size(); ++row) {
            m_table->setItem(row, 0, new QTableWidgetItem(list.at(row).description));
            m_table->setItem(row, 1, new QTableWidgetItem(list.at(row).owner));
            m_table->setItem(row, 2, new QTableWidgetItem(list.at(row).identifier));
        }
    }

    void fillLastColumn(const QIcon &icon, const QString &text)
    {
        for (int row = 0; row < m_table->rowCount(); ++row) {
            m_table->setItem(row, 3, new QTableWidgetItem(icon, text));
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

// The list fills its table while it asks, so the commands are part of this one.
void fillListBarely(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    FreeChannel channel;
    channel.setConfigurations(count);
    const ConfigEntryList list = configurations(count);
    BareTable bare(4);
    bare.table()->setSelectionMode(QAbstractItemView::SingleSelection);
    const QIcon icon(QStringLiteral(":/unlock.png"));
    for (auto _ : state) {
        BareLoops::refresh(&channel);
        bare.fill(list);
        bare.fillLastColumn(icon, QStringLiteral("no"));
        bare.table()->sortItems(0, Qt::AscendingOrder);
    }
}

void fillSave(benchmark::State &state)
{
    FreeChannel channel;
    BackendVersions versions = SampleData::versions();
    ConfigSaveDlg dialog(&channel, &versions, nullptr);
    dialog.onSendModulParentVersion(QStringLiteral("v0")); // no automatic backup meanwhile
    dialog.setConfigurationList(configurations(rows));
    for (auto _ : state) {
        QTimer::singleShot(0, &dialog, &QDialog::reject);
        dialog.runSaveDialog();
    }
}

void fillSaveBarely(benchmark::State &state)
{
    const ConfigEntryList list = configurations(rows);
    BareTable bare(3);
    bare.table()->setSelectionMode(QAbstractItemView::MultiSelection);
    for (auto _ : state) {
        bare.fill(list);
        bare.table()->selectAll();
        bare.show();
    }
}

// From the moment when the controller has told the last item to the moment when the dialog is
// shown. The file chooser, the upload and the questions before are none of the table's business.
void fillLoad(benchmark::State &state)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("file.dat")));
    if (!file.open(QIODevice::WriteOnly) || file.write("configurations") < 0) {
        state.SkipWithError("the file cannot be made");
        return;
    }
    file.close();
    double begin = 0;
    double end = 0;
    FreeChannel channel;
    channel.setConfigurations(rows);
    channel.whenItemsAreTold([&begin] { begin = processCpuTime(); });
    BackendVersions versions = SampleData::versions();
    ConfigLoadDlg dialog(&channel, &versions, nullptr);
    for (auto _ : state) {
        ModalDriver driver;
        driver.expectFileDialog(QStringLiteral("Load Configurations"), file.fileName());
        driver.expectDialog(QStringLiteral("ConfigLoadDlgClass"), [&end](QDialog *shown) {
            end = processCpuTime();
            shown->reject();
        });
        dialog.openAndExec();
        if (!driver.takeProblems().isEmpty()) {
            state.SkipWithError("the dialog was not shown");
        }
        state.SetIterationTime(end - begin);
    }
}

void fillLoadBarely(benchmark::State &state)
{
    const ConfigEntryList list = configurations(rows);
    BareTable bare(4);
    bare.table()->setSelectionMode(QAbstractItemView::MultiSelection);
    for (auto _ : state) {
        const double begin = processCpuTime();
        bare.fill(list);
        bare.fillLastColumn(QIcon(), QString());
        bare.table()->setColumnHidden(3, true);
        bare.table()->selectAll();
        bare.show();
        state.SetIterationTime(processCpuTime() - begin);
    }
}

void seldom(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Iterations(3)->Unit(benchmark::kMillisecond);
}

BENCHMARK(fillListBarely)
    ->Name("refresh/table")
    ->Arg(1000)
    ->Arg(rows)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(fillSave)->Name("table/save/ours")->Apply(seldom);
BENCHMARK(fillSaveBarely)->Name("table/save/bare")->Apply(seldom);
BENCHMARK(fillLoad)->Name("table/load/ours")->Apply(seldom)->UseManualTime();
BENCHMARK(fillLoadBarely)->Name("table/load/bare")->Apply(seldom)->UseManualTime();

} // namespace
