// What instructions.py counts: each operation with a few and with many rows or chunks, so that the
// difference of the two is what one more row or chunk costs.

#include "backup/fullbackup.h"
#include "bench/freechannel.h"
#include "bench/sampledata.h"
#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "dialogs/changeconfigurationdlg.h"
#include "transfer/configurationdownload.h"
#include "transfer/configurationupload.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

// The button opens nothing as long as it shows its first text, but the list is read anew.
[[gnu::noinline]] void refreshList(ChangeConfigurationDlg *list)
{
    QMetaObject::invokeMethod(list, "on_pushButton_lock_clicked");
}

namespace {

constexpr int few = 100;
constexpr int many = 300;

/// What all operations work with.
struct Bench
{
    QString path() const { return folder.filePath(QStringLiteral("file.dat")); }

    QTemporaryDir folder;
    FreeChannel channel;
    Controller controller{&channel};
    BackendVersions versions = SampleData::versions();
    FullBackup backup{&channel, &versions};
    ChangeConfigurationDlg list{&channel, &versions, nullptr};
};

// One block in the profile for each count, with a line for each operation that is called here.
template <int count>
[[gnu::noinline]] void runAll(Bench *bench)
{
    bench->channel.setConfigurations(count);
    refreshList(&bench->list);
    bench->channel.setConfigurations(1);
    bench->channel.setDownload(count * TransferEncoding::chunkSize);
    bench->backup.downloadConfigData();
    bench->backup.uploadConfigData();
    QFile::remove(bench->path());
    downloadConfigurationFile(bench->controller, bench->path());
    uploadConfigurationFile(bench->controller, bench->path());
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Bench bench;
    runAll<1>(&bench); // everything that happens only once
    runAll<few>(&bench);
    runAll<many>(&bench);
    return 0;
}
